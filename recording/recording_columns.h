/// Which columns of a recording hold the accelerometer and the time.
#pragma once

#include "recording/units.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
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

    /// The heading of a column, in quotes.
    std::string nameOf(std::size_t column) const;
};

/// The raw accelerometer's columns if the file holds several sensors. Absent when no three headings
/// name x, y and z of an accelerometer.
std::optional<RecordingColumns> findColumns(const std::vector<std::string>& headings);

} // namespace noctara
