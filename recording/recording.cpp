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
    return {samples.size(), samples.empty() ? 0 : samples.back().seconds, medianStep, remarks,
            axesAreAssumed};
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
