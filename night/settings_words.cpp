#include "night/settings_words.h"

#include "input/printable.h"
#include "settings/setting_keys.h"
#include "settings/settings_check.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace noctara {

std::string settingsInWords(const Settings& settings, const std::optional<Dictionary>& file) {
    if (!settings.enabled)
        return "Settings: monitoring is off.";
    std::vector<std::string> parts{fmt::format("a reading every {} s", settings.sleepTime),
                                   fmt::format("lying screen {} (sensitivity {})",
                                               settings.screenDown ? "down" : "up",
                                               settings.sensitivity)};
    if (settings.timeLimit)
        parts.push_back(fmt::format("from {}:00 to {}:00", settings.startTime, settings.stopTime));
    if (settings.enabledOnChargeOnly)
        parts.push_back("on the charger only");

    std::vector<std::string> off;
    if (settings.airplaneSwitch) {
        off.push_back("airplane mode");
    } else {
        if (settings.phoneSwitch)
            off.push_back("phone off");
        if (settings.wifiSwitch)
            off.push_back("Wi-Fi off");
        if (settings.bluetoothSwitch)
            off.push_back("Bluetooth off");
        if (settings.edgeSwitch)
            off.push_back("cellular data off");
        if (settings._3GSwitch)
            off.push_back("3G off");
        if (settings.locationSwitch)
            off.push_back("location off");
        if (off.empty())
            off.push_back("no radio touched");
    }
    parts.push_back(fmt::format("when quiet: {}", fmt::join(off, ", ")));
    std::vector<std::string> launched;
    if (file)
        for (const auto& identifier : applicationsToLaunch(*file))
            launched.push_back(printable(identifier));
    if (!launched.empty())
        parts.push_back(fmt::format("applications to launch: {}", fmt::join(launched, ", ")));
    return fmt::format("Settings: {}.", fmt::join(parts, "; "));
}

std::vector<std::string> oddSettingsInWords(const Settings& settings,
                                            const std::optional<Dictionary>& file,
                                            const std::vector<std::string>& applications) {
    if (!file)
        return {};
    // The story says already which keys are missing. The monitor keeps what it has.
    Dictionary checked = *file;
    const auto keep = [&](std::string_view key, const PropertyList& value) {
        if (!checked.find(key))
            checked.set(key, value);
    };
    keep("TimeLimit", settings.timeLimit);
    keep("StartHour", settings.startTime);
    keep("StopHour", settings.stopTime);
    std::vector<std::string> odd;
    for (const auto& oddity :
         checkSettings(checked, applications.empty() ? nullptr : &applications))
        if (oddity.kind != Oddity::Kind::missingKey)
            odd.push_back("Odd: " + oddity.text);
    return odd;
}

} // namespace noctara
