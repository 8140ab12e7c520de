/// Options that several subcommands have.
#pragma once

#include "night/scenario_file.h"
#include "recording/recording_file.h"

namespace CLI {
class App;
}

namespace noctara {

/// How to read a recording.
void addRecordingOptions(CLI::App& command, RecordingOptions& options);

/// When and where the night is.
void addTimeOptions(CLI::App& command, ScenarioOverrides& overrides);

} // namespace noctara
