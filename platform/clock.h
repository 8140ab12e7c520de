/// The wall clock, and sleeping.
#pragma once

#include "platform/property_list.h"

#include <cstdint>

namespace noctara {

class Clock {
public:
    virtual ~Clock() = default;

    /// Whole seconds since 1970 on the wall clock (`time`). Jumps in either direction when the
    /// clock is set.
    virtual std::int64_t time() = 0;

    /// The time on the wall clock, with its fraction of a second.
    virtual Date now() = 0;

    /// Blocks the calling thread for whole seconds (`sleep`); 0 returns at once.
    virtual void sleep(unsigned seconds) = 0;
};

} // namespace noctara
