/// Which columns of a recording hold the accelerometer, told from the headings that loggers write.
#pragma once

#include "recording/recording.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

struct RecordingColumns {
    /// Indices of x, y and z.
    std::array<std::size_t, 3> axes{};

    /// Indices of the columns that may hold the time, the likeliest first.
    std::vector<std::size_t> times;

    /// False when the file has gravity taken out of the readings, or nothing but gravity: such
    /// columns are found, but do not tell what the accelerometer read.
    bool raw = true;

    /// What the headings say; absent where they are silent.
    std::optional<AccelerationUnit> unit;
    std::optional<AxisConvention> convention;
};

/// The raw accelerometer's columns when there are several sensors. Absent when no three headings
/// name x, y and z of one sensor that measures acceleration.
std::optional<RecordingColumns> findColumns(const std::vector<std::string>& headings);

/// How many seconds one unit of a time column is; absent when its heading does not say.
std::optional<double> timeUnitOf(const std::string& heading);

} // namespace noctara
