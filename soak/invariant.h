/// An invariant: what holds in every night, whatever happens in it.
#pragma once

#include "phones/model/phone_observer.h"
#include "phones/simulated/simulated_phone.h"
#include "soak/onlooker.h"

#include <fmt/format.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

/// An invariant that did not hold.
struct Breach {
    std::string invariant; ///< Its sentence.
    Date at;               ///< On the phone's wall clock.
    std::string what;      ///< A clause: what happened instead.
};

/// What all invariants of a night share.
struct WatchedNight {
    SimulatedPhone& phone;
    const Scenario& scenario;
    Onlooker onlooker;
    std::int64_t secondsWaited = 0; ///< Since the last cycle ended.
    std::optional<Breach> breach;   ///< The first one.
};

/// An invariant is told of the calls and the events, and of the steps of the night. A step comes
/// after the call that it begins with. In SpringBoard the calls that come most often are left out:
/// log lines, what the accelerometer is asked, and the waits between two cycles but their first
/// second.
class Invariant {
public:
    Invariant(WatchedNight& watched, std::string_view text) : sentence(text), night(watched) {}
    virtual ~Invariant() = default;
    Invariant(const Invariant&) = delete;
    Invariant& operator=(const Invariant&) = delete;

    virtual void called(const Call&) {}
    virtual void happens(const Event&) {}

    /// The main loop has stored the radios of the start.
    virtual void loopBegins() {}

    /// A cycle that takes a reading begins with it. One that takes none is told of when the monitor
    /// reports that it skips the reading.
    virtual void cycleBegins([[maybe_unused]] bool takesReading) {}
    virtual void readingEnds(const Outcome&) {}

    /// The monitor begins to change its state, and has switched the radios. `night.onlooker` has
    /// the state before the change, and after it.
    virtual void changeBegins() {}
    virtual void changeEnds() {}

    /// The monitor has done its work and begins to wait.
    virtual void cycleEnds() {}

    virtual void nightEnds() {}

    struct Excuse {
        std::string_view sentence;
        std::uint64_t times = 0;
    };

    const std::string_view sentence;
    std::uint64_t checks = 0;
    std::vector<Excuse> excuses; ///< The named exceptions.

protected:
    /// Counts a check. The text of the first check that fails becomes the breach of the night.
    template <typename... Values>
    void check(bool holds, fmt::format_string<Values...> what, Values&&... values) {
        ++checks;
        if (!holds && !night.breach)
            night.breach = {std::string(sentence), night.phone.clock.wall(),
                            fmt::format(what, std::forward<Values>(values)...)};
    }

    WatchedNight& night;
};

} // namespace noctara
