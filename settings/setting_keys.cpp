#include "settings/setting_keys.h"

#include "input/nearest.h"

#include <algorithm>
#include <array>
#include <vector>

namespace noctara {

namespace {

using enum SettingKey::Kind;

constexpr std::array keys{
    SettingKey{"Enabled", onOff, 1, 0, 0, 1, "Noctara watches the phone"},
    SettingKey{"TimeLimit", onOff, 0, 0, 0, 1,
               "the phone goes quiet only between StartHour and StopHour"},
    SettingKey{"StartHour", number, 21, 21, 0, 23, "the hour at which that time begins"},
    SettingKey{"StopHour", number, 7, 7, 0, 23, "the hour at which that time ends"},
    SettingKey{"EnableOnAC", onOff, 0, 0, 0, 1, "Noctara watches the phone only on the charger"},
    SettingKey{"DetectManual", onOff, 1, 0, 0, 1,
               "Noctara stops watching while airplane mode has been changed by hand"},
    SettingKey{"ActiveOnSleep", onOff, 1, 0, 0, 1,
               "a wake-up is kept scheduled, to watch a phone in idle sleep"},
    SettingKey{"ScreenDown", onOff, 1, 0, 0, 1,
               "on: the phone has to lie on its screen; off: on its back"},
    SettingKey{"Sensitivity", number, 5, 5, 0, 9,
               "how flat the phone has to lie: 0 allows a tilt of 12.6°, 5 of 2.1°, 9 of 1.3°"},
    // The monitor starts with 0, and reads every 5 seconds then.
    SettingKey{"ScanInterval", number, 1, 1, 1, 12,
               "the pause between two readings, in steps of 5 s"},
    SettingKey{"AirplaneSwitch", onOff, 1, 1, 0, 1,
               "airplane mode goes on; the six switches below then have no effect"},
    SettingKey{"PhoneSwitch", onOff, 0, 0, 0, 1, "the phone goes off, by means of airplane mode"},
    SettingKey{"WifiSwitch", onOff, 0, 0, 0, 1, "Wi-Fi goes off"},
    SettingKey{"BTSwitch", onOff, 0, 0, 0, 1,
               "Bluetooth goes off, except while a device is connected"},
    SettingKey{"EdgeSwitch", onOff, 0, 0, 0, 1, "cellular data goes off"},
    SettingKey{"3GSwitch", onOff, 0, 0, 0, 1, "the fast data rate goes off"},
    SettingKey{"LocationSwitch", onOff, 0, 0, 0, 1, "location services go off"},
    SettingKey{"PlaySound", onOff, 1, 0, 0, 1,
               "a warning sound before the phone goes quiet, a return sound when it is back"},
    SettingKey{"Vibrate", onOff, 1, 0, 0, 1,
               "the phone vibrates when it goes quiet and when it comes back"},
    SettingKey{"Debug", onOff, 0, 1, 0, 1, "Noctara writes what it does into the system log"},
    SettingKey{"Stop", onOff, 0, 0, 0, 1, "no effect"},
};

} // namespace

std::span<const SettingKey> settingKeys() {
    return keys;
}

Dictionary defaultSettings() {
    Dictionary settings;
    for (const auto& key : keys)
        settings.set(key.name, key.kind == onOff ? PropertyList(key.standard != 0)
                                                 : PropertyList(key.standard));
    return settings;
}

const SettingKey* findSettingKey(std::string_view name) {
    const auto* const found =
        std::find_if(keys.begin(), keys.end(), [&](const auto& key) { return key.name == name; });
    return found == keys.end() ? nullptr : found;
}

std::optional<std::string_view> identifierInKey(std::string_view key) {
    if (!key.starts_with(applicationKeyPrefix))
        return std::nullopt;
    return key.substr(applicationKeyPrefix.size());
}

std::vector<std::string> applicationsToLaunch(const Dictionary& settings) {
    std::vector<std::string> identifiers;
    for (const auto& [key, value] : settings)
        if (const auto identifier = identifierInKey(key); identifier && value.boolValue())
            identifiers.emplace_back(*identifier);
    return identifiers;
}

std::optional<std::string> nearestSettingKey(std::string_view misspelt) {
    std::vector<std::string_view> names;
    for (const auto& key : keys)
        names.push_back(key.name);
    if (const auto meant = nearest(misspelt, names))
        return std::string(*meant);

    // A beginning with two hyphens may be a misspelt "launch-app-".
    const std::size_t end = misspelt.find('-', misspelt.find('-') + 1);
    if (end == misspelt.npos || !nearest(misspelt.substr(0, end + 1), {&applicationKeyPrefix, 1}))
        return std::nullopt;
    return std::string(applicationKeyPrefix).append(misspelt.substr(end + 1));
}

} // namespace noctara
