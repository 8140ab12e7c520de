/// Refuses property-list bytes that would exhaust the library that parses them.
///
/// The library frees nested values, and parses binary ones, by recursion, and copies a binary
/// object for each reference to it: a small file could overflow the stack or fill the memory.
#include "phones/model/property_list_guard.h"

#include "phones/model/property_list_date.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>
#include <vector>

namespace noctara {

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view binaryMagic = "bplist00";

[[noreturn]] void refuseNesting() {
    throw UnreadablePropertyList("nested deeper than " + std::to_string(maximumPropertyListLevels) +
                                 " levels");
}

[[noreturn]] void refuseDamage() {
    throw UnreadablePropertyList("damaged binary property list");
}

[[noreturn]] void refuseText() {
    throw UnreadablePropertyList("text with a NUL or half a character");
}

[[noreturn]] void refuseXml() {
    throw UnreadablePropertyList("not a property list");
}

/// A walk over the object table that visits each object once.
class BinaryCheck {
public:
    explicit BinaryCheck(std::string_view all) : bytes(all) {
        constexpr std::size_t trailerSize = 32;
        if (bytes.size() < binaryMagic.size() + trailerSize)
            refuseDamage();
        const std::size_t trailer = bytes.size() - trailerSize;
        offsetSize = bigEndian(trailer + 6, 1);
        referenceSize = bigEndian(trailer + 7, 1);
        const std::uint64_t count = bigEndian(trailer + 8, 8);
        top = bigEndian(trailer + 16, 8);
        table = bigEndian(trailer + 24, 8);
        const auto isWidth = [](std::uint64_t size) { return size >= 1 && size <= 8; };
        if (!isWidth(offsetSize) || !isWidth(referenceSize) || table < binaryMagic.size() ||
            table > trailer || count > (trailer - table) / offsetSize || top >= count)
            refuseDamage();
        measures.resize(count);
    }

    void run() {
        std::vector<Visit> path{open(top)};
        while (true) {
            Visit& visit = path.back();
            if (visit.next < visit.references) {
                const std::uint64_t child =
                    bigEndian(visit.firstReference + visit.next * referenceSize, referenceSize);
                if (child >= measures.size())
                    refuseDamage();
                if (measures[child].state == State::open)
                    throw UnreadablePropertyList("a value that contains itself");
                if (measures[child].state == State::unseen) {
                    path.push_back(open(child));
                    continue;
                }
                ++visit.next;
                add(measures[visit.object], measures[child]);
            } else {
                measures[visit.object].state = State::measured;
                path.pop_back();
                if (path.empty())
                    return;
            }
        }
    }

private:
    enum class State : std::uint8_t { unseen, open, measured };

    /// What an object comes to with all that it refers to.
    struct Measure {
        State state = State::unseen;
        std::size_t levels = 0;
        std::uint64_t expandedBytes = 0;
    };

    struct Visit {
        std::uint64_t object;
        std::uint64_t firstReference; ///< Position in the file.
        std::uint64_t references;
        std::uint64_t next = 0;
    };

    std::uint64_t bigEndian(std::uint64_t position, std::uint64_t size) const {
        std::uint64_t number = 0;
        for (const char byte : bytes.substr(position, size))
            number = number << 8 | static_cast<std::uint8_t>(byte);
        return number;
    }

    void requireObjectBytes(std::uint64_t position, std::uint64_t size) const {
        if (position > table || size > table - position)
            refuseDamage();
    }

    static void add(Measure& parent, const Measure& child) {
        parent.levels = std::max(parent.levels, child.levels + 1);
        if (parent.levels > maximumPropertyListLevels)
            refuseNesting();
        parent.expandedBytes += child.expandedBytes;
        if (parent.expandedBytes > maximumExpandedBytes)
            throw UnreadablePropertyList("expands to more than 16 MiB");
    }

