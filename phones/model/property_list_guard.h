/// Checks property lists. Both forms have limits. A binary list can also make libplist crash or
/// hang, or can be read as other values than it contains.
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

/// Throws UnreadablePropertyList beyond 64 nested arrays and dictionaries. `level` is 1 for the
/// outermost.
void requireLevel(std::size_t level);

/// Throws UnreadablePropertyList beyond 4096 keys. The limit is there because Dictionary searches
/// its keys linearly.
void requireKeys(std::size_t keysOfOneDictionary);

/// Returns the text. Throws UnreadablePropertyList if it is not UTF-8.
std::string checkedText(std::string text);

/// Throws UnreadablePropertyList for a binary list that is nested too deeply or holds text with a
/// NUL or a lone surrogate. It also throws if the list expands to more than 16 MiB when every
/// reference to a shared value becomes a copy. Other damage may go undetected.
void checkBinaryPropertyList(std::string_view bytes);

} // namespace noctara
