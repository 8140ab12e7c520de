/// A property list with values of every type, and the bytes of invalid lists.
#pragma once

#include "phones/model/property_list_file.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

inline std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

inline std::string listOf(std::string_view content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" +
           std::string(content) + "</plist>\n";
}

/// The reason for which the bytes are refused; empty when they are read.
inline std::string errorOf(std::string_view bytes) {
    const ParsedPropertyList parsed = parsePropertyList(bytes);
    EXPECT_NE(parsed.value.has_value(), !parsed.error.empty());
    return parsed.error;
}

inline std::string bigEndian(std::uint64_t number, unsigned size) {
    std::string bytes;
    for (unsigned i = size; i-- > 0;)
        bytes += i < 8 ? static_cast<char>(number >> (8 * i) & 0xFF) : '\0';
    return bytes;
}

inline std::string byte(unsigned value) {
    return bigEndian(value, 1);
}

/// The trailer of a binary list; the sizes are in bytes.
struct Trailer {
    unsigned offsetSize = 3;
    unsigned referenceSize = 1;
    std::uint64_t count = 0;
    std::uint64_t top = 0;
    std::uint64_t table = 0;
};

/// A binary list of these objects, each with its marker. `adjust` may change the trailer.
template <typename Adjust>
std::string binaryOf(const std::vector<std::string>& objects, Adjust adjust) {
    std::string bytes = "bplist00";
    std::vector<std::size_t> offsets;
    for (const auto& object : objects) {
        offsets.push_back(bytes.size());
        bytes += object;
    }
    Trailer trailer;
    trailer.count = objects.size();
    trailer.table = bytes.size();
    adjust(trailer);
    for (const std::size_t offset : offsets)
        bytes += bigEndian(offset, trailer.offsetSize);
    return bytes + std::string(6, '\0') + byte(trailer.offsetSize) + byte(trailer.referenceSize) +
           bigEndian(trailer.count, 8) + bigEndian(trailer.top, 8) + bigEndian(trailer.table, 8);
}

inline std::string binaryOf(const std::vector<std::string>& objects) {
    return binaryOf(objects, [](Trailer&) {});
}

inline std::string binaryReal(unsigned marker, double value) {
    return byte(marker) + bigEndian(std::bit_cast<std::uint64_t>(value), 8);
}

inline const std::string binaryTrue = byte(0x09);

inline const Dictionary everyType{
    {"yes", true},
    {"no", false},
    {"integer", -42},
    {"real", 0.1},
    {"text", "<&>\"' \xF0\x9F\x98\x80\nnext"},
    {"date", Date{1330837567}},
    {"data", Data{0, 1, 2, 255}},
    {"array", Array{1, "two", Array{}, Dictionary{{"three", 3}}}},
    {"empty", Dictionary{}},
};

} // namespace noctara
