#include "phones/model/libplist_nodes.h"

#include "phones/model/property_list_date.h"
#include "phones/model/property_list_guard.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <variant>

namespace noctara {

namespace {

struct Freeing {
    void operator()(void* memory) const { std::free(memory); }
};

/// What a function of libplist writes for the node.
template <typename Write>
std::string written(plist_t node, Write write) {
    char* bytes = nullptr;
    std::uint32_t length = 0;
    write(node, &bytes, &length);
    const std::unique_ptr<char, Freeing> owned(bytes);
    return bytes ? std::string(bytes, length) : std::string();
}

/// libplist returns dates in 32 bits, from 1932 to 2069, and the fraction without its sign. Its XML
/// has the seconds of all dates, rounded towards 2001.
Date dateOf(plist_t node) {
    const std::string xml = xmlOfNode(node);
    constexpr std::string_view tag = "<date>";
    const std::size_t begin = xml.find(tag) + tag.size();
    const auto seconds =
        secondsOfDateText(std::string_view(xml).substr(begin, xml.find("</date>", begin) - begin));
    if (!seconds)
        throw UnreadablePropertyList("an invalid date");
    std::int32_t wholeSeconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &wholeSeconds, &microseconds);
    const double fraction = microseconds / 1e6;
    constexpr std::int64_t startOf2001 = 978307200;
    return {static_cast<double>(*seconds) + (*seconds < startOf2001 ? -fraction : fraction)};
}

Array arrayOf(plist_t node) {
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    const std::unique_ptr<void, Freeing> owned(iterator);
    Array array;
    plist_t item = nullptr;
    while (plist_array_next_item(node, iterator, &item), item)
        array.push_back(valueOfNode(item));
    return array;
}

Dictionary dictionaryOf(plist_t node) {
    requireKeys(plist_dict_get_size(node));
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    const std::unique_ptr<void, Freeing> owned(iterator);
    Dictionary dictionary;
    while (true) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator, &key, &item);
        const std::unique_ptr<char, Freeing> ownedKey(key);
        if (!item || !key)
            return dictionary;
        dictionary.set(checkedText(key), valueOfNode(item));
    }
}

Node nodeOf(bool truth) {
    return Node(plist_new_bool(truth ? 1 : 0));
}

Node nodeOf(std::int64_t integer) {
    return Node(plist_new_uint(static_cast<std::uint64_t>(integer)));
}

Node nodeOf(double real) {
    return Node(plist_new_real(real));
}

Node nodeOf(const std::string& text) {
    return Node(plist_new_string(text.c_str()));
}

/// Goes through XML, because libplist's function for new dates takes only 32 bits.
Node nodeOf(const Date& date) {
    // If one argument is NaN, fmax returns the other.
    const double seconds =
        std::fmin(std::fmax(date.secondsSince1970, double{earliestPropertyListDate}),
                  double{latestPropertyListDate});
    return nodeOfXml("<plist><date>" + dateText(static_cast<std::int64_t>(std::floor(seconds))) +
                     "</date></plist>");
}

Node nodeOf(const Data& data) {
    return Node(plist_new_data(reinterpret_cast<const char*>(data.data()), data.size()));
}

Node nodeOf(const Array& array) {
    Node node(plist_new_array());
    for (const PropertyList& item : array)
        plist_array_append_item(node.get(), nodeOfValue(item).release());
    return node;
}

Node nodeOf(const Dictionary& dictionary) {
    Node node(plist_new_dict());
    for (const auto& [key, value] : dictionary)
        plist_dict_set_item(node.get(), key.c_str(), nodeOfValue(value).release());
    return node;
}

} // namespace

Node nodeOfXml(const std::string& xml) {
    plist_t node = nullptr;
    plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &node);
    return Node(node);
}

Node nodeOfBinary(std::string_view bytes) {
    plist_t node = nullptr;
    plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &node);
    return Node(node);
}

std::string xmlOfNode(plist_t node) {
    return written(node, plist_to_xml);
}

std::string binaryOfNode(plist_t node) {
    return written(node, plist_to_bin);
}

PropertyList valueOfReal(double real) {
    if (real == 0 && std::signbit(real))
        return {real, std::make_shared<NodeOfNumber>(Node(plist_new_real(real)))};
    return real;
}

double realOfNode(plist_t node) {
    double real = 0;
    plist_get_real_val(node, &real);
    return real;
}

PropertyList valueOfNode(plist_t node) {
    std::uint64_t length = 0;
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t truth = 0;
        plist_get_bool_val(node, &truth);
        return truth != 0;
    }
    case PLIST_UINT: {
        std::uint64_t integer = 0;
        plist_get_uint_val(node, &integer);
        const auto value = static_cast<std::int64_t>(integer);
        if (value >= 0)
            return value;
        // Only libplist knows whether it is negative, or unsigned and beyond 63 bits.
        return {value, std::make_shared<NodeOfNumber>(Node(plist_copy(node)))};
    }
    case PLIST_REAL:
        return valueOfReal(realOfNode(node));
    case PLIST_STRING: {
        const char* text = plist_get_string_ptr(node, &length);
        return checkedText(std::string(text, static_cast<std::size_t>(length)));
    }
    case PLIST_DATA: {
        const char* data = plist_get_data_ptr(node, &length);
        return Data(data, data + length);
    }
    case PLIST_UID: {
        std::uint64_t uid = 0;
        plist_get_uid_val(node, &uid);
        return Dictionary{{"CF$UID", static_cast<std::int64_t>(uid)}};
    }
    case PLIST_DATE:
        return dateOf(node);
    case PLIST_ARRAY:
        return arrayOf(node);
    case PLIST_DICT:
        return dictionaryOf(node);
    default:
        throw UnreadablePropertyList("not a property list");
    }
}

Node nodeOfValue(const PropertyList& value) {
    if (const auto* number = value.madeOf<NodeOfNumber>())
        return Node(plist_copy(number->node.get()));
    return std::visit([](const auto& content) { return nodeOf(content); }, value.variant());
}

} // namespace noctara
