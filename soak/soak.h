/// Plays random nights, several at a time, and holds them to the invariants.
#pragma once

#include "soak/soak_night.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace noctara {

struct SoakPlan {
    std::uint64_t nights;
    std::uint64_t seed; ///< Of the first night. The others have the next ones.
    unsigned jobs;      ///< Nights at a time, at least 1.
};

struct SoakResult {
    SoakCounts counts;
    /// The seed of the first night found that does not hold. Nights that were not yet begun are
    /// then not played.
    std::optional<std::uint64_t> failed;
};

/// `progress` is called about five times a second with the number of nights played so far. This
/// process must have one thread.
SoakResult soak(const SoakPlan& plan, const std::function<void(std::uint64_t)>& progress);

/// A night that fails, as a scenario file.
struct FailingNight {
    Breach breach;
    std::string scenario; ///< The text of the file, which has a comment on the breach.
};

/// The random night of a seed, as a scenario file.
std::string randomNightText(std::uint64_t seed);

/// Plays the scenario of this text. `name` is its name in messages. Absent if it does not fail.
/// Throws BadInput if the text is no scenario.
std::optional<FailingNight> failureOf(const std::string& scenario, const std::string& name);

/// The same, and if it fails shortens it as long as the same invariant fails.
std::optional<FailingNight> shortestFailure(const std::string& scenario, const std::string& name);

} // namespace noctara
