/// The lines, fields and numbers of a CSV file, forgiving about what loggers and spreadsheets do.
#pragma once

#include <csv.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

/// The whole file as UTF-8 without a byte order mark. Throws BadInput when it cannot be read, is
/// empty or is no text.
std::string readText(const std::filesystem::path& path);

/// Views into `text`, without their ends: LF, CR LF or CR.
std::vector<std::string_view> splitLines(std::string_view text);

/// Whether a line is blank, a comment (# or //) or a spreadsheet's "sep=" line.
bool holdsNoFields(std::string_view line);

/// Semicolon or tab when it divides at least half of these lines in three or more; else comma.
char findDelimiter(const std::vector<std::string_view>& lines);

/// Takes lines apart, a field's quotes and surrounding blanks included.
class FieldSplitter {
public:
    explicit FieldSplitter(char delimiter);
    ~FieldSplitter();
    FieldSplitter(const FieldSplitter&) = delete;
    FieldSplitter& operator=(const FieldSplitter&) = delete;

    /// The fields, good until the next call. An unclosed quote ends with its line.
    const std::vector<std::string>& split(std::string_view line);

private:
    csv_parser parser;
    std::vector<std::string> fields;
};

/// A finite number, with a decimal point or comma; absent when the text is anything else.
std::optional<double> parseNumber(std::string text);

/// An ISO 8601 date and time ("2014-03-01T22:30:00.5+01:00", with a blank for the T, without the
/// offset) or "01-Mar-2014 22:30:00.5", in seconds since 1970. Absent for anything else.
std::optional<double> parseDateTime(std::string text);

} // namespace noctara
