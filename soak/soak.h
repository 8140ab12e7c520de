/// Plays random nights, several at a time, and holds them to the invariants.
#pragma once

#include "soak/soak_night.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace noctara {

struct SoakPlan {
    static constexpr unsigned mostJobs = 1024;

    std::uint64_t nights;
    std::uint64_t seed; ///< Of the first night. The others have the next ones.
    unsigned jobs;      ///< Nights at a time, 1 to `mostJobs`.
};

struct SoakResult {
    SoakCounts counts;
    /// The seed of the first night found that fails. Nights that were not yet begun are then not
    /// played.
    std::optional<std::uint64_t> failed;
};

/// The random night of a seed.
Scenario randomNight(std::uint64_t seed);

/// Plays the night of a seed in this process and adds to the counts.
using NightPlayer = std::function<std::optional<Breach>(std::uint64_t seed, SoakCounts& counts)>;

/// `progress` is called about five times a second with the number of nights played so far. This
/// process must have one thread.
SoakResult soak(const SoakPlan& plan, const NightPlayer& play,
                const std::function<void(std::uint64_t)>& progress);

/// Shortens the scenario as long as the same invariant fails as in `breach`. Returns the text of a
/// scenario file, with a comment on how it fails. `name` is the name of the scenario in messages
/// and in the comment.
std::string shortestFailure(const Scenario& scenario, const Breach& breach,
                            const std::string& name);

} // namespace noctara
