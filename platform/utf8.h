/// Decodes and checks UTF-8.
#pragma once

#include <optional>
#include <string_view>

namespace noctara {

/// Removes the first character from `text` and returns it. Absent, with `text` unchanged, if `text`
/// is empty or does not begin with a well-formed character. Overlong forms, surrogates, values
/// beyond U+10FFFF and truncated characters are not well-formed.
std::optional<char32_t> takeUtf8(std::string_view& text);

bool isUtf8(std::string_view text);

} // namespace noctara
