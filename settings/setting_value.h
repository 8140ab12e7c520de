/// Values of settings that a user writes on the command line.
#pragma once

#include "platform/property_list.h"

#include <string>
#include <string_view>

namespace noctara {

/// Throws BadInput if `key` is neither one of settingKeys() nor the key of an application. `option`
/// is the part of the command line that has the key, for errors.
void checkSettingKey(const std::string& option, std::string_view key);

/// The value that `text` stands for: a boolean for a switch (on, off, true, false, yes, no, 1, 0),
/// an integer for a number. Throws BadInput as checkSettingKey, and for a text that is no such
/// value. A number out of range is accepted.
PropertyList parseSettingValue(const std::string& option, std::string_view key,
                               std::string_view text);

/// Throws BadInput for a number that the settings page could not write.
void refuseOutOfRange(const std::string& option, std::string_view key, const PropertyList& value);

} // namespace noctara
