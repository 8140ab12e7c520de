/// What a night is played with: the scenario, the settings and the readings that the user names.
#pragma once

#include "command/night_player.h"
#include "night/scenario_file.h"
#include "recording/recording_file.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace noctara {

struct NightInputOptions {
    std::optional<std::filesystem::path> scenario; ///< Absent: the built-in typical night.
    ScenarioOverrides overrides;
    std::optional<std::filesystem::path> settings; ///< Replaces the scenario's settings.
    std::vector<std::string> set;                  ///< Settings to change, as KEY=VALUE.
    std::optional<std::filesystem::path> root;     ///< The folder for the phone's files.
    std::optional<std::filesystem::path> motion;
    std::optional<std::string> motionAt; ///< Local date and time, or a time; absent: the start.
    RecordingOptions recording;
};

/// Reads the files. Lines of a recording that are skipped go to `complaints`. Throws BadInput.
NightInput readNightInput(const NightInputOptions& options, std::ostream& complaints);

/// The files that the night reads.
std::vector<std::filesystem::path> filesOf(const NightInputOptions& options);

/// "KEY=VALUE", split. Throws BadInput, which names `option`, for a text without an equals sign.
std::pair<std::string, std::string> keyAndValue(const std::string& option, const std::string& text);

} // namespace noctara
