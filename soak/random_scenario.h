/// Random scenarios, for combinations that no other test has.
#pragma once

#include <cstdint>
#include <string>

namespace noctara {

enum class NightLength {
    anHour, ///< Most scenarios last about an hour. The slower phones play it in a second.
    whole,  ///< 6 to 11 hours.
};

/// The text of a valid scenario file. The same seed gives the same text on every machine. In most
/// scenarios the phone enters and leaves the sleep state several times. The monitor always waits
/// between its cycles.
std::string randomScenario(std::uint64_t seed, NightLength length = NightLength::anHour);

} // namespace noctara
