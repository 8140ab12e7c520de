/// Refuses TOML on which the library toml++ would crash or whose result would be undefined.
#pragma once

#include <string>
#include <string_view>

namespace noctara {

/// Throws BadInput, with the position, for a line with more than 200 dots outside strings and
/// comments, a character other than ASCII outside of them or after a backslash that continues a
/// line, and a date with a T that no digit follows. All other faults are left to the library.
/// `file` is the name in the message.
void checkToml(std::string_view text, const std::string& file);

} // namespace noctara
