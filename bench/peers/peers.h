/// Libraries that ours is compared with.
#pragma once

#include <cstddef>
#include <cstdint>

namespace noctara {

// Event loops of general simulators, which sleep as often as a simulated night does and do nothing
// else.

/// Runs an event of ns-3 that schedules the next one a second later, `count` times.
void runEventsOfNs3(std::int64_t count);

/// Runs an actor of SimGrid that sleeps for a second, `count` times.
void runSleepsOfSimGrid(std::int64_t count);

/// Reads a property list with GNUstep's Foundation. Returns the number of its keys.
std::size_t readWithFoundation(const char* file);

} // namespace noctara
