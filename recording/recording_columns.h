/// Which columns of a recording hold the accelerometer and the time.
#pragma once

#include "recording/units.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

struct RecordingColumns {
    std::vector<std::string> headings;

    /// Indices of x, y and z.
    std::array<std::size_t, 3> axes{};
    std::optional<std::size_t> time;

    /// False when the columns hold gravity alone, or the acceleration without it.
    bool raw = true;

    /// The units in the headings. Absent if the headings have none.
    std::optional<UnitOfAcceleration> unit;
    std::optional<UnitOfTime> timeUnit;
    std::string timeName; ///< The heading of the time.

    /// The heading of a column, in quotes.
    std::string nameOf(std::size_t column) const;
};

/// The raw accelerometer's columns if the file holds several sensors. Absent when no three headings
/// name x, y and z of an accelerometer.
std::optional<RecordingColumns> findColumns(const std::vector<std::string>& headings);

/// The columns of a file whose lines hold one value each, of the axis or sensor that the line
/// names.
struct LabelColumns {
    std::vector<std::size_t> labels; ///< One or several, such as sensor and axis.
    std::size_t value = 0;
    std::optional<std::size_t> time;
    std::optional<UnitOfTime> timeUnit;
    std::string timeName;
};

/// Absent when the headings are not those of such a file.
std::optional<LabelColumns> findLabelColumns(const std::vector<std::string>& headings);

/// The column that names the sensor of each line. Absent if there is none.
std::optional<std::size_t> findSensorColumn(const std::vector<std::string>& headings);

/// Whether this is the name of an accelerometer whose readings contain gravity.
bool namesRawAccelerometer(std::string_view sensor);

} // namespace noctara
