#include "recording/recording.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

namespace noctara {

double Recording::duration() const {
    if (samples.empty() || samples.back().seconds <= 0)
        return 1.0;
    const auto count = static_cast<double>(samples.size());
    return samples.back().seconds * count / (count - 1);
}

double Recording::medianStep() const {
    std::vector<double> steps;
    for (std::size_t i = 1; i < samples.size(); ++i)
        steps.push_back(samples[i].seconds - samples[i - 1].seconds);
    return steps.empty() ? 0 : median(std::move(steps));
}

const Acceleration& Recording::at(double seconds) const {
    const double moment = std::fmod(seconds, duration());
    const auto next =
        std::upper_bound(samples.begin(), samples.end(), moment,
                         [](double time, const Sample& sample) { return time < sample.seconds; });
    return next == samples.begin() ? next->acceleration : std::prev(next)->acceleration;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace noctara
