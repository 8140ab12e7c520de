/// The rules of the monitor's main loop as tables. They were written without looking at the code of
/// the loop. soak/onlooker.cpp states the same rules in another form, and shares no code with these
/// tables. A mistake in one of the three shows as a difference.
#pragma once

#include "monitor/decisions.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace noctara::exhaustive {

/// What a cycle does to the phone.
enum class Act : std::uint8_t {
    asksForAirplaneMode,
    asksForTheTimeOfDay,
    reads,
    playsWarning,
    playsReturn,
    vibrates,
    becomesQuiet,
    comesBack,
    schedulesWakeUp,
};

/// The settings that steer the loop, and the phone around it.
struct Situation {
    bool enabled = true;
    std::int32_t interval = 5; ///< Seconds between two cycles: a multiple of 5.
    bool timeLimit = false;
    bool onChargerOnly = false;
    bool detectManual = false;
    bool playSound = true;
    bool vibrate = true;
    bool activeOnSleep = true;
    bool airplaneSwitch = true;
    bool screenDown = true;

    bool insideWindow = true;
    bool charger = false;
    bool airplaneMode = false;
};

/// A change from outside. Each of them turns something into its opposite, except the last three.
enum class Change : std::uint8_t {
    charger,
    airplaneMode, ///< By hand.
    window,       ///< The hour enters or leaves the window.
    // The settings screen writes one setting and announces the change.
    enabled,
    detectManual,
    timeLimit,
    onChargerOnly,
    playSound,
    vibrate,
    activeOnSleep,
    airplaneSwitch,
    screenDown,
    intervalOf0,
    intervalOf10,
    stop, ///< The monitor is told to end.
};
inline constexpr int changes = 15;

/// What the monitor knows.
struct Knowledge {
    bool quiet = false;
    int inARow = 0; ///< Readings in a row that disagree with the state, 0 to 2.
    bool suspendedByHand = false;
    bool refusesIdleSleep = false;
    bool goesOnWithoutCharger = false; ///< Because the charger was unplugged in the quiet state.
    bool startedInAirplaneMode = false;
    bool stopped = false;
};

/// What a cycle reports about its reading.
struct Report {
    std::optional<NoReading::Reason> noReading;
    int inARow = 0;        ///< With this reading: 0 to 3.
    bool wasQuiet = false; ///< Before this reading.

    friend bool operator==(const Report&, const Report&) = default;
};

/// The monitor as the tables describe it. A cycle is `beginCycle`, `takeReading` if that returned
/// true, and `endCycle`. Changes may happen between any two of them.
class Rules {
public:
    /// The monitor starts with the settings of the file.
    void start(const Situation& situation);

    /// Up to the reading. True if the cycle takes one.
    bool beginCycle();
    void takeReading(bool lies);
    /// From the reading to the wait.
    void endCycle();

    void happens(Change change);

    /// The seconds that the monitor waits after the cycle. A change of the settings during the
    /// first wait decides whether there is a second one.
    std::int64_t wait() const { return firstWait + (now.enabled ? 0 : now.interval); }

    /// Whether airplane mode is on, as far as the monitor can tell.
    bool airplaneModeSeen() const {
        return self.startedInAirplaneMode ? now.airplaneMode : self.quiet;
    }

    Situation file; ///< The settings that the file holds.
    Situation now;  ///< The settings that the monitor holds, and the phone.
    Knowledge self;

    // Of the present cycle.
    std::vector<Act> acts;
    Report report;

private:
    void askForAirplaneMode();

    bool oneSecondIfCounting = false;
    std::int64_t firstWait = 0;
};

std::string inWords(const Situation& situation);
std::string inWords(const Knowledge& knowledge);
std::string inWords(Act act);
std::string inWords(Change change);

} // namespace noctara::exhaustive
