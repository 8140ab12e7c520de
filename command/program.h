/// The program `noctara` with all its subcommands.
#pragma once

#include "command/commands.h"

namespace noctara {

/// Adds the description, the subcommands and their options to an application without a name. Once
/// the command line is parsed, `action` is what the user asked for.
void describeProgram(CLI::App& app, Action& action);

} // namespace noctara
