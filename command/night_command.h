/// `noctara night`: plays a scenario and prints its story.
#pragma once

#include "night/scenario_file.h"
#include "recording/recording_file.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>

namespace noctara {

struct NightOptions {
    std::optional<std::filesystem::path> scenario; ///< Absent: the built-in typical night.
    ScenarioOverrides overrides;
    bool log = false;
    std::optional<std::filesystem::path> trace;
    std::optional<std::filesystem::path> settings;
    std::optional<std::filesystem::path> root;
    std::optional<std::filesystem::path> motion;
    std::optional<std::string> motionAt; ///< Local date and time, or a time; absent: the start.
    RecordingOptions recording;
};

/// Plays the night. Returns the command's exit code: 0, or 1 if the run found something wrong.
/// Throws BadInput, before it has written anything to `out`, if an input cannot be used.
int playNight(const NightOptions& options, std::ostream& out, std::ostream& complaints);

} // namespace noctara
