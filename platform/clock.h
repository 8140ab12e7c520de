/// The wall clock, and waiting.
#pragma once

#include "platform/property_list.h"

#include <cstdint>

namespace noctara {

class Clock {
public:
    virtual ~Clock() = default;

    /// Whole seconds since 1970 (`time`). Can jump in either direction.
    virtual std::int64_t time() = 0;

    /// The present instant, with its fraction of a second.
    virtual Date now() = 0;

    /// Blocks the calling thread for whole seconds (`sleep`); 0 returns at once.
    virtual void sleep(unsigned seconds) = 0;
};

} // namespace noctara
