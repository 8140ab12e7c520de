/// The subcommands of `noctara`: each function adds one with its options to the command line.
///
/// The help, the man page and the completions of the shells are made from these declarations. What
/// a shell offers for the value of an option is declared there too: see input/completion.h. A
/// description is a clause that begins with a small letter; shells show it up to its first
/// semicolon.
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
void addWhyCommand(CLI::App& app, Action& action);
void addSettingsCommand(CLI::App& app, Action& action);
void addSoakCommand(CLI::App& app, Action& action);
void addCapabilitiesCommand(CLI::App& app, Action& action);

/// `noctara help`. Add it after the other subcommands.
void addHelpCommand(CLI::App& app, Action& action);

} // namespace noctara
