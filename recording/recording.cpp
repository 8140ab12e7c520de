#include "recording/recording.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace noctara {

namespace {

double durationOf(std::size_t count, double lastSeconds) {
    if (lastSeconds <= 0)
        return 1.0;
    return lastSeconds * static_cast<double>(count) / static_cast<double>(count - 1);
}

} // namespace

double RecordingSummary::duration() const {
    return durationOf(samples, lastSeconds);
}

RecordingSummary Recording::summary() const {
    std::vector<double> steps;
    for (std::size_t i = 1; i < samples.size(); ++i)
        if (samples[i].seconds > samples[i - 1].seconds)
            steps.push_back(samples[i].seconds - samples[i - 1].seconds);
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
    std::nth_element(steps.begin(), middle, steps.end());
    return {samples.size(), samples.empty() ? 0 : samples.back().seconds,
            steps.empty() ? 0 : *middle, remarks, axesAreAssumed};
}

double Recording::duration() const {
    return durationOf(samples.size(), samples.empty() ? 0 : samples.back().seconds);
}

const Acceleration& Recording::at(double seconds) const {
    const double moment = std::fmod(seconds, duration());
    const auto next =
        std::upper_bound(samples.begin(), samples.end(), moment,
                         [](double time, const Sample& sample) { return time < sample.seconds; });
    return next == samples.begin() ? next->acceleration : std::prev(next)->acceleration;
}

} // namespace noctara
