/// The check for a phone that lies still in the wanted posture.
#pragma once

#include <cstdint>

namespace noctara {

/// Pi rounded to eight digits, and 180 divided by it. The bounds of the face-up posture and the
/// logged degrees use these values, not those of full precision.
inline constexpr double pi = 3.1415927;
inline constexpr double degreesPerRadian = 57.29577866666166;

/// The angle in radians, 0 to pi, between a vector and the positive z axis; 0 for the zero vector.
/// Stores the vector's length in `length` unless that is null.
double computeTiltAngle(double* length, double x, double y, double z);

/// The largest difference, in radians, between the tilt and the wanted posture. Infinite for a
/// sensitivity of -1. Negative for a smaller one, so that no tilt is within it.
double postureTolerance(std::int32_t sensitivity);

/// Whether a tilt (radians) and a vector length (g) are those of a phone that lies still with its
/// screen down (`screenDown`) or up. False if the tilt or the length is not a number.
bool liesInPosture(double angle, double length, double tolerance, bool screenDown);

} // namespace noctara
