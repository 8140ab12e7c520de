/// Random scenarios, for combinations that no other test has.
#pragma once

#include <cstdint>
#include <string>

namespace noctara {

/// The text of a valid scenario file. The same seed gives the same text on every machine. Most
/// scenarios last about an hour, in which the phone enters and leaves the sleep state several
/// times. The monitor always waits between its cycles.
std::string randomScenario(std::uint64_t seed);

} // namespace noctara
