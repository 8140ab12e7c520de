#include "platform/utf8.h"

#include <cstddef>

namespace noctara {

std::optional<char32_t> takeUtf8(std::string_view& text) {
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    if (text.empty())
        return std::nullopt;
    const unsigned char lead = byte(0);
    const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const bool isLead = lead < 0x80 || (lead >= 0xC2 && lead <= 0xF4);
    if (!isLead || text.size() < size)
        return std::nullopt;
    char32_t character = size == 1 ? lead : lead & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U)
            return std::nullopt;
        character = character << 6 | (byte(i) & 0x3FU);
    }
    const char32_t smallest = size == 4 ? 0x10000 : size == 3 ? 0x800 : 0;
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    if (character < smallest || character > 0x10FFFF || isSurrogate)
        return std::nullopt;
    text.remove_prefix(size);
    return character;
}

bool isUtf8(std::string_view text) {
    while (takeUtf8(text)) {
    }
    return text.empty();
}

} // namespace noctara
