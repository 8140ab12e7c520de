#include "input/bad_input.h"

namespace noctara {

std::string inQuotes(std::string_view text) {
    constexpr std::size_t longest = 40;
    std::string shown(text.substr(0, longest));
    if (text.size() > longest) {
        // Not in the middle of a UTF-8 character.
        while (!shown.empty() && (static_cast<unsigned char>(shown.back()) & 0xC0U) == 0x80U)
            shown.pop_back();
        if (!shown.empty() && static_cast<unsigned char>(shown.back()) >= 0xC0U)
            shown.pop_back();
        shown += "...";
    }
    unsigned char previous = 0;
    for (char& c : shown) {
        const auto byte = static_cast<unsigned char>(c);
        const bool strayControl =
            byte >= 0x80 && byte < 0xA0 && (previous < 0x80 || previous == 0xC2);
        if (byte < 0x20 || byte == 0x7F || strayControl)
            c = '?';
        previous = byte;
    }
    return '"' + shown + '"';
}

} // namespace noctara
