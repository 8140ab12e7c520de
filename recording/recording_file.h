/// Reads the CSV files that accelerometer loggers write: phyphox, Sensor Logger, SensorLog,
/// AndroSensor, Physics Toolbox, MATLAB Mobile, and others with similar headings.
#pragma once

#include "recording/recording.h"
#include "recording/units.h"

#include <filesystem>
#include <optional>
#include <ostream>

namespace noctara {

/// The sign of the readings: a phone lying screen up reads z = -1 g on iOS, and +1 g on Android,
/// which reports the reaction to gravity.
enum class AxisConvention { ios, android };

/// If the unit is absent, it is taken from the headings, otherwise from the numbers. If the axis
/// convention is absent, it is taken from the unit.
struct RecordingOptions {
    std::optional<AccelerationUnit> unit;
    std::optional<AxisConvention> axes;

    /// Samples per second, evenly spaced, above 0. The times in the file are then ignored.
    std::optional<double> rate;
};

/// Fields are separated by semicolons, tabs or commas; numbers have decimal points or commas. The
/// columns are found by their headings. Lines before the headings are ignored. A later line without
/// a reading is skipped and reported to `complaints` as "FILE:LINE: ..."; after ten of them the
/// rest is only counted.
///
/// Returns at least one sample. Throws BadInput when the file cannot be used.
Recording readRecording(const std::filesystem::path& path, const RecordingOptions& options,
                        std::ostream& complaints);

} // namespace noctara
