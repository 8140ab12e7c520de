/// Reads property lists in XML, with pugixml. libplist also reads XML, but it aborts at some
/// damaged files and accepts others.
#pragma once

#include "platform/property_list.h"

#include <string_view>

namespace noctara {

/// Returns the value in the XML. There must be exactly one value. It may have a <plist> around it.
/// Elements after the <plist> are ignored. If the bytes are not XML, only those up to the first
/// </plist> are read. Throws UnreadablePropertyList for damaged XML, for elements that no property
/// list has, and beyond the limits of property_list_guard.h.
PropertyList readXmlPropertyList(std::string_view bytes);

} // namespace noctara
