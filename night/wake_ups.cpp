#include "night/wake_ups.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace noctara {

void WakeUps::called(const Call& call) {
    const bool schedules = call.operation == Operation::CPScheduleWakeAtDateWithIdentifier;
    if (!schedules && call.operation != Operation::CPCancelWakeAtDateWithIdentifier)
        return;
    const double date = std::get<double>(call.arguments[0]);
    const auto identifier = std::get<std::string_view>(call.arguments[1]);
    if (schedules) {
        listed.push_back({std::string(identifier), {date}});
        return;
    }
    // The monitor cancels a wake-up by the date in the system's file, which may have whole seconds
    // only.
    std::erase_if(listed, [&](const auto& wake) {
        return wake.scheduledBy == identifier &&
               std::floor(wake.at.secondsSince1970) == std::floor(date);
    });
}

std::vector<Scenario::Wake> WakeUps::takeDue(Date now) {
    const auto firstDue = std::stable_partition(listed.begin(), listed.end(),
                                                [&](const auto& wake) { return wake.at > now; });
    std::vector<Scenario::Wake> due(firstDue, listed.end());
    listed.erase(firstDue, listed.end());
    return due;
}

} // namespace noctara
