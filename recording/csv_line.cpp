#include "recording/csv_line.h"

#include <absl/time/time.h>
#include <csv.h>
#include <fast_float/fast_float.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <new>
#include <system_error>

namespace noctara {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// libcsv reads quotes, but copies every field.
std::vector<std::string> splitQuoted(std::string_view line, char delimiter) {
    std::vector<std::string> fields;
    const auto addField = [](void* text, std::size_t length, void* data) {
        auto& known = *static_cast<std::vector<std::string>*>(data);
        known.emplace_back(length ? static_cast<const char*>(text) : "", length);
    };
    csv_parser parser;
    csv_init(&parser, 0);
    csv_set_delim(&parser, static_cast<unsigned char>(delimiter));
    const bool isSplit =
        csv_parse(&parser, line.data(), line.size(), addField, nullptr, &fields) == line.size() &&
        csv_fini(&parser, addField, nullptr, &fields) == 0;
    csv_free(&parser);
    if (!isSplit)
        throw std::bad_alloc();
    return fields;
}

/// One or two digits below `limit` at the start of the text, which are removed.
std::optional<int> takeDigits(std::string_view& text, int limit) {
    const auto count = std::min(text.find_first_not_of("0123456789"), text.size());
    int value = 0;
    std::from_chars(text.data(), text.data() + count, value);
    if (count < 1 || count > 2 || value >= limit)
        return std::nullopt;
    text.remove_prefix(count);
    return value;
}

bool takeColon(std::string_view& text) {
    const bool found = text.starts_with(':');
    if (found)
        text.remove_prefix(1);
    return found;
}

} // namespace

char findDelimiter(std::string_view line) {
    for (const char delimiter : {';', '\t'}) {
        if (std::count(line.begin(), line.end(), delimiter) >= 2)
            return delimiter;
    }
    return ',';
}

const Fields& LineSplitter::split(std::string_view line, char delimiter) {
    fields.clear();
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    if (line.find('"') != line.npos || line.find('\r') != line.npos) {
        unquoted = splitQuoted(line, delimiter);
        fields.assign(unquoted.begin(), unquoted.end());
        return fields;
    }
    if (withoutBlanks(line).empty())
        return fields;
    while (true) {
        const auto end = line.find(delimiter);
        fields.push_back(withoutBlanks(line.substr(0, end)));
        if (end == line.npos)
            return fields;
        line.remove_prefix(end + 1);
    }
}

std::optional<double> parseNumber(std::string_view text) {
    std::array<char, 64> buffer;
    const auto comma = text.find(',');
    if (comma != text.npos) {
        if (text.size() > buffer.size())
            return std::nullopt;
        std::copy(text.begin(), text.end(), buffer.begin());
        buffer[comma] = '.';
        text = {buffer.data(), text.size()};
    }
    double value = 0;
    const auto [end, error] = fast_float::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<double> parseDateTime(std::string_view field) {
    std::string text(field);
    if (text.size() > 10 && text[10] == 'T')
        text[10] = ' ';
    // ParseTime accepts "infinite-future" in every format.
    if (text.find("infinite") != text.npos)
        return std::nullopt;
    absl::Time instant;
    for (const char* format :
         {"%Y-%m-%d %H:%M:%E*S%Ez", "%Y-%m-%d %H:%M:%E*S", "%d-%b-%Y %H:%M:%E*S"})
        if (absl::ParseTime(format, text, &instant, nullptr))
            return absl::ToDoubleSeconds(instant - absl::UnixEpoch());
    return std::nullopt;
}

std::optional<double> parseClockTime(std::string_view text) {
    const auto hours = takeDigits(text, 24);
    if (!hours || !takeColon(text))
        return std::nullopt;
    const auto minutes = takeDigits(text, 60);
    if (!minutes || !takeColon(text))
        return std::nullopt;
    const auto seconds = takeDigits(text, 60);
    if (!seconds)
        return std::nullopt;
    double fraction = 0;
    if (!text.empty()) {
        std::string digits = "0." + std::string(text.substr(1));
        const bool isFraction = text.size() > 1 &&
                                std::string_view(".,:").find(text[0]) != text.npos &&
                                digits.find_first_not_of("0123456789", 2) == digits.npos;
        if (!isFraction)
            return std::nullopt;
        fraction = *parseNumber(digits);
    }
    return (*hours * 60 + *minutes) * 60 + *seconds + fraction;
}

} // namespace noctara
