/// Random scenarios, for the nights that nobody thought of.
#pragma once

#include <cstdint>
#include <string>

namespace noctara {

/// The text of a scenario file, which is never refused. The same for the same seed, everywhere.
/// For the most part an hour or so in which the phone goes into the sleep state and comes back
/// several times; no monitor goes round in it without waiting.
std::string randomScenario(std::uint64_t seed);

} // namespace noctara
