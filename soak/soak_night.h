/// Plays one night and holds it to the invariants.
#pragma once

#include "phones/model/scenario.h"
#include "soak/invariant.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace noctara {

/// Counts by invariant, and by excuse, in the order of the invariants. All together they have these
/// sentences.
struct SoakCounts {
    static constexpr std::size_t most = 32; ///< More than there are invariants or excuses.

    std::array<std::uint64_t, most> checks{};
    std::array<std::uint64_t, most> excuses{};
    std::uint64_t nights = 0;
    std::uint64_t seconds = 0; ///< Of the phone's time.
    std::uint64_t timesQuiet = 0;
};

/// The sentences of the invariants or of their excuses, in the order of the counts.
std::vector<std::string_view> invariantSentences();
std::vector<std::string_view> excuseSentences();

/// Plays the night in this process and adds to the counts. A night that cannot be played to its end
/// is a breach too.
std::optional<Breach> playWatched(const Scenario& scenario, SoakCounts& counts);

/// The same in a process of its own, so that a crash or an endless loop is a breach too.
std::optional<Breach> playApart(const Scenario& scenario);

/// Ends this process with SIGALRM if that is not called again within a minute. A night takes
/// milliseconds.
void limitTime();

} // namespace noctara
