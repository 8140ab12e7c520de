/// The `noctara` command. Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.
#include "command/commands.h"
#include "input/command_line.h"

#include <CLI/CLI.hpp>

int main(int count, char** arguments) {
    CLI::App app{"Noctara switches a phone's radios off while it lies still at night. This command "
                 "runs it on a simulated phone."};
    app.name("noctara");
    app.require_subcommand(1);
    app.footer("Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.");
    noctara::Action action;
    noctara::addNightCommand(app, action);
    noctara::addReplayCommand(app, action);
    noctara::addDetectCommand(app, action);
    noctara::addCapabilitiesCommand(app, action);
    return noctara::runCommandLine(app, count, arguments, [&] { return action(); });
}