    Visit open(std::uint64_t object) {
        const std::uint64_t offset = bigEndian(table + object * offsetSize, offsetSize);
        if (offset < binaryMagic.size())
            refuseDamage();
        requireObjectBytes(offset, 1);
        const std::uint64_t marker = bigEndian(offset, 1);
        const std::uint64_t kind = marker >> 4;
        std::uint64_t length = marker & 0xF;
        std::uint64_t position = offset + 1;
        if (kind >= 0x4 && kind != 0x8 && length == 0xF) {
            requireObjectBytes(position, 1);
            const std::uint64_t lengthMarker = bigEndian(position, 1);
            if (lengthMarker < 0x10 || lengthMarker > 0x13)
                refuseDamage();
            const std::uint64_t lengthSize = std::uint64_t{1} << (lengthMarker & 0xF);
            requireObjectBytes(position + 1, lengthSize);
            length = bigEndian(position + 1, lengthSize);
            position += 1 + lengthSize;
        }
        if (length > bytes.size())
            refuseDamage();

        std::uint64_t content = 0;
        std::uint64_t references = 0;
        switch (kind) {
        case 0x0: // null, false, true
            break;
        case 0x1: // integer
        case 0x2: // real
            if (length > 4)
                refuseDamage();
            content = std::uint64_t{1} << length;
            break;
        case 0x3: // date
            if (length != 3)
                refuseDamage();
            content = 8;
            break;
        case 0x4: // data
        case 0x5: // ASCII
            content = length;
            break;
        case 0x6: // UTF-16
            content = 2 * length;
            break;
        case 0x8: // UID
            content = length + 1;
            break;
        case 0xA: // array
        case 0xC: // set
            references = length;
            break;
        case 0xD: // dictionary: all keys, then all values
            references = 2 * length;
            break;
        default:
            refuseDamage();
        }
        requireObjectBytes(position, content + references * referenceSize);
        if (kind == 0x3)
            checkDate(position);
        if (kind == 0x5 && bytes.substr(position, content).find('\0') != bytes.npos)
            refuseText();
        if (kind == 0x6)
            checkUtf16(position, position + content);

        measures[object] = {State::open, 0, 16 + content};
        if (kind == 0xA || kind == 0xC || kind == 0xD)
            measures[object].levels = 1;
        return {object, position, references};
    }

    void checkDate(std::uint64_t position) const {
        constexpr double from1970To2001 = 978307200;
        const double seconds = std::bit_cast<double>(bigEndian(position, 8)) + from1970To2001;
        if (!(seconds >= double{earliestPropertyListDate} &&
              seconds <= double{latestPropertyListDate}))
            throw UnreadablePropertyList("a date outside the years 1 to 9999");
    }

    /// The library stops the program at a NUL in a key, and cuts text at half a surrogate pair.
    void checkUtf16(std::uint64_t position, std::uint64_t end) const {
        while (position < end) {
            const std::uint64_t unit = bigEndian(position, 2);
            position += 2;
            const bool isLead = unit >= 0xD800 && unit < 0xDC00;
            const bool isTrail = unit >= 0xDC00 && unit < 0xE000;
            if (unit == 0 || isTrail || (isLead && position == end))
                refuseText();
            if (isLead) {
                const std::uint64_t trail = bigEndian(position, 2);
                position += 2;
                if (trail < 0xDC00 || trail >= 0xE000)
                    refuseText();
            }
        }
    }

    std::string_view bytes;
    std::uint64_t offsetSize = 0;
    std::uint64_t referenceSize = 0;
    std::uint64_t top = 0;
    std::uint64_t table = 0;
    std::vector<Measure> measures;
};

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

bool isReal(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double value = 0;
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, value);
    return parsed.ec != std::errc::invalid_argument && parsed.ptr == end;
}

/// Checks the integer that lies at `begin` to `end` of `xml` and moves its sign past leading zeros.
void checkInteger(std::string& xml, std::size_t begin, std::size_t end) {
    const std::string_view text = trimmed(std::string_view(xml).substr(begin, end - begin));
    if (text.empty())
        throw UnreadablePropertyList("an integer that is not one");
    auto at = static_cast<std::size_t>(text.data() - xml.data());
    const std::size_t stop = at + text.size();
    const char sign = text[0] == '-' || text[0] == '+' ? text[0] : ' ';
    std::string_view digits = text.substr(sign == ' ' ? 0 : 1);
    const bool hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    digits.remove_prefix(hexadecimal ? 2 : 0);
    std::uint64_t magnitude = 0;
    const char* last = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), last, magnitude, hexadecimal ? 16 : 10);
    constexpr std::uint64_t largestNegative = std::uint64_t{1} << 63;
    if (parsed.ec == std::errc::result_out_of_range || (sign == '-' && magnitude > largestNegative))
        throw UnreadablePropertyList("an integer over 64 bits");
    if (parsed.ec != std::errc() || parsed.ptr != last)
        throw UnreadablePropertyList("an integer that is not one");
    if (hexadecimal)
        return;
    if (sign != ' ')
        ++at;
    for (; at + 1 < stop && xml[at] == '0'; ++at) {
        if (sign != ' ')
            xml[at - 1] = ' ';
        xml[at] = sign;
    }
}

