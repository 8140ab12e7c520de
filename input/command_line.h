/// Parses the command line of a Noctara program and turns errors into exit codes.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace noctara {

/// Exit codes other than 0, which means success.
inline constexpr int foundWrong = 1; ///< The run found something wrong.
inline constexpr int badInput = 2;   ///< An option or a file cannot be used.

/// Parses the arguments and runs `command`. Returns the exit code that `command` returned, or the
/// code of an error. An error is printed as one line on standard error that begins with the name of
/// the program. Flushes standard output; failing to write it is an error too.
int runCommandLine(CLI::App& app, int count, char** arguments, const std::function<int()>& command);

} // namespace noctara
