/// Follows the system's list of wake-ups through the calls that change it.
#pragma once

#include "phones/model/phone_observer.h"
#include "phones/model/scenario.h"

#include <vector>

namespace noctara {

class WakeUps {
public:
    /// Begins with the wake-ups of the scenario.
    explicit WakeUps(const Scenario& scenario) : listed(scenario.wakes) {}

    void called(const Call& call);

    /// Removes and returns the wake-ups that are due at `now`, on the wall clock.
    std::vector<Scenario::Wake> takeDue(Date now);

private:
    std::vector<Scenario::Wake> listed;
};

} // namespace noctara
