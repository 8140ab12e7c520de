#include "input/bad_input.h"

#include "platform/utf8.h"

namespace noctara {

namespace {

/// Removes the first character, or a byte that is none, and returns how it is shown.
std::string_view takeShown(std::string_view& text) {
    const std::string_view before = text;
    const auto character = takeUtf8(text);
    if (!character)
        text.remove_prefix(1);
    const bool isShown =
        character && *character >= 0x20 && (*character < 0x7F || *character >= 0xA0);
    return isShown ? before.substr(0, before.size() - text.size()) : "?";
}

} // namespace

std::string withoutControls(std::string_view text) {
    std::string shown;
    while (!text.empty())
        shown += takeShown(text);
    return shown;
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t longest = 40;
    std::string shown;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view character = takeShown(rest);
        if (text.size() - rest.size() > longest) {
            shown += "...";
            break;
        }
        shown += character;
    }
    return '"' + shown + '"';
}

} // namespace noctara
