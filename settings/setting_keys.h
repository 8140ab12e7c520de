/// The keys of the settings file.
#pragma once

#include "platform/property_list.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

struct SettingKey {
    enum class Kind { onOff, number };

    std::string_view name;
    Kind kind;
    std::int32_t standard; ///< The default. 0 is off, 1 is on.

    /// What counts when the home screen starts and the file lacks the key. The default is written
    /// into the file then, and counts from the next load on. At a later load a missing key leaves
    /// the setting as it was.
    std::int32_t whenMissing;

    /// The smallest and the largest number that the settings page writes.
    std::int32_t least;
    std::int32_t most;

    std::string_view meaning; ///< One line for the user, without a full stop.
};

/// All keys except those of the applications, in the order of the settings page.
std::span<const SettingKey> settingKeys();

/// Each key with its default.
Dictionary defaultSettings();

/// Null if it is none of these keys.
const SettingKey* findSettingKey(std::string_view name);

/// A switch with this beginning and the identifier of an application: the application is launched
/// when the phone goes quiet. Off if it is missing.
inline constexpr std::string_view applicationKeyPrefix = "launch-app-";

/// The identifier in the key of an application, which may be empty. Absent for other keys.
std::optional<std::string_view> identifierInKey(std::string_view key);

/// The identifiers in the keys of applications that are on, in the order of the file.
std::vector<std::string> applicationsToLaunch(const Dictionary& settings);

/// The key that a misspelt one probably stands for, be it that of an application.
std::optional<std::string> nearestSettingKey(std::string_view misspelt);

} // namespace noctara
