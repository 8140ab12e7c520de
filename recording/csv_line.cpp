#include "recording/csv_line.h"

#include <csv.h>
#include <date/date.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <new>
#include <sstream>
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
    for (const char* format : {"%F %T%Ez", "%F %TZ", "%F %T", "%d-%b-%Y %T"}) {
        std::istringstream in(text);
        date::sys_time<std::chrono::nanoseconds> instant;
        if (date::from_stream(in, format, instant) &&
            in.peek() == std::istringstream::traits_type::eof())
            return std::chrono::duration<double>(instant.time_since_epoch()).count();
    }
    return std::nullopt;
}

} // namespace noctara
