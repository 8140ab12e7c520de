#include "tests/exhaustive/rules.h"

#include <array>

namespace noctara::exhaustive {

namespace {

std::string list(std::initializer_list<std::pair<bool, const char*>> parts) {
    std::string text;
    for (const auto& [holds, words] : parts)
        if (holds)
            text += (text.empty() ? "" : ", ") + std::string(words);
    return text.empty() ? "-" : text;
}

} // namespace

std::string inWords(const Situation& s) {
    return "every " + std::to_string(s.interval) + " s, " +
           list({{s.enabled, "Enabled"},
                 {s.timeLimit, "TimeLimit"},
                 {s.onChargerOnly, "EnableOnAC"},
                 {s.detectManual, "DetectManual"},
                 {s.playSound, "PlaySound"},
                 {s.vibrate, "Vibrate"},
                 {s.activeOnSleep, "ActiveOnSleep"},
                 {s.airplaneSwitch, "AirplaneSwitch"},
                 {s.screenDown, "ScreenDown"},
                 {s.insideWindow, "inside the window"},
                 {s.charger, "on the charger"},
                 {s.airplaneMode, "in airplane mode"}});
}

std::string inWords(const Knowledge& k) {
    return std::to_string(k.inARow) + " in a row, " +
           list({{k.quiet, "quiet"},
                 {k.suspendedByHand, "suspended by hand"},
                 {k.refusesIdleSleep, "refuses idle sleep"},
                 {k.goesOnWithoutCharger, "goes on without a charger"},
                 {k.startedInAirplaneMode, "started in airplane mode"},
                 {k.stopped, "stopped"}});
}

std::string inWords(Act act) {
    constexpr std::array words{"asks for airplane mode",
                               "asks for the time of day",
                               "reads",
                               "plays the warning sound",
                               "plays the return sound",
                               "vibrates",
                               "becomes quiet",
                               "comes back",
                               "schedules a wake-up"};
    return words.at(static_cast<std::size_t>(act));
}

std::string inWords(Change change) {
    constexpr std::array words{"the charger",
                               "airplane mode by hand",
                               "the window",
                               "Enabled",
                               "DetectManual",
                               "TimeLimit",
                               "EnableOnAC",
                               "PlaySound",
                               "Vibrate",
                               "ActiveOnSleep",
                               "AirplaneSwitch",
                               "ScreenDown",
                               "ScanInterval to 0",
                               "ScanInterval to 2",
                               "stop"};
    static_assert(words.size() == changes);
    return words.at(static_cast<std::size_t>(change));
}

} // namespace noctara::exhaustive
