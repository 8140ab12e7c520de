#include "recording/posture_statistics.h"

#include "monitor/posture.h"

#include <algorithm>

namespace noctara {

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

void PostureShares::add(const PostureReading& reading) {
    ++readings;
    const bool screenDown = reading.nearerToScreenDown();
    Counts& counts = screenDown ? down : up;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        // What fails at one Sensitivity fails at all higher ones.
        if (!reading.lies(static_cast<std::int32_t>(i), screenDown))
            return;
        ++counts[i];
    }
}

BySensitivity PostureShares::of(bool screenDown) const {
    const Counts& counts = screenDown ? down : up;
    BySensitivity shares{};
    std::transform(counts.begin(), counts.end(), shares.begin(), [this](std::size_t count) {
        return static_cast<double>(count) / static_cast<double>(readings);
    });
    return shares;
}

} // namespace noctara
