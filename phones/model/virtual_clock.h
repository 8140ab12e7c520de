/// The clocks of the simulated phone. They move only when the simulation moves them.
#pragma once

#include "platform/property_list.h"

namespace noctara {

struct VirtualClock {
    double monotonic = 0;  ///< Seconds since 1970. No event changes this clock.
    double wallOffset = 0; ///< What setting the wall clock has added to that.

    Date wall() const { return {monotonic + wallOffset}; }

    /// When the wall clock, as it is set now, will read `date`, by the monotonic clock.
    double monotonicAt(Date date) const { return date.secondsSince1970 - wallOffset; }

    void setWall(Date date) { wallOffset = date.secondsSince1970 - monotonic; }
};

} // namespace noctara
