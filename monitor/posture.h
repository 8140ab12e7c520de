/// When a phone counts as lying still in the wanted posture.
#pragma once

#include <cstdint>

namespace noctara {

/// Pi to eight digits and the degrees of a radian that go with it, not the library's full
/// precision: the bounds of the face-up posture and the printed degrees come from these.
inline constexpr double pi = 3.1415927;
inline constexpr double degreesPerRadian = 57.29577866666166;

/// The angle in radians, 0 to pi, between a vector and the positive z axis; 0 for the zero vector.
/// Stores the vector's length in `length` unless that is null.
double computeTiltAngle(double* length, double x, double y, double z);

/// How far, in radians, the tilt may be off the wanted posture. Infinite for a sensitivity of -1;
/// negative, so that nothing is near enough, below that.
double postureTolerance(std::int32_t sensitivity);

/// Whether a tilt (radians) and a vector length (g) are those of a phone lying still with the
/// screen facing down, or up. False for anything that is not a number.
bool liesInPosture(double angle, double length, double tolerance, bool screenDown);

} // namespace noctara
