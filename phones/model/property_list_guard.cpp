#include "phones/model/property_list_guard.h"

#include "phones/model/property_list_date.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include <fast_float/fast_float.h>

namespace noctara {

namespace {

/// Compared one by one, because find_first_of calls a function for each character.
constexpr bool isBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

[[noreturn]] void refuse(const char* reason) {
    throw UnreadablePropertyList(reason);
}

void requireLevel(std::size_t level) {
    static_assert(maximumPropertyListLevels == 64);
    if (level > maximumPropertyListLevels)
        refuse("nested deeper than 64 levels");
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

bool isReal(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double value = 0;
    const char* end = text.data() + text.size();
    const auto parsed = fast_float::from_chars(text.data(), end, value);
    return parsed.ec != std::errc::invalid_argument && parsed.ptr == end;
}

/// The same integer without leading zeros.
std::string plainInteger(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    std::string_view digits = text.substr(isNegative || text.starts_with('+') ? 1 : 0);
    const bool isHexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    digits.remove_prefix(isHexadecimal ? 2 : 0);
    std::uint64_t magnitude = 0;
    const char* end = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), end, magnitude, isHexadecimal ? 16 : 10);
    if (parsed.ec == std::errc::invalid_argument || parsed.ptr != end)
        refuse("an invalid integer");
    if (parsed.ec != std::errc() || (isNegative && magnitude > std::uint64_t{1} << 63))
        refuse("an integer over 64 bits");
    if (isHexadecimal)
        return std::string(text);
    std::string decimal(isNegative ? 1 : 0, '-');
    decimal += std::to_string(magnitude);
    return decimal;
}

/// Checks the text at `begin`, of a number or a date. Removes leading zeros of integers.
void checkScalar(std::string& xml, std::string_view name, std::size_t begin) {
    std::size_t end = std::min(xml.find('<', begin), xml.size());
    while (begin < end && isBlank(xml[begin]))
        ++begin;
    while (begin < end && isBlank(xml[end - 1]))
        --end;
    const std::string_view text = std::string_view(xml).substr(begin, end - begin);
    if (name == "real" && !isReal(text))
        refuse("an invalid real number");
    if (name == "date" && !secondsOfDateText(text))
        refuse("an invalid date");
    if (name == "integer") {
        const std::string plain = plainInteger(text);
        if (plain != text)
            xml.replace(begin, text.size(), std::string(text.size() - plain.size(), ' ') + plain);
    }
}

/// The position after the first `closing` at or after `from`.
std::size_t endOf(std::string_view text, std::string_view closing, std::size_t from) {
    const std::size_t found = text.find(closing, from);
    if (found == std::string_view::npos)
        refuse("ends too early");
    return found + closing.size();
}

/// The name at the beginning of a tag, with the slash of a closing tag.
std::string_view nameIn(std::string_view tag) {
    std::size_t length = tag.starts_with('/') ? 1 : 0;
    while (length < tag.size() && tag[length] != '/' && !isBlank(tag[length]))
        ++length;
    return tag.substr(0, length);
}

} // namespace

void checkBinaryPropertyList(std::string_view bytes) {
    BinaryWalk{bytes};
}

std::string checkedXmlPropertyList(std::string_view bytes) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(byteOrderMark))
        bytes.remove_prefix(byteOrderMark.size());
    std::string xml(bytes);
    std::size_t levels = 0;
    std::size_t end = 0;
    for (std::size_t at = xml.find('<'); at != xml.npos; at = xml.find('<', end)) {
        const std::string_view rest = std::string_view(xml).substr(at);
        if (rest.starts_with("<!--")) {
            end = endOf(xml, "-->", at + 4);
            continue;
        }
        if (rest.starts_with("<![CDATA[")) {
            end = endOf(xml, "]]>", at + 9);
            continue;
        }
        end = endOf(xml, rest.starts_with("<?") ? "?>" : ">", at);
        const std::string_view tag = rest.substr(1, end - at - 2);
        // libplist ignores ">" within quotation marks or brackets, so it would see other tags.
        if (std::count(tag.begin(), tag.end(), '"') % 2 != 0 || tag.find('[') != tag.npos)
            refuse("not a property list");
        const std::string_view name = nameIn(tag);
        if ((name == "array" || name == "dict") && !tag.ends_with('/'))
            requireLevel(++levels);
        else if ((name == "/array" || name == "/dict") && levels > 0)
            --levels;
        else if (name == "/plist")
            xml.resize(end);
        else if (name == "integer" || name == "real" || name == "date")
            checkScalar(xml, name, end);
    }
    if (xml.find('\0') != xml.npos)
        refuse("not a property list");
    return xml;
}

} // namespace noctara
