#include "monitor/posture.h"

#include <cmath>

namespace noctara {

namespace {

constexpr double baseTolerance = 0.22;
constexpr double shortestAtRest = 0.9;
constexpr double longestAtRest = 1.1;

} // namespace

double computeTiltAngle(double* length, double x, double y, double z) {
    const double norm = std::sqrt((x * x + y * y) + z * z);
    if (length)
        *length = norm;
    if (norm == 0.0)
        return 0.0;
    return std::acos(z / norm);
}

double postureTolerance(std::int32_t sensitivity) {
    // The sum wraps at 32 bits.
    const auto steps = static_cast<std::int32_t>(static_cast<std::uint32_t>(sensitivity) + 1U);
    return baseTolerance / steps;
}

bool liesInPosture(double angle, double length, double tolerance, bool screenDown) {
    const bool inPosture =
        screenDown ? angle < tolerance : angle > pi - tolerance && angle < pi + tolerance;
    return inPosture && length > shortestAtRest && length < longestAtRest;
}

} // namespace noctara
