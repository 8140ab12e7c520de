/// `noctara why`: what the monitor of a night knew at one instant, and what was missing for a
/// change.
#pragma once

#include "command/night_input.h"

#include <ostream>
#include <string>

namespace noctara {

struct WhyOptions {
    /// `scenario` may be a trace. Its settings and readings are then those of the trace.
    NightInputOptions night;
    std::string at; ///< Local date and time, or a time.
};

/// Plays the night, or replays the trace, and prints the situation at the instant. Returns the exit
/// code of the command. Throws BadInput.
int explainInstant(const WhyOptions& options, std::ostream& out, std::ostream& complaints);

} // namespace noctara
