/// Where a recording's readings are among the lines and fields of its file.
#pragma once

#include "recording/csv_lines.h"
#include "recording/recording_columns.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

using Lines = std::vector<std::string_view>;

/// In characters; what is longer is no reading and is not taken apart.
inline constexpr std::size_t longestLine = 1 << 16;

/// Where the readings are in the file.
struct RecordingLayout {
    char delimiter = ',';
    RecordingColumns columns;
    /// Empty when there are none.
    std::vector<std::string> headings;
    std::size_t headingLine = 0;
    /// The first line that holds numbers.
    std::size_t firstLine = 0;

    /// The column's heading in quotes, or "column N", from 1.
    std::string nameOf(std::size_t column) const;
};

struct TimeColumn {
    std::size_t index = 0;
    bool holdsDates = false;

    /// In the file's own unit, seconds for dates; absent when the field holds no such time.
    std::optional<double> parse(const std::string& field) const;
};

/// Throws BadInput, which names `file`, when no line holds numbers, when the headings name no raw
/// accelerometer, or when its fields cannot be told apart.
RecordingLayout findLayout(const std::string& file, const Lines& lines);

/// The likeliest column whose first entries are numbers, or else dates. Throws BadInput when there
/// is none.
TimeColumn findTime(const std::string& file, const Lines& lines, const RecordingLayout& layout);

} // namespace noctara
