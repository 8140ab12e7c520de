#include "phones/model/property_list_edit.h"

#include "phones/model/libplist_nodes.h"
#include "phones/model/property_list_file.h"

namespace noctara {

namespace {

/// A binary list stays one of libplist's nodes, because a PropertyList does not hold all of it: the
/// fraction of a date, for example, is rounded.
std::string changedBinary(std::string_view bytes, const std::string& key,
                          const std::optional<PropertyList>& value) {
    const Node top = nodeOfBinary(bytes);
    // A UID is read as a dictionary, but libplist sets no item in it and would not free the item.
    if (plist_get_node_type(top.get()) != PLIST_DICT)
        return {};
    if (value)
        plist_dict_set_item(top.get(), key.c_str(), nodeOfValue(*value).release());
    else
        plist_dict_remove_item(top.get(), key.c_str());
    return binaryOfNode(top.get());
}

} // namespace

std::optional<std::string> changedPropertyList(std::string_view bytes, const std::string& key,
                                               const std::optional<PropertyList>& value) {
    auto parsed = parsePropertyList(bytes);
    auto* const dictionary = parsed.value ? parsed.value->as<Dictionary>() : nullptr;
    if (!dictionary)
        return std::nullopt;
    if (value)
        dictionary->set(key, *value);
    else
        dictionary->remove(key);
    std::string changed = bytes.starts_with("bplist00") ? changedBinary(bytes, key, value)
                                                        : propertyListXml(*dictionary);
    if (parsePropertyList(changed).value != *parsed.value)
        return std::nullopt;
    return changed;
}

} // namespace noctara
