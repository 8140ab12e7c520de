/// Refuses property lists that libplist would crash or hang on, or would read as other values.
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

/// Throws UnreadablePropertyList for a binary list that nests too deep, expands to more than 16 MiB
/// once each reference to a shared value has become a copy, or holds text with a NUL or a lone
/// surrogate. Other damage may pass.
void checkBinaryPropertyList(std::string_view bytes);

/// The XML without a byte order mark and without leading zeros of integers, which libplist would
/// take for octal ones.
///
/// Throws UnreadablePropertyList for XML that nests too deep, holds a NUL, or has an integer, a
/// real or a date that is not one. Other damage may pass.
std::string checkedXmlPropertyList(std::string_view bytes);

} // namespace noctara
