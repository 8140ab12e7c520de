/// Fields are split by libcsv, one line at a time, so that a stray quote spoils its own line only.
#include "recording/csv_lines.h"

#include "input/bad_input.h"

// g++ 12 believes that the parser leaves a local variable unset.
#pragma GCC diagnostic push
#ifndef __clang__
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <date/date.h>
#pragma GCC diagnostic pop

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <fstream>
#include <new>
#include <sstream>
#include <system_error>

namespace noctara {

namespace {

constexpr std::string_view blanks = " \t\v\f";

void refuseUnlessText(const std::filesystem::path& path, std::string_view start) {
    if (start.starts_with("\xff\xfe") || start.starts_with("\xfe\xff"))
        throw BadInput(path.string() + ": the text is UTF-16; save it as UTF-8");
    if (start.starts_with("PK\x03\x04"))
        throw BadInput(path.string() + ": this is a zip archive; unpack it and give the CSV file "
                                       "of the accelerometer");
    if (start.find('\0') != start.npos)
        throw BadInput(path.string() + ": this is no text; give the CSV file that the logger "
                                       "exports");
}

std::string_view withoutLeadingBlanks(std::string_view line) {
    const auto start = line.find_first_not_of(blanks);
    return start == line.npos ? std::string_view{} : line.substr(start);
}

std::size_t countUnquoted(std::string_view line, char wanted) {
    bool quotedPart = false;
    std::size_t count = 0;
    for (const char c : line) {
        if (c == '"')
            quotedPart = !quotedPart;
        else if (c == wanted && !quotedPart)
            ++count;
    }
    return count;
}

std::optional<double> parseWith(const char* format, const std::string& text) {
    std::istringstream in(text);
    date::sys_time<std::chrono::microseconds> instant;
    if (!date::from_stream(in, format, instant) ||
        in.peek() != std::istringstream::traits_type::eof())
        return std::nullopt;
    return std::chrono::duration<double>(instant.time_since_epoch()).count();
}

} // namespace

std::string readText(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error))
        throw BadInput(path.string() +
                       ": there is no such file; give the CSV file that the logger exports");
    if (std::filesystem::is_directory(path, error))
        throw BadInput(path.string() + ": this is a directory; give a CSV file");
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw BadInput(path.string() +
                       ": cannot be opened: " + std::generic_category().message(errno));
    std::string text;
    std::array<char, 1 << 16> chunk{};
    // Looking at every chunk as it comes ends the reading of a device that never ends.
    while (file.read(chunk.data(), chunk.size()), file.gcount() > 0) {
        const std::string_view part(chunk.data(), static_cast<std::size_t>(file.gcount()));
        if (text.empty() || part.find('\0') != part.npos)
            refuseUnlessText(path, part);
        text += part;
    }
    if (file.bad())
        throw BadInput(path.string() + ": cannot be read to its end");
    if (text.starts_with("\xef\xbb\xbf"))
        text.erase(0, 3);
    if (text.empty())
        throw BadInput(path.string() + ": the file is empty");
    return text;
}

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find_first_of("\r\n"), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
        if (!text.empty())
            text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
    }
    return lines;
}

bool holdsNoFields(std::string_view line) {
    const std::string_view text = withoutLeadingBlanks(line);
    return text.empty() || text.starts_with('#') || text.starts_with("//") ||
           text.starts_with("sep=");
}

char findDelimiter(const std::vector<std::string_view>& lines) {
    // Commas are what is left, since they may be decimal ones.
    for (const char delimiter : {';', '\t'}) {
        const auto divided =
            std::count_if(lines.begin(), lines.end(), [delimiter](std::string_view line) {
                return countUnquoted(line, delimiter) >= 2;
            });
        if (divided > 0 && static_cast<std::size_t>(divided) * 2 >= lines.size())
            return delimiter;
    }
    return ',';
}

FieldSplitter::FieldSplitter(char delimiter) {
    csv_init(&parser, 0);
    csv_set_delim(&parser, static_cast<unsigned char>(delimiter));
}

FieldSplitter::~FieldSplitter() {
    csv_free(&parser);
}

const std::vector<std::string>& FieldSplitter::split(std::string_view line) {
    const auto addField = [](void* text, std::size_t length, void* data) {
        auto& known = *static_cast<std::vector<std::string>*>(data);
        known.emplace_back(length ? static_cast<const char*>(text) : "", length);
    };
    fields.clear();
    if (csv_parse(&parser, line.data(), line.size(), addField, nullptr, &fields) != line.size() ||
        csv_fini(&parser, addField, nullptr, &fields) != 0)
        throw std::bad_alloc();
    return fields;
}

std::optional<double> parseNumber(std::string text) {
    std::replace(text.begin(), text.end(), ',', '.');
    std::string_view digits = text;
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc{} || end != digits.data() + digits.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<double> parseDateTime(std::string text) {
    if (text.size() > 10 && text[10] == 'T')
        text[10] = ' ';
    std::replace(text.begin(), text.end(), ',', '.');
    if (text.ends_with('Z'))
        text.pop_back();
    if (const auto point = text.find('.'); point != text.npos) {
        const auto end = std::min(text.find_first_not_of("0123456789", point + 1), text.size());
        const auto microsecondsEnd = std::min(point + 7, end);
        text.erase(microsecondsEnd, end - microsecondsEnd);
    }
    for (const char* format : {"%F %T%Ez", "%F %T", "%d-%b-%Y %T"}) {
        if (const auto seconds = parseWith(format, text))
            return seconds;
    }
    return std::nullopt;
}

} // namespace noctara
