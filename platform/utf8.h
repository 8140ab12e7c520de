/// UTF-8, one character at a time.
#pragma once

#include <optional>
#include <string_view>

namespace noctara {

/// Takes the first character off `text`. Absent, with `text` as it was, when what it begins with is
/// not well-formed (overlong, a surrogate, beyond U+10FFFF, cut off), or when it is empty.
std::optional<char32_t> takeUtf8(std::string_view& text);

bool isUtf8(std::string_view text);

} // namespace noctara
