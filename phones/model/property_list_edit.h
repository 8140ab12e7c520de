/// Changes one value of a property list.
#pragma once

#include "platform/property_list.h"

#include <optional>
#include <string>
#include <string_view>

namespace noctara {

/// The bytes of a property list with one value of its top-level dictionary changed, added or, if
/// `value` is absent, removed. Keeps the form, XML or binary, and the value and type of everything
/// else; comments in XML are lost, and a binary real may get single precision if that has the same
/// value. Absent if the top level is not a dictionary, or if the result would not be read as the
/// changed dictionary.
std::optional<std::string> changedPropertyList(std::string_view bytes, const std::string& key,
                                               const std::optional<PropertyList>& value);

} // namespace noctara
