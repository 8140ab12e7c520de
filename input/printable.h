/// Text from files and arguments, made safe for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace noctara {

/// Whether a character controls a terminal instead of being shown: control characters, line
/// separators, and those that change the direction of text.
bool controlsTerminal(char32_t character);

/// `text` on one line. Each character that controls a terminal, and each byte that is not UTF-8, is
/// replaced by an escape sequence such as \n, \x1b or \u202e.
std::string printable(std::string_view text);

} // namespace noctara
