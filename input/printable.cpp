#include "input/printable.h"

#include "platform/utf8.h"

#include <array>
#include <cstdio>

namespace noctara {

namespace {

std::string escape(char32_t character) {
    if (character == '\n')
        return "\\n";
    if (character == '\t')
        return "\\t";
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), character < 0x80 ? "\\x%02x" : "\\u%04x",
                  static_cast<unsigned>(character));
    return text.data();
}

std::string escapeByte(char byte) {
    std::array<char, 8> text;
    std::snprintf(text.data(), text.size(), "\\x%02x", static_cast<unsigned char>(byte));
    return text.data();
}

} // namespace

bool controlsTerminal(char32_t character) {
    const auto isIn = [&](char32_t first, char32_t last) {
        return character >= first && character <= last;
    };
    const bool isControl = character < 0x20 || isIn(0x7F, 0x9F);
    const bool isSeparator = isIn(0x2028, 0x2029);
    const bool changesDirection =
        character == 0x61C || isIn(0x200E, 0x200F) || isIn(0x202A, 0x202E) || isIn(0x2066, 0x2069);
    return isControl || isSeparator || changesDirection;
}

std::string printable(std::string_view text) {
    std::string shown;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view before = rest;
        const auto character = takeUtf8(rest);
        if (!character)
            rest = before.substr(1);
        if (!character)
            shown += escapeByte(before.front());
        else if (controlsTerminal(*character))
            shown += escape(*character);
        else
            shown += before.substr(0, before.size() - rest.size());
    }
    return shown;
}

} // namespace noctara
