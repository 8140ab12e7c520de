#include "phones/model/property_list_guard.h"

#include "platform/utf8.h"

#include <algorithm>
#include <cstdint>

namespace noctara {

namespace {

[[noreturn]] void refuse(const char* reason) {
    throw UnreadablePropertyList(reason);
}

/// Visits a shared value once for each reference, because libplist copies it each time.
class BinaryWalk {
public:
    explicit BinaryWalk(std::string_view list) : bytes(list) {
        const std::size_t trailer = bytes.size() - std::min<std::size_t>(bytes.size(), 32);
        offsetSize = number(trailer + 6, 1);
        referenceSize = number(trailer + 7, 1);
        table = number(trailer + 24, 8);
        visit(number(trailer + 16, 8), 1);
    }

private:
    /// Big-endian.
    std::uint64_t number(std::uint64_t position, std::uint64_t size) const {
        if (size > 8 || position > bytes.size() || size > bytes.size() - position)
            refuse("damaged binary property list");
        std::uint64_t result = 0;
        const auto begin = static_cast<std::size_t>(position);
        for (const char byte : bytes.substr(begin, static_cast<std::size_t>(size)))
            result = result << 8 | static_cast<std::uint8_t>(byte);
        return result;
    }

    void visit(std::uint64_t object, std::size_t level) {
        std::uint64_t position = number(table + object * offsetSize, offsetSize);
        const std::uint64_t marker = number(position++, 1);
        const std::uint64_t kind = marker >> 4;
        std::uint64_t length = marker & 0xF;
        if (length == 0xF) {
            const std::uint64_t size = std::uint64_t{1} << (number(position, 1) & 0xF);
            length = number(position + 1, size);
            position += 1 + size;
        }

        const bool isDictionary = kind == 0xD;
        const bool isContainer = kind == 0xA || kind == 0xC || isDictionary;
        const bool isText = kind == 0x5 || kind == 0x6;
        const std::uint64_t unitSize = kind == 0x6 ? 2 : 1;
        constexpr std::uint64_t sizeOfValue = 16;
        expandedBytes += sizeOfValue + (isText || kind == 0x4 ? length * unitSize : 0);
        if (expandedBytes > std::size_t{16} << 20)
            refuse("expands to more than 16 MiB");
        if (isText)
            checkText(position, length, unitSize);
        if (!isContainer)
            return;
        requireLevel(level);
        const std::uint64_t references = isDictionary ? 2 * length : length;
        for (std::uint64_t i = 0; i < references; ++i)
            visit(number(position + i * referenceSize, referenceSize), level + 1);
    }

    /// libplist aborts at a NUL in a key, and truncates other text at a NUL or a lone surrogate.
    void checkText(std::uint64_t position, std::uint64_t length, std::uint64_t unitSize) const {
        bool afterLead = false;
        for (std::uint64_t i = 0; i < length; ++i) {
            const std::uint64_t unit = number(position + i * unitSize, unitSize);
            const bool isTrail = (unit & 0xFC00) == 0xDC00;
            if (unit == 0 || isTrail != afterLead)
                refuse("text with a NUL or an incomplete character");
            afterLead = (unit & 0xFC00) == 0xD800;
        }
        if (afterLead)
            refuse("text with a NUL or an incomplete character");
    }

    std::string_view bytes;
    std::uint64_t offsetSize = 0;
    std::uint64_t referenceSize = 0;
    std::uint64_t table = 0;
    std::uint64_t expandedBytes = 0;
};

} // namespace

void requireLevel(std::size_t level) {
    if (level > 64)
        refuse("nested deeper than 64 levels");
}

void requireKeys(std::size_t keysOfOneDictionary) {
    if (keysOfOneDictionary > 4096)
        refuse("more than 4096 keys in one dictionary");
}

std::string checkedText(std::string text) {
    if (!isUtf8(text))
        refuse("text that is not UTF-8");
    return text;
}

void checkBinaryPropertyList(std::string_view bytes) {
    BinaryWalk{bytes};
}

} // namespace noctara
