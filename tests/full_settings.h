/// A settings file with every key that the monitor reads.
#pragma once

#include "platform/property_list.h"

namespace noctara {

inline Dictionary fullSettings() {
    return {
        {"Enabled", true},         {"ScanInterval", 1},    {"ScreenDown", true},
        {"ActiveOnSleep", true},   {"DetectManual", true}, {"TimeLimit", false},
        {"StartHour", 21},         {"StopHour", 7},        {"PlaySound", true},
        {"Vibrate", true},         {"EnableOnAC", false},  {"Sensitivity", 5},
        {"AirplaneSwitch", true},  {"WifiSwitch", false},  {"BTSwitch", false},
        {"PhoneSwitch", false},    {"EdgeSwitch", false},  {"3GSwitch", false},
        {"LocationSwitch", false}, {"Debug", false},       {"Stop", false},
    };
}

/// The same with some values changed or added.
inline Dictionary fullSettings(const Dictionary& changes) {
    Dictionary settings = fullSettings();
    for (const auto& [key, value] : changes)
        settings.set(key, value);
    return settings;
}

} // namespace noctara