/// Checks the text of an element that holds a number or a date; `begin` is just after its tag.
void checkScalar(std::string& xml, std::string_view name, std::size_t begin) {
    const std::size_t end = xml.find('<', begin);
    if (end == std::string::npos || xml.compare(end, 2, "</") != 0)
        refuseXml();
    if (name == "integer")
        return checkInteger(xml, begin, end);
    const std::string_view text = trimmed(std::string_view(xml).substr(begin, end - begin));
    if (name == "real" && !isReal(text))
        throw UnreadablePropertyList("a real that is not one");
    if (name == "date" && !secondsOfDateText(text))
        throw UnreadablePropertyList("a date that is not one");
}

/// Whether every parser sees the same end of a tag: no other markup and no open quotation in it.
bool isPlainMarkup(std::string_view text) {
    const auto doubles = std::ranges::count(text, '"');
    const auto singles = std::ranges::count(text, '\'');
    return text.find_first_of("<[") == std::string_view::npos && doubles % 2 == 0 &&
           singles % 2 == 0 && (doubles == 0 || singles == 0);
}

/// Just after the first `closing` at or after `from`.
std::size_t endOf(std::string_view text, std::string_view closing, std::size_t from) {
    const std::size_t found = text.find(closing, from);
    if (found == std::string_view::npos)
        throw UnreadablePropertyList("ends too early");
    return found + closing.size();
}

/// What is open while the tags go by.
class XmlNesting {
public:
    /// True when `tag`, what is between the angle brackets, closes the list.
    bool passes(std::string_view tag) {
        const bool empty = tag.ends_with('/');
        const bool closing = tag.starts_with('/');
        const std::string_view name = nameOf(tag);
        if (empty && closing)
            refuseXml();
        if (name == "plist") {
            if (levels != 0 || empty || closing != inList || (!closing && values != 0))
                refuseXml();
            inList = true;
            return closing;
        }
        if (!closing && levels == 0 && ++values > 1)
            throw UnreadablePropertyList("more than one value");
        if (name == "array" || name == "dict") {
            if (closing && levels-- == 0)
                refuseXml();
            if (!closing && !empty && ++levels > maximumPropertyListLevels)
                refuseNesting();
        }
        return false;
    }

    bool isComplete() const { return levels == 0 && !inList; }

    static std::string_view nameOf(std::string_view tag) {
        if (tag.starts_with('/'))
            tag.remove_prefix(1);
        return tag.substr(0, tag.find_first_of(" \t\r\n/"));
    }

private:
    std::size_t levels = 0;
    std::size_t values = 0; ///< At the top.
    bool inList = false;
};

} // namespace

bool isBinaryPropertyList(std::string_view bytes) {
    return bytes.starts_with(binaryMagic);
}

void checkBinaryPropertyList(std::string_view bytes) {
    BinaryCheck(bytes).run();
}

std::string checkedXmlPropertyList(std::string_view bytes) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(byteOrderMark))
        bytes.remove_prefix(byteOrderMark.size());
    std::string xml(bytes);
    const std::string_view view = xml;
    XmlNesting nesting;
    bool closed = false;
    std::size_t end = 0;
    for (std::size_t at = view.find('<'); at != view.npos && !closed; at = view.find('<', end)) {
        const std::string_view rest = view.substr(at);
        if (rest.starts_with("<!--")) {
            end = endOf(view, "-->", at + 4);
            continue;
        }
        if (rest.starts_with("<![CDATA[")) {
            end = endOf(view, "]]>", at + 9);
            continue;
        }
        const bool isInstruction = rest.starts_with("<?");
        end = endOf(view, isInstruction ? "?>" : ">", at + 1);
        const std::string_view tag = view.substr(at + 1, end - at - 2);
        if (!isPlainMarkup(tag) || (tag.starts_with('!') && !tag.starts_with("!DOCTYPE")))
            refuseXml();
        if (isInstruction || tag.starts_with('!'))
            continue;
        closed = nesting.passes(tag);
        const std::string_view name = nesting.nameOf(tag);
        if (!tag.starts_with('/') && (name == "integer" || name == "real" || name == "date")) {
            if (tag.ends_with('/'))
                refuseXml();
            checkScalar(xml, name, end);
        }
    }
    if (!closed && !nesting.isComplete())
        throw UnreadablePropertyList("ends too early");
    if (closed)
        xml.resize(end);
    if (xml.find('\0') != std::string::npos)
        refuseXml();
    return xml;
}

} // namespace noctara
