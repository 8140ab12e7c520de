#include "command/commands.h"
#include "command/replay_command.h"
#include "command/shared_options.h"
#include "input/completion.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>

namespace noctara {

void addReplayCommand(CLI::App& app, Action& action) {
    const auto options = std::make_shared<ReplayOptions>();
    auto& command = *app.add_subcommand(
        "replay", "Prints the story of a trace, and where the trace differs from the rules");
    completedByFiles(command
                         .add_option("TRACE", options->trace,
                                     "trace of a night (see docs/trace.md); - is standard input")
                         ->type_name("")
                         ->required(),
                     ".jsonl");
    completedByFiles(
        command
            .add_option("--scenario", options->scenario,
                        "scenario file of that night, for what a trace does not have: the time "
                        "zone, the radios at the start, the names of applications")
            ->type_name("FILE"),
        ".toml");
    command.add_flag("--log", options->log, "print the lines of the system log as well");
    command.add_flag("--quiet", options->quiet, "print only the summary, without the story")
        ->excludes(command.get_option("--log"));
    command.add_flag("--json", options->json, "print only the summary, as JSON");
    command
        .add_option("--report", options->report,
                    "write a page about the night to this file, for a browser: charts, every "
                    "change, and the reasons of the monitor at each reading")
        ->type_name("FILE");
    addTimeOptions(command, options->overrides);
    command.callback(
        [&action, options] { action = [options] { return replay(*options, std::cout); }; });
}

} // namespace noctara
