/// What the user says about a recording.
#pragma once

#include "recording/units.h"

#include <optional>

namespace noctara {

/// The sign of the readings: a phone lying screen up reads z = -1 g on iOS, and +1 g on Android,
/// which reports the reaction to gravity.
enum class AxisConvention { ios, android };

/// If a unit is absent, it is taken from the headings, otherwise from the numbers. If the axis
/// convention is absent, it is taken from the unit.
struct RecordingOptions {
    std::optional<AccelerationUnit> unit = std::nullopt;
    std::optional<AxisConvention> axes = std::nullopt;

    /// Samples per second, evenly spaced, above 0. The times in the file are then ignored.
    std::optional<double> rate = std::nullopt;

    /// For times that are numbers.
    std::optional<UnitOfTime> timeUnit = std::nullopt;
};

} // namespace noctara
