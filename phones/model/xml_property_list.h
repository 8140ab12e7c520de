/// Reads the XML form of property lists with pugixml. libplist is slower, aborts at some damage,
/// and reads other damaged XML as if it was whole.
#pragma once

#include "platform/property_list.h"

#include <string_view>

namespace noctara {

/// The value of the XML, which may be wrapped in a <plist>. Bytes after </plist> are ignored.
/// Throws UnreadablePropertyList.
PropertyList readXmlPropertyList(std::string_view bytes);

} // namespace noctara
