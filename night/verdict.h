/// The answer to the owner's question about a night: was the phone quiet, did everything come back,
/// and if not, why, and which setting would have helped?
#pragma once

#include "night/advice.h"
#include "night/night_findings.h"

#include <optional>
#include <string>
#include <vector>

namespace noctara {

struct Verdict {
    enum class Kind {
        quiet, ///< Quiet, and everything came back or the night ended before.
        neverQuiet,
        backAndForth, ///< Back and quiet again without being picked up.
        notBack       ///< A radio did not come back, or nothing did.
    };
    Kind kind;

    /// Why the phone was never quiet, or why it is still quiet. Absent if there is nothing to say.
    std::optional<Obstacle> reason;

    struct Hindrance {
        Obstacle obstacle;
        double seconds; ///< Outside the quiet state.
    };
    /// All that kept the phone from the quiet state, the weightiest first.
    std::vector<Hindrance> hindrances;

    /// Empty if none was asked for or none is needed.
    AdviceSearch advice;

    /// One paragraph of a few sentences.
    std::string text;
};

/// The verdict on a night that has ended. `retry` may be empty; there is no advice then.
Verdict verdictOn(const Scenario& scenario, const NightFindings& night, const Retry& retry);

/// "neverQuiet": the name of a kind or of a reason in JSON.
std::string nameOf(Verdict::Kind kind);
std::string nameOf(Obstacle obstacle);

/// A few words for a table: "too tilted".
std::string shortText(Obstacle obstacle);

/// "7 h 20 min".
std::string durationText(double seconds);

} // namespace noctara
