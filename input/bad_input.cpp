#include "input/bad_input.h"

#include "input/printable.h"
#include "platform/utf8.h"

namespace noctara {

std::string inQuotes(std::string_view text) {
    constexpr std::size_t longest = 40;
    std::string shown;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view before = rest;
        const auto character = takeUtf8(rest);
        if (!character)
            rest.remove_prefix(1);
        if (text.size() - rest.size() > longest) {
            shown += "...";
            break;
        }
        const bool isShown = character && !controlsTerminal(*character);
        shown += isShown ? before.substr(0, before.size() - rest.size()) : "?";
    }
    return '"' + shown + '"';
}

} // namespace noctara
