#include "command/commands.h"
#include "command/shared_options.h"
#include "command/why_command.h"
#include "input/completion.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>

namespace noctara {

void addWhyCommand(CLI::App& app, Action& action) {
    const auto options = std::make_shared<WhyOptions>();
    auto& command = *app.add_subcommand(
        "why", "Tells what held at one instant of a night, and what was missing for a change");
    completedByFiles(
        command
            .add_option("SCENARIO|TRACE", options->night.scenario,
                        "scenario file, or a trace of a night (- is a trace on standard "
                        "input); without one, the typical night")
            ->type_name(""),
        ".toml");
    command
        .add_option("--at", options->at,
                    "the instant: local date and time, such as 2014-03-01T23:30:04, or a time, "
                    "such as 23:30")
        ->type_name("TIME")
        ->required();
    addNightInputOptions(command, options->night);
    command.callback([&action, options] {
        action = [options] { return explainInstant(*options, std::cout, std::cerr); };
    });
}

} // namespace noctara
