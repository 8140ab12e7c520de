/// The posture of the phone in a recording, judged by the monitor's own check.
#pragma once

#include "recording/recording.h"

#include <array>
#include <cstdint>
#include <optional>

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

/// The readings that pass at Sensitivity 0 in one posture. Shares are 0 to 1.
struct LyingReadings {
    bool screenDown = false;
    double medianDegreesOff = 0;
    double worstDegreesOff = 0;

    /// The share of these readings, not of all, that passes.
    BySensitivity passing{};

    /// The highest Sensitivity at which at least `share` of these readings passes.
    std::int32_t highestPassing(double share) const;
};

struct PostureStatistics {
    /// The share of all readings that passes, 0 to 1.
    BySensitivity screenUp{};
    BySensitivity screenDown{};

    /// For the posture in which more readings pass. Absent if none passes.
    std::optional<LyingReadings> lying;

    /// The reading of a phone that is not moved, in any posture and of any length. Absent if the
    /// phone is moved.
    std::optional<PostureReading> steady;
};

/// The recording must have a sample.
PostureStatistics computePostureStatistics(const Recording& recording);

} // namespace noctara
