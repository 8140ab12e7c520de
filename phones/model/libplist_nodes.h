/// Converts values to nodes of libplist and back.
#pragma once

#include "platform/property_list.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <plist/plist.h>

namespace noctara {

struct NodeFreeing {
    void operator()(void* node) const { plist_free(node); }
};

/// A node that no other node owns.
using Node = std::unique_ptr<void, NodeFreeing>;

/// A number of a property list. The node keeps what a PropertyList loses: that an integer of 64
/// bits is unsigned, and the sign of -0.0.
struct NodeOfNumber final : PhoneObject {
    explicit NodeOfNumber(Node number) : node(std::move(number)) {}

    Node node;
};

/// Null if libplist cannot read it. The XML must not come from a file, because libplist aborts at
/// some damage.
Node nodeOfXml(const std::string& xml);

/// Null if libplist cannot read it. checkBinaryPropertyList must have accepted the bytes.
Node nodeOfBinary(std::string_view bytes);

/// Empty if libplist cannot write it.
std::string xmlOfNode(plist_t node);
std::string binaryOfNode(plist_t node);

/// The value of a node of a binary list. Throws UnreadablePropertyList.
PropertyList valueOfNode(plist_t node);

double realOfNode(plist_t node);

Node nodeOfValue(const PropertyList& value);

} // namespace noctara
