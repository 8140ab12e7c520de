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

/// Totals of several nights. The size is fixed, because several processes share the object.
struct SoakCounts {
    static constexpr std::size_t most = 32; ///< More than there are invariants or excuses.

    std::array<std::uint64_t, most> checks{};  ///< In the order of `invariantSentences`.
    std::array<std::uint64_t, most> excuses{}; ///< In the order of `excuseSentences`.
    std::uint64_t nights = 0;
    std::uint64_t seconds = 0; ///< Of the phone's time.
    std::uint64_t timesQuiet = 0;
};

std::vector<std::string_view> invariantSentences();

/// The named reasons for which a radio may differ after coming back.
std::vector<std::string_view> excuseSentences();

/// Plays the night in this process and adds to the counts. A night that cannot be played to its end
/// is a breach too.
std::optional<Breach> playWatched(const Scenario& scenario, SoakCounts& counts);

/// The same in a process of its own, so that a crash or an endless loop is a breach too.
std::optional<Breach> playApart(const Scenario& scenario);

/// Ends this process with SIGALRM after that time, unless it is called again before. A night takes
/// milliseconds.
void limitTime(unsigned seconds = 60);

} // namespace noctara
