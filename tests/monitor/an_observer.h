/// An observer of the monitor that records decisions as sentences, and a phone with such an
/// observer.
#pragma once

#include "monitor/decisions.h"
#include "tests/a_night.h"

#include <cstdio>
#include <functional>
#include <stdexcept>

namespace noctara {

using Sentences = std::vector<std::string>;

inline std::string sentence(const SettingsFileMade& made) {
    return made.written ? "a settings file is made" : "no settings file can be made";
}

inline std::string sentence(const SettingsFileUnreadable&) {
    return "the settings file is unreadable";
}

inline std::string sentence(const SettingFilledIn& filledIn) {
    return filledIn.key + (filledIn.written ? " is filled in" : " cannot be filled in");
}

inline std::string sentence(const SettingsLoaded& loaded) {
    return std::string("settings are loaded: ") + (loaded.settings.enabled ? "on" : "off") +
           ", every " + std::to_string(loaded.settings.sleepTime) + " s";
}

inline std::string sentence(const MonitoringBegins& begins) {
    return begins.inSleepState ? "monitoring begins in the sleep state" : "monitoring begins awake";
}

inline std::string sentence(const AirplaneModeCompared& compared) {
    return compared.changedByHand ? "airplane mode was changed by hand"
                                  : "airplane mode is as it was left";
}

inline std::string sentence(const NoReading& none) {
    switch (none.reason) {
    case NoReading::Reason::monitoringIsOff:
        return "no reading: monitoring is off";
    case NoReading::Reason::outsideWindow:
        return "no reading: outside the window";
    case NoReading::Reason::notOnCharger:
        return "no reading: not on the charger";
    }
    return "no reading";
}

inline std::string sentence(const Reading& reading) {
    const char* source = "no sample";
    if (reading.source == Reading::Source::accelerometer)
        source = "accelerometer";
    else if (reading.source == Reading::Source::deviceMotion)
        source = "device motion";
    char text[200];
    std::snprintf(text, sizeof text, "%s: angle %.3f, length %.3f, tolerance %.3f, screen %s: %s",
                  source, reading.angle, reading.length, reading.tolerance,
                  reading.screenDown ? "down" : "up", reading.lies ? "lies" : "does not lie");
    return text;
}

inline std::string sentence(const ReadingCounted& counted) {
    return std::to_string(counted.inARow) +
           (counted.inSleepState ? " in the sleep state" : " awake");
}

inline std::string sentence(const StateChanged& changed) {
    return changed.inSleepState ? "falls asleep" : "wakes up";
}

class AnObserver final : public MonitorObserver {
public:
    void decided(const Decision& decision) override {
        decisions.push_back(decision);
        if (onDecision)
            onDecision(decision);
    }

    /// Returns the recorded decisions, of all kinds or of some, and clears the record.
    Sentences told() {
        Sentences found;
        for (const auto& decision : decisions)
            found.push_back(std::visit([](const auto& kind) { return sentence(kind); }, decision));
        decisions.clear();
        return found;
    }
    template <typename... Kinds>
    Sentences toldOf() {
        std::erase_if(decisions, [](const auto& decision) {
            return !(std::holds_alternative<Kinds>(decision) || ...);
        });
        return told();
    }

    std::vector<Decision> decisions;
    std::function<void(const Decision&)> onDecision;
};

class TheObserver : public ANight {
protected:
    void switchOnObserved() {
        switchOn();
        monitorObserver = &observer;
    }

    /// SpringBoard has launched, with the settings; the monitor thread has not run yet.
    void beginObserved() {
        scenario.settings = settings;
        switchOnObserved();
        launch();
    }

    /// The start and the first reading, in the hand, are over, and the record is cleared.
    void beginInHand() {
        beginObserved();
        playReadings(1);
        observer.told();
    }

    /// The settings of the last load.
    Settings loaded() {
        for (auto decision = observer.decisions.rbegin(); decision != observer.decisions.rend();
             ++decision)
            if (const auto* load = std::get_if<SettingsLoaded>(&*decision))
                return load->settings;
        throw std::logic_error("no settings were loaded");
    }

    AnObserver observer;
};

} // namespace noctara
