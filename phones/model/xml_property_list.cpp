#include "phones/model/xml_property_list.h"

#include "phones/model/libplist_nodes.h"
#include "phones/model/property_list_date.h"
#include "phones/model/property_list_guard.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include <absl/strings/escaping.h>
#include <fast_float/fast_float.h>
#include <pugixml.hpp>

namespace noctara {

namespace {

[[noreturn]] void refuse(const char* reason = "not a property list") {
    throw UnreadablePropertyList(reason);
}

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// Returns the character that a reference stands for. The name of the reference "&lt;" is "lt".
std::string characterOf(std::string_view name) {
    constexpr std::array<std::array<std::string_view, 2>, 5> named{
        {{"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}}};
    for (const auto& [known, character] : named)
        if (name == known)
            return std::string(character);
    const bool isHexadecimal = name.starts_with("#x");
    if (!name.starts_with('#'))
        refuse();
    name.remove_prefix(isHexadecimal ? 2 : 1);
    std::uint32_t number = 0;
    const char* end = name.data() + name.size();
    const auto parsed = std::from_chars(name.data(), end, number, isHexadecimal ? 16 : 10);
    if (parsed.ec != std::errc() || parsed.ptr != end || number == 0 || number > 0x10FFFF)
        refuse();
    return pugi::as_utf8(std::wstring(1, static_cast<wchar_t>(number)));
}

/// Replaces the references in a text. pugixml could replace them, but it keeps unknown ones as
/// text.
std::string withoutReferences(std::string_view text) {
    std::string plain;
    for (auto at = text.find('&'); at != text.npos; at = text.find('&')) {
        const std::size_t end = text.find(';', at);
        if (end == text.npos)
            refuse();
        plain += text.substr(0, at);
        plain += characterOf(text.substr(at + 1, end - at - 1));
        text.remove_prefix(end + 1);
    }
    return plain += text;
}

std::string textIn(pugi::xml_node element) {
    std::string text;
    for (const pugi::xml_node part : element.children())
        if (part.type() == pugi::node_pcdata)
            text += withoutReferences(part.value());
        else if (part.type() == pugi::node_cdata)
            text += part.value();
        else
            refuse();
    return text;
}

/// The first element from `node` on; null after the last one. Only blanks may be between elements.
pugi::xml_node elementFrom(pugi::xml_node node) {
    while (node && node.type() != pugi::node_element) {
        if (node.type() != pugi::node_pcdata || !withoutBlanks(node.value()).empty())
            refuse();
        node = node.next_sibling();
    }
    return node;
}

/// Decimal or hexadecimal. Leading zeros do not make it octal.
PropertyList integerOf(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative || text.starts_with('+') ? 1 : 0);
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(isHexadecimal ? 2 : 0);
    std::uint64_t magnitude = 0;
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, magnitude, isHexadecimal ? 16 : 10);
    if (parsed.ec == std::errc::invalid_argument || parsed.ptr != end)
        refuse("an invalid integer");
    if (parsed.ec != std::errc() || (isNegative && magnitude > std::uint64_t{1} << 63))
        refuse("an integer over 64 bits");
    const auto value = static_cast<std::int64_t>(isNegative ? 0 - magnitude : magnitude);
    if (isNegative || value >= 0)
        return value;
    // plist_new_uint would make a negative number. libplist makes an unsigned one only from XML.
    const std::string unsignedText = std::to_string(magnitude);
    return {value, std::make_shared<NodeOfNumber>(
                       nodeOfXml("<plist><integer>" + unsignedText + "</integer></plist>"))};
}

PropertyList realOf(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double value = 0;
    const char* end = text.data() + text.size();
    const auto parsed = fast_float::from_chars(text.data(), end, value);
    if (parsed.ec == std::errc::invalid_argument || parsed.ptr != end)
        refuse("an invalid real number");
    return valueOfReal(value);
}

PropertyList dateOf(std::string_view text) {
    const auto seconds = secondsOfDateText(text);
    if (!seconds)
        refuse("an invalid date");
    return Date{static_cast<double>(*seconds)};
}

PropertyList dataOf(const std::string& text) {
    std::string bytes;
    // Abseil accepts dots as padding.
    if (text.find('.') != text.npos || !absl::Base64Unescape(text, &bytes))
        refuse("invalid data");
    return Data(bytes.begin(), bytes.end());
}

PropertyList valueOf(pugi::xml_node element, std::size_t level);

Array arrayOf(pugi::xml_node element, std::size_t level) {
    Array array;
    for (auto item = elementFrom(element.first_child()); item;
         item = elementFrom(item.next_sibling()))
        array.push_back(valueOf(item, level));
    return array;
}

Dictionary dictionaryOf(pugi::xml_node element, std::size_t level) {
    Dictionary dictionary;
    pugi::xml_node key = elementFrom(element.first_child());
    while (key) {
        const pugi::xml_node value = elementFrom(key.next_sibling());
        if (std::string_view(key.name()) != "key" || !value)
            refuse();
        dictionary.set(checkedText(textIn(key)), valueOf(value, level));
        requireKeys(dictionary.size());
        key = elementFrom(value.next_sibling());
    }
    return dictionary;
}

PropertyList valueOf(pugi::xml_node element, std::size_t level) {
    const std::string_view name = element.name();
    if (name == "dict" || name == "array") {
        requireLevel(level);
        return name == "dict" ? PropertyList(dictionaryOf(element, level + 1))
                              : PropertyList(arrayOf(element, level + 1));
    }
    std::string text = textIn(element);
    if (name == "string")
        return checkedText(std::move(text));
    const std::string_view content = withoutBlanks(text);
    if (name == "integer")
        return integerOf(content);
    if (name == "real")
        return realOf(content);
    if (name == "date")
        return dateOf(content);
    if (name == "data")
        return dataOf(text);
    if ((name != "true" && name != "false") || !content.empty())
        refuse();
    return name == "true";
}

} // namespace

PropertyList readXmlPropertyList(std::string_view bytes) {
    pugi::xml_document document;
    const auto load = [&document](std::string_view xml) {
        // In a fragment, pugixml does not skip text before the list.
        constexpr unsigned options =
            pugi::parse_cdata | pugi::parse_ws_pcdata | pugi::parse_fragment;
        return document.load_buffer(xml.data(), xml.size(), options, pugi::encoding_utf8);
    };
    if (!load(bytes)) {
        constexpr std::string_view end = "</plist>";
        const std::size_t found = bytes.find(end);
        if (found == bytes.npos || !load(bytes.substr(0, found + end.size())))
            refuse("damaged or incomplete XML");
    }
    const pugi::xml_node root = elementFrom(document.first_child());
    const bool isWrapped = std::string_view(root.name()) == "plist";
    const pugi::xml_node value = isWrapped ? elementFrom(root.first_child()) : root;
    if (!value || elementFrom(value.next_sibling()))
        refuse();
    return valueOf(value, 1);
}

} // namespace noctara
