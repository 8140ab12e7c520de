#include "recording/csv_line.h"

#include <absl/time/time.h>
#include <csv.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <new>
#include <system_error>

namespace noctara {

char findDelimiter(std::string_view line) {
    for (const char delimiter : {';', '\t'}) {
        if (std::count(line.begin(), line.end(), delimiter) >= 2)
            return delimiter;
    }
    return ',';
}

std::vector<std::string> splitLine(std::string_view line, char delimiter) {
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

std::optional<double> parseNumber(std::string text) {
    std::replace(text.begin(), text.end(), ',', '.');
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<double> parseDateTime(std::string text) {
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

} // namespace noctara
