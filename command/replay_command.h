/// `noctara replay`: plays a trace through the monitor and prints its story.
#pragma once

#include "night/scenario_file.h"

#include <filesystem>
#include <optional>
#include <ostream>

namespace noctara {

struct ReplayOptions {
    std::filesystem::path trace;                   ///< "-": standard input.
    std::optional<std::filesystem::path> scenario; ///< The scenario of the traced night.
    ScenarioOverrides overrides;
    bool log = false;
    bool quiet = false;                          ///< Without the story.
    bool json = false;                           ///< Print only the summary, as JSON.
    std::optional<std::filesystem::path> report; ///< An HTML page.
};

/// Replays the trace. Returns the command's exit code: 0, or 1 if something was found wrong, for
/// example a call of the trace that the monitor does not make. Throws BadInput for a file that is
/// not a trace.
int replay(const ReplayOptions& options, std::ostream& out);

} // namespace noctara
