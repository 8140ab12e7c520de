#include "monitor/description.h"

#include "platform/utf8.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace noctara {

namespace {

constexpr std::size_t indentation = 4;

void appendEscaped(std::string& result, char32_t character) {
    char escape[16];
    const auto unit = [&](char32_t utf16) {
        std::snprintf(escape, sizeof escape, "\\U%04x", static_cast<unsigned>(utf16));
        result += escape;
    };
    if (character < 0x10000) {
        unit(character);
    } else {
        unit(0xD800 + ((character - 0x10000) >> 10));
        unit(0xDC00 + ((character - 0x10000) & 0x3FF));
    }
}

/// Text as in an old-style property list: in quotes, unless it consists of ASCII letters and
/// digits.
std::string quoted(const std::string& text) {
    const auto isPlain = [](unsigned char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    };
    if (!text.empty() && std::all_of(text.begin(), text.end(), isPlain))
        return text;
    std::string result = "\"";
    for (std::string_view rest = text; !rest.empty();) {
        // A byte that is not UTF-8 is printed as the character with its number.
        const char32_t byte = static_cast<unsigned char>(rest.front());
        const auto taken = takeUtf8(rest);
        if (!taken)
            rest.remove_prefix(1);
        const char32_t character = taken.value_or(byte);
        if (character == '"' || character == '\\')
            (result += '\\') += static_cast<char>(character);
        else if (character == '\n')
            result += "\\n";
        else if (character == '\t')
            result += "\\t";
        else if (character >= ' ' && character < 0x7F)
            result += static_cast<char>(character);
        else
            appendEscaped(result, character);
    }
    return result + '"';
}

std::string describe(const PropertyList& value, std::size_t indent);

std::string describe(const Data& data) {
    std::string result = "<";
    for (std::size_t i = 0; i < data.size(); ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%s%02x", i != 0 && i % 4 == 0 ? " " : "", data[i]);
        result += digits;
    }
    return result + '>';
}

/// The platform writes the margin of a nested value even after "key = ".
std::string describe(const Array& array, std::size_t indent) {
    const std::string margin(indent, ' ');
    std::string result = margin + "(\n";
    for (std::size_t i = 0; i < array.size(); ++i)
        result += margin + std::string(indentation, ' ') +
                  describe(array[i], indent + indentation) + (i + 1 < array.size() ? ",\n" : "\n");
    return result + margin + ")";
}

std::string describe(const Dictionary& dictionary, std::size_t indent) {
    std::vector<const DictionaryEntry*> entries;
    for (const auto& entry : dictionary)
        entries.push_back(&entry);
    std::sort(entries.begin(), entries.end(),
              [](const auto* one, const auto* other) { return one->key < other->key; });
    const std::string margin(indent, ' ');
    std::string result = margin + "{\n";
    for (const auto* entry : entries)
        result += margin + std::string(indentation, ' ') + quoted(entry->key) + " = " +
                  describe(entry->value, indent + indentation) + ";\n";
    return result + margin + "}";
}

std::string describe(const PropertyList& value, std::size_t indent) {
    if (const auto* truth = value.as<bool>())
        return *truth ? "1" : "0";
    if (const auto* integer = value.as<std::int64_t>())
        return quoted(std::to_string(*integer));
    if (const auto* real = value.as<double>()) {
        char digits[32];
        std::snprintf(digits, sizeof digits, "%.16g", *real);
        return quoted(digits);
    }
    if (const auto* text = value.as<std::string>())
        return quoted(*text);
    if (const auto* date = value.as<Date>())
        return quoted(description(*date));
    if (const auto* data = value.as<Data>())
        return describe(*data);
    if (const auto* array = value.as<Array>())
        return describe(*array, indent);
    return describe(*value.as<Dictionary>(), indent);
}

} // namespace

std::string description(Date date) {
    using namespace std::chrono;
    const sys_seconds instant{
        seconds{static_cast<std::int64_t>(std::floor(date.secondsSince1970))}};
    const auto midnight = floor<days>(instant);
    const year_month_day day{midnight};
    const hh_mm_ss time{instant - midnight};
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d +0000", int{day.year()},
                  unsigned{day.month()}, unsigned{day.day()},
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text;
}

std::string description(const Dictionary& dictionary) {
    return describe(dictionary, 0);
}

} // namespace noctara
