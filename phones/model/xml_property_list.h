/// Reads the XML form of property lists with pugixml. libplist is slower, aborts at some damage,
/// and reads other damaged XML as if it was whole.
#pragma once

#include "platform/property_list.h"

#include <string_view>

namespace noctara {

/// The one value of the XML, with or without a <plist> around it. What follows a <plist> is
/// ignored. If the bytes are not XML, those after the first </plist> are ignored. Throws
/// UnreadablePropertyList for damaged XML, for elements that no property list has, and beyond the
/// limits of property_list_guard.h.
PropertyList readXmlPropertyList(std::string_view bytes);

} // namespace noctara
