/// Refuses property-list bytes that would exhaust the library that parses them.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace noctara {

/// Why a property list cannot be read: one short line for a person.
class UnreadablePropertyList : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Arrays and dictionaries within one another.
inline constexpr std::size_t maximumPropertyListLevels = 64;

/// Of the values, once each reference to a shared one has become a copy: 16 bytes for each value
/// and its text or data.
inline constexpr std::size_t maximumExpandedBytes = std::size_t{16} << 20;

bool isBinaryPropertyList(std::string_view bytes);

/// Throws UnreadablePropertyList when a binary list is damaged, holds a reference cycle, nests too
/// deep or expands too far, or holds a date outside the years 1 to 9999 or text with a NUL or a
/// lone surrogate. Afterwards every reachable object lies within the bytes.
void checkBinaryPropertyList(std::string_view bytes);

/// The XML text of the list, without a byte-order mark and without what follows `</plist>`, fit for
/// the library: integers have lost their leading zeros, which it would take for octal ones.
///
/// Throws UnreadablePropertyList when the list nests too deep, ends too early or holds more than
/// one value, when an integer, real or date is not one, and for what no property list needs and two
/// parsers may see differently: markup inside a tag, a DTD inside the document type.
std::string checkedXmlPropertyList(std::string_view bytes);

} // namespace noctara
