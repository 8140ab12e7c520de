#include "command/commands.h"
#include "command/night_command.h"
#include "command/shared_options.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>

namespace noctara {

void addNightCommand(CLI::App& app, Action& action) {
    const auto options = std::make_shared<NightOptions>();
    auto& command =
        *app.add_subcommand("night", "Plays a night and prints what the phone did and why");
    command
        .add_option("SCENARIO", options->scenario,
                    "scenario file (see docs/scenarios.md); without one, a typical night")
        ->type_name("");
    command.add_flag("--log", options->log, "print the lines of the system log as well");
    command
        .add_option("--trace", options->trace,
                    "write every call of the monitor and every event to this file, as "
                    "JSON Lines (see docs/trace.md)")
        ->type_name("FILE");
    command
        .add_option("--settings", options->settings,
                    "start from a copy of this settings file, an XML or binary property "
                    "list, instead of the scenario's settings; - is standard input")
        ->type_name("FILE");
    command
        .add_option("--root", options->root,
                    "store the phone's files as real files below this folder instead of in "
                    "memory; a missing folder is created, and an existing settings file is kept "
                    "unless --settings is given")
        ->type_name("FOLDER");
    auto* const motion =
        command
            .add_option("--motion", options->motion,
                        "feed the accelerometer from this recording, which repeats when it "
                        "ends, instead of the scenario's postures; - is standard input")
            ->type_name("RECORDING");
    command
        .add_option("--motion-at", options->motionAt,
                    "when the recording begins, in the form of --start or as a time such as 23:30; "
                    "default: the start")
        ->type_name("TIME")
        ->needs(motion);
    addRecordingOptions(command, options->recording);
    addTimeOptions(command, options->overrides);
    command.callback([&action, options] {
        action = [options] { return playNight(*options, std::cout, std::cerr); };
    });
}

} // namespace noctara
