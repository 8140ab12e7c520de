/// Options that several subcommands have.
#pragma once

#include "command/night_input.h"
#include "night/scenario_file.h"
#include "recording/recording_file.h"

#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace noctara {

/// How to read a recording. Returns the options.
std::vector<CLI::Option*> addRecordingOptions(CLI::App& command, RecordingOptions& options);

/// When and where the night is.
void addTimeOptions(CLI::App& command, ScenarioOverrides& overrides);

/// The settings, the recording and the time of a night.
void addNightInputOptions(CLI::App& command, NightInputOptions& options);

} // namespace noctara
