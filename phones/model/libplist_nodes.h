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

/// A number for libplist. A PropertyList does not hold the sign of -0.0, and not that an integer of
/// 64 bits is unsigned. The node does.
struct NodeOfNumber final : PhoneObject {
    explicit NodeOfNumber(Node number) : node(std::move(number)) {}

    Node node;
};

/// Null if libplist cannot read the XML. The XML must not come from a file, because libplist aborts
/// at some damage.
Node nodeOfXml(const std::string& xml);

/// Null if libplist cannot read the bytes. checkBinaryPropertyList must have accepted the bytes.
Node nodeOfBinary(std::string_view bytes);

/// Empty if libplist cannot write it.
std::string xmlOfNode(plist_t node);
std::string binaryOfNode(plist_t node);

/// The value of a node of a binary list. Throws UnreadablePropertyList.
PropertyList valueOfNode(plist_t node);

/// The real number. The sign of -0.0 is kept for nodeOfValue.
PropertyList valueOfReal(double real);

double realOfNode(plist_t node);

Node nodeOfValue(const PropertyList& value);

} // namespace noctara
