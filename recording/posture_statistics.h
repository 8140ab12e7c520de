/// The posture of the phone in a recording, judged by the monitor's own check.
#pragma once

#include "recording/recording.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace noctara {

/// The settings page offers a Sensitivity from 0 to this one.
inline constexpr std::int32_t highestSensitivity = 9;

inline constexpr std::int32_t defaultSensitivity = 5;

/// One value for each Sensitivity from 0.
using BySensitivity = std::array<double, highestSensitivity + 1>;

/// A reading as the posture check sees it.
struct PostureReading {
    explicit PostureReading(const Acceleration& acceleration);

    /// Whether the check passes for a phone that lies still with the screen down or up.
    bool lies(std::int32_t sensitivity, bool screenDown) const;

    /// Whether the length is that of a phone at rest. The tilt does not matter.
    bool hasLengthAtRest() const;

    bool nearerToScreenDown() const;

    /// Degrees between the reading and the nearer of the two postures, 0 to 90.
    double degreesOffVertical() const;

    /// In g.
    double length = 0;

    /// In radians, 0 (screen down) to pi (screen up).
    double angle = 0;
};

/// The shares of readings that pass, from readings that need not be in memory.
class PostureShares {
public:
    void add(const PostureReading& reading);

    /// 0 to 1. There must be a reading.
    BySensitivity of(bool screenDown) const;

private:
    using Counts = std::array<std::size_t, highestSensitivity + 1>;

    std::size_t readings = 0;
    Counts up{};
    Counts down{};
};

} // namespace noctara
