#include "recording/posture_statistics.h"

#include "monitor/posture.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace noctara {

namespace {

using Readings = std::vector<PostureReading>;

BySensitivity sharesLying(const Readings& readings, bool screenDown) {
    BySensitivity shares{};
    for (std::int32_t sensitivity = 0; sensitivity <= highestSensitivity; ++sensitivity) {
        const auto lying =
            std::count_if(readings.begin(), readings.end(), [=](const PostureReading& reading) {
                return reading.lies(sensitivity, screenDown);
            });
        shares[static_cast<std::size_t>(sensitivity)] =
            static_cast<double>(lying) / static_cast<double>(readings.size());
    }
    return shares;
}

LyingReadings findLying(const Readings& readings, bool screenDown) {
    Readings lying;
    std::copy_if(readings.begin(), readings.end(), std::back_inserter(lying),
                 [=](const PostureReading& reading) { return reading.lies(0, screenDown); });
    std::vector<double> tilts;
    for (const PostureReading& reading : lying)
        tilts.push_back(reading.degreesOffVertical());
    const double worst = *std::max_element(tilts.begin(), tilts.end());
    return {screenDown, median(std::move(tilts)), worst, sharesLying(lying, screenDown)};
}

double medianOf(const Recording& recording, double Acceleration::*axis) {
    std::vector<double> values;
    values.reserve(recording.samples.size());
    for (const auto& sample : recording.samples)
        values.push_back(sample.acceleration.*axis);
    return median(std::move(values));
}

std::optional<PostureReading> findSteady(const Recording& recording) {
    constexpr double mostOfThem = 0.9;
    constexpr double spread = 0.05;
    const auto& samples = recording.samples;
    const Acceleration middle{medianOf(recording, &Acceleration::x),
                              medianOf(recording, &Acceleration::y),
                              medianOf(recording, &Acceleration::z)};
    const PostureReading steady(middle);
    const auto near = std::count_if(samples.begin(), samples.end(), [&](const auto& sample) {
        const Acceleration& a = sample.acceleration;
        const PostureReading off({a.x - middle.x, a.y - middle.y, a.z - middle.z});
        return off.length <= spread * steady.length;
    });
    if (static_cast<double>(near) < mostOfThem * static_cast<double>(samples.size()))
        return std::nullopt;
    return steady;
}

} // namespace

PostureReading::PostureReading(const Acceleration& a) :
    angle(computeTiltAngle(&length, a.x, a.y, a.z)) {}

bool PostureReading::lies(std::int32_t sensitivity, bool screenDown) const {
    return liesInPosture(angle, length, postureTolerance(sensitivity), screenDown);
}

bool PostureReading::hasLengthAtRest() const {
    constexpr std::int32_t anyTilt = -1;
    return lies(anyTilt, nearerToScreenDown());
}

bool PostureReading::nearerToScreenDown() const {
    return angle < pi / 2;
}

double PostureReading::degreesOffVertical() const {
    return (nearerToScreenDown() ? angle : pi - angle) * degreesPerRadian;
}

std::int32_t LyingReadings::highestPassing(double share) const {
    std::int32_t sensitivity = highestSensitivity;
    while (sensitivity > 0 && passing[static_cast<std::size_t>(sensitivity)] < share)
        --sensitivity;
    return sensitivity;
}

PostureStatistics computePostureStatistics(const Recording& recording) {
    Readings readings;
    readings.reserve(recording.samples.size());
    for (const auto& sample : recording.samples)
        readings.emplace_back(sample.acceleration);

    PostureStatistics statistics;
    statistics.screenUp = sharesLying(readings, false);
    statistics.screenDown = sharesLying(readings, true);
    const double up = statistics.screenUp[0];
    const double down = statistics.screenDown[0];
    if (up > 0 || down > 0)
        statistics.lying = findLying(readings, down > up);
    statistics.steady = findSteady(recording);
    return statistics;
}

} // namespace noctara
