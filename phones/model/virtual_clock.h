/// The simulated phone's time: it moves only when the simulation moves it.
#pragma once

#include "platform/property_list.h"

namespace noctara {

struct VirtualClock {
    double elapsedClock = 0; ///< Seconds since 1970 by a clock that is never set.
    double wallOffset = 0;   ///< What setting the wall clock has added to that.

    Date wall() const { return {elapsedClock + wallOffset}; }

    /// When the wall clock, as it is set now, will read `date`, by the clock that is never set.
    double whenWallReads(Date date) const { return date.secondsSince1970 - wallOffset; }

    void setWall(Date date) { wallOffset = date.secondsSince1970 - elapsedClock; }
};

} // namespace noctara
