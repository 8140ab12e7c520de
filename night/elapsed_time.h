/// Computes the monotonic clock of a phone from its wall clock and its clock changes.
#pragma once

#include "phones/model/phone_observer.h"

namespace noctara {

class ElapsedTime {
public:
    void happens(const Happening& happening) {
        if (const auto* change = std::get_if<ClockChange>(&happening.event))
            wallOffset += change->to.secondsSince1970 - happening.at.secondsSince1970;
    }

    /// Seconds on the monotonic clock when the wall clock, as it is set now, reads `wall`.
    double at(Date wall) const { return wall.secondsSince1970 - wallOffset; }

private:
    double wallOffset = 0; ///< Seconds by which the wall clock is ahead of the monotonic clock.
};

} // namespace noctara
