/// Refuses property lists on which libplist would crash or hang, or which it would read as other
/// values.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace noctara {

/// The text says why a property list cannot be read, in one short line for the user.
class UnreadablePropertyList : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The limit of nested arrays and dictionaries.
inline constexpr std::size_t maximumPropertyListLevels = 64;

/// Throws UnreadablePropertyList for a binary list that is nested too deeply or holds text with a
/// NUL or a lone surrogate. It also throws if the list expands to more than 16 MiB when every
/// reference to a shared value becomes a copy. Other damage may go undetected.
void checkBinaryPropertyList(std::string_view bytes);

/// Returns the XML without a byte order mark and without leading zeros of integers, which libplist
/// would read as octal.
///
/// Throws UnreadablePropertyList for XML that is nested too deeply, holds a NUL, or has an invalid
/// integer, real or date. Other damage may go undetected.
std::string checkedXmlPropertyList(std::string_view bytes);

} // namespace noctara
