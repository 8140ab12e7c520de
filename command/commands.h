/// The subcommands of `noctara`: each function adds one with its options to the command line.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace noctara {

/// What the user asked for. Returns the exit code of the command.
using Action = std::function<int()>;

// Once the command line is parsed, the action of the subcommand that the user chose is in `action`,
// which must outlive `app`.
void addNightCommand(CLI::App& app, Action& action);
void addReplayCommand(CLI::App& app, Action& action);
void addDetectCommand(CLI::App& app, Action& action);
void addCapabilitiesCommand(CLI::App& app, Action& action);

} // namespace noctara
