/// What the readings of a recording say about the posture of the phone. Every verdict is that of
/// the monitor's own check.
#pragma once

#include "recording/recording.h"

#include <array>
#include <cstdint>
#include <optional>

namespace noctara {

/// The settings page offers a Sensitivity from 0 to this one.
inline constexpr std::int32_t highestSensitivity = 9;

/// One value for each Sensitivity from 0.
using BySensitivity = std::array<double, highestSensitivity + 1>;

/// A reading as the posture check sees it.
struct PostureReading {
    explicit PostureReading(const Acceleration& acceleration);

    /// Whether the check takes the phone for lying still with the screen facing down, or up.
    bool lies(std::int32_t sensitivity, bool screenDown) const;

    /// Whether the length alone, whatever the tilt, is that of a phone at rest.
    bool hasLengthAtRest() const;

    bool nearerToScreenDown() const;

    /// From the nearer of the two postures, 0 to 90.
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

    /// In the posture in which more readings pass; absent when none passes.
    std::optional<LyingReadings> lying;

    /// The reading that the phone keeps to, in any posture and of any length. Absent when the phone
    /// is moved.
    std::optional<PostureReading> steady;
};

/// There must be a sample.
PostureStatistics computePostureStatistics(const Recording& recording);

} // namespace noctara
