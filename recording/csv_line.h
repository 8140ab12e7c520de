/// One line of a CSV file: its fields, and the numbers and times in them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

/// Semicolon or tab when the line holds two or more of them, else comma. Commas come last, because
/// they may be decimal commas.
char findDelimiter(std::string_view line);

using Fields = std::vector<std::string_view>;

/// Splits lines. Reuses its memory, because a recording has millions of lines.
class LineSplitter {
public:
    /// The fields without quotes and surrounding blanks; none for a blank line. A carriage return
    /// ends the line. The result is valid until the next call, and as long as `line` is.
    const Fields& split(std::string_view line, char delimiter);

private:
    Fields fields;
    std::vector<std::string> unquoted;
};

/// A finite number with a decimal point or comma. Absent for anything else.
std::optional<double> parseNumber(std::string_view text);

/// Seconds since 1970 of "2014-03-01T22:30:00.5+01:00" (also with a blank for the T, and with Z or
/// nothing for the offset) or of "01-Mar-2014 22:30:00.5". Absent for anything else.
std::optional<double> parseDateTime(std::string_view text);

/// Seconds since midnight of "22:30:00.250". A comma or a colon may replace the point. Absent for
/// anything else.
std::optional<double> parseClockTime(std::string_view text);

} // namespace noctara
