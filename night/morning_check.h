/// Checks that coming back restores exactly the radios that were on.
#pragma once

#include "monitor/decisions.h"
#include "phones/model/local_time.h"
#include "phones/model/phone_observer.h"
#include "phones/model/radio_switches.h"
#include "phones/model/scenario.h"

#include <optional>
#include <string>
#include <vector>

namespace noctara {

class MorningCheck {
public:
    /// Begins with the radios of the scenario. Calls and events then update them.
    explicit MorningCheck(const Scenario& scenario) :
        zone(scenario.timezone), radios(scenario.radios) {}

    void called(const Call& call);
    void happens(const Happening& happening);
    void decided(Date at, const Decision& decision);

    /// The radios as the user sees them now.
    RadioStates states() const { return radios.states(); }

    /// One clause for each radio whose state after coming back differs from the expected state.
    /// That is the state before the quiet state, or the state that it was set to by hand during it.
    const std::vector<std::string>& complaints() const { return found; }

private:
    struct ByHand;

    void compare(Date at);

    const TimeZone zone;
    RadioSwitches radios;
    bool airplaneFlag = false;           ///< The value for the next `updateAirplaneMode`.
    std::optional<RadioStates> expected; ///< Absent while the phone is not quiet.
    std::vector<std::string> found;
};

} // namespace noctara
