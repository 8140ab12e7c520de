/// `noctara night`: plays a scenario and prints its story.
#pragma once

#include "command/night_input.h"

#include <filesystem>
#include <optional>
#include <ostream>

namespace noctara {

struct NightOptions : NightInputOptions {
    bool log = false;
    bool quiet = false; ///< Without the story.
    bool json = false;  ///< Print only the summary, as JSON.
    std::optional<std::filesystem::path> trace;
    bool live = false;  ///< Show the night on the terminal while it is played.
    double speed = 600; ///< Of a live night, times real time.
    std::optional<std::filesystem::path> report; ///< An HTML page.
};

/// Plays the night. Returns the command's exit code: 0, or 1 if the run found something wrong. For
/// a live night that a signal ended, it is 128 more than the signal's number. The story goes to
/// `complaints` if the trace goes to standard output. Throws BadInput, before it has written
/// anything to `out`, if an input cannot be used.
int playNight(const NightOptions& options, std::ostream& out, std::ostream& complaints);

} // namespace noctara
