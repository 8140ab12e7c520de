/// The `noctara` command. Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.
#include "command/program.h"
#include "input/command_line.h"

#include <CLI/CLI.hpp>

int main(int count, char** arguments) {
    CLI::App app;
    noctara::Action action;
    noctara::describeProgram(app, action);
    return noctara::runCommandLine(app, count, arguments, [&] { return action(); });
}
