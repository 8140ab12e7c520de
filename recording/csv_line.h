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

/// The fields without quotes and surrounding blanks; none for a blank line. A carriage return ends
/// the line.
std::vector<std::string> splitLine(std::string_view line, char delimiter);

/// A finite number with a decimal point or comma. Absent for anything else.
std::optional<double> parseNumber(std::string text);

/// Seconds since 1970 of "2014-03-01T22:30:00.5+01:00" (also with a blank for the T, and with Z or
/// nothing for the offset) or of "01-Mar-2014 22:30:00.5". Absent for anything else.
std::optional<double> parseDateTime(std::string text);

} // namespace noctara
