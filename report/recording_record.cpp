#include "report/recording_record.h"

#include "monitor/posture.h"
#include "recording/posture_statistics.h"
#include "report/json_numbers.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace noctara {

namespace {

/// The smallest and the largest of some values.
struct Range {
    double least = std::numeric_limits<double>::infinity();
    double most = -std::numeric_limits<double>::infinity();

    void add(double value) {
        least = std::min(least, value);
        most = std::max(most, value);
    }
};

/// A column of ranges, in two: the least, and the most or null where that is the same.
class RangeColumn {
public:
    void add(const Range& range, int decimals) {
        const Json low = rounded(range.least, decimals);
        const Json high = rounded(range.most, decimals);
        least.push_back(low);
        most.push_back(high);
    }

    Json finish() { return Json::array({std::move(least), std::move(most)}); }

private:
    Json least = Json::array();
    Json most = Json::array();
};

} // namespace

Json recordingForPage(const Recording& recording, const std::string& name,
                      const SensitivityAdvice& advice) {
    const auto& samples = recording.samples;
    const std::size_t groupSize =
        (samples.size() + longestShownRecording - 1) / longestShownRecording;
    Json times = Json::array();
    Json down = Json::array();
    RangeColumn tilts;
    RangeColumn lengths;
    std::int64_t before = 0;
    for (std::size_t first = 0; first < samples.size(); first += groupSize) {
        Range tilt;
        Range length;
        std::size_t screenDown = 0;
        const std::size_t end = std::min(first + groupSize, samples.size());
        for (std::size_t i = first; i < end; ++i) {
            const PostureReading reading(samples[i].acceleration);
            tilt.add(reading.degreesOffVertical());
            length.add(reading.length);
            screenDown += reading.nearerToScreenDown();
        }
        const std::int64_t now = std::llround(samples[first].seconds * 1000);
        times.push_back(now - std::exchange(before, now));
        down.push_back(2 * screenDown >= end - first);
        tilts.add(tilt, 2);
        lengths.add(length, 3);
    }
    Json tolerances = Json::array();
    for (std::int32_t sensitivity = 0; sensitivity <= highestSensitivity; ++sensitivity)
        tolerances.push_back(rounded(postureTolerance(sensitivity) * degreesPerRadian, 3));

    Json suitable;
    if (advice.outcome == SensitivityAdvice::Outcome::found)
        suitable = advice.sensitivity;
    return {{"kind", "recording"},
            {"name", name},
            {"end", rounded(recording.duration(), 3)},
            {"verdict", linesOf(advice)},
            {"remarks", recording.remarks},
            {"samples", samples.size()},
            {"samplesInGroup", groupSize},
            {"times", std::move(times)},
            {"screenDown", std::move(down)},
            {"tilts", tilts.finish()},
            {"lengths", lengths.finish()},
            {"tolerances", std::move(tolerances)},
            {"suitable", std::move(suitable)}};
}

} // namespace noctara
