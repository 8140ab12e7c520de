/// A second statement of the monitor's rules: what it has to do in each cycle.
///
/// It is written for checks and shares no code with the monitor. It does not ask the monitor
/// anything: it knows the content of the settings file when the monitor reads it, the samples of
/// the accelerometer, and the events.
#pragma once

#include "phones/model/local_time.h"
#include "platform/motion.h"
#include "platform/property_list.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

enum class Cue { warningSound, vibration, returnSound };

/// What has to follow a reading.
struct Outcome {
    std::vector<Cue> cues;            ///< In order.
    std::optional<bool> becomesQuiet; ///< The new state, if it changes.
};

class Onlooker {
public:
    /// The settings in force. A setting that no file has had yet has the value of a new monitor.
    struct Settings {
        bool Enabled = false;
        std::int32_t ScanInterval = 0; ///< In seconds, which is five times the value in the file.
        bool ScreenDown = false;
        bool ActiveOnSleep = false;
        bool DetectManual = false;
        bool TimeLimit = false;
        std::int32_t StartHour = 21;
        std::int32_t StopHour = 7;
        bool PlaySound = false;
        bool Vibrate = false;
        bool EnableOnAC = false;
        std::int32_t Sensitivity = 5;
        bool AirplaneSwitch = true;
        bool WifiSwitch = false;
        bool BTSwitch = false;
        bool PhoneSwitch = false;
        bool EdgeSwitch = false;
        bool _3GSwitch = false;
        bool LocationSwitch = false;
    } settings;

    std::vector<std::string> applications; ///< To be launched for the night.

    bool quiet = false;
    int inARow = 0; ///< Readings in a row that disagree with the state, 0 to 2.
    bool idleSleepIsRefused = false;

    /// The monitor reads the settings file. Null if the file is no dictionary.
    void loads(const Dictionary* file);

    /// The main loop begins, with the settings of the first load.
    void begins(bool inAirplaneMode);

    /// The charger's state is passed to the monitor; the first time, when the monitor is made.
    void charger(bool plugged);

    /// A cycle begins. `airplaneMode` is what the phone's telephony manager reports; false without
    /// one. Afterwards `isOn` tells whether the cycle may take a reading at all.
    void cycleBegins(bool airplaneMode);
    bool isOn() const { return settings.Enabled; }

    /// A cycle in which monitoring is off ends. It may be on again from the next one.
    void offCycleEnds(bool airplaneMode);

    bool windowIsOpen(Date now, const TimeZone& zone) const;
    bool chargerAllows() const { return !settings.EnableOnAC || charging || unpluggedWhileQuiet; }

    /// Whether the phone lies in the wanted posture. Absent sample: the sensor delivered none.
    bool lies(const std::optional<Acceleration>& sample) const;

    /// Counts a reading.
    Outcome reads(bool lies);

    /// The radios have been switched for a new state.
    void changed(bool nowQuiet);

private:
    bool manualChangeIsSeen(bool airplaneMode) const;

    bool startedInAirplaneMode = false;
    bool suspendedByHand = false;
    bool hasMonitor = false;
    bool charging = false;
    bool unpluggedWhileQuiet = false;
};

} // namespace noctara
