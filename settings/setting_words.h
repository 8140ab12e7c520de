/// Words for the values of settings.
#pragma once

#include "platform/property_list.h"
#include "settings/setting_keys.h"

#include <string>
#include <string_view>

namespace noctara {

/// "on" or "off" for a switch, otherwise the digits. For the numbers of the table of keys.
std::string settingInWords(const SettingKey& key, std::int32_t value);

/// What it means that a file lacks the key: "it counts as 21, its default".
std::string missingInWords(const SettingKey& key);

/// A value from a file: "on", "5", "the text \"five\"", "a date". Without control characters.
std::string valueInWords(const PropertyList& value);

/// The value of a key. For a switch, 0 and 1 are "off" and "on", too.
std::string valueOfKeyInWords(std::string_view key, const PropertyList& value);

/// The value as an integer, if it is an integer or a whole real number. The trace of a night does
/// not distinguish the two.
std::optional<std::int64_t> wholeNumberIn(const PropertyList& value);

} // namespace noctara
