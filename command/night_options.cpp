#include "command/commands.h"
#include "command/night_command.h"
#include "command/setting_sweep.h"
#include "command/shared_options.h"
#include "input/bad_input.h"
#include "input/completion.h"
#include "live/controls.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>

namespace noctara {

void addNightCommand(CLI::App& app, Action& action) {
    const auto options = std::make_shared<NightOptions>();
    auto& command =
        *app.add_subcommand("night", "Plays a night and prints what the phone did and why");
    completedByFiles(
        command
            .add_option("SCENARIO", options->scenario,
                        "scenario file (see docs/scenarios.md); without one, a typical night")
            ->type_name(""),
        ".toml");
    command.add_flag("--log", options->log, "print the lines of the system log as well");
    auto* const live = command.add_flag(
        "--live", options->live,
        "show the night on the terminal while it is played, with keys to act on the phone");
    command
        .add_option("--speed", options->speed,
                    "how many times faster than real time a live night goes by: 0.1 to 86400; "
                    "default: 600, ten minutes a second")
        ->type_name("TIMES")
        ->check([](const std::string& text) {
            double speed = 0;
            const auto end = text.data() + text.size();
            const auto [rest, error] = std::from_chars(text.data(), end, speed);
            const bool isSpeed =
                error == std::errc() && rest == end && speed >= slowest && speed <= fastest;
            return isSpeed ? "" : inQuotes(text) + " is no number from 0.1 to 86400";
        })
        ->needs(live);
    command.add_flag("--quiet", options->quiet, "print only the summary, without the story")
        ->excludes(command.get_option("--log"));
    command
        .add_option("--trace", options->trace,
                    "write every call of the monitor and every event to this file, as "
                    "JSON Lines (see docs/trace.md); - is standard output, and the story then goes "
                    "to standard error")
        ->type_name("FILE");
    command
        .add_option("--report", options->report,
                    "write a page about the night to this file, for a browser: charts, every "
                    "change, and the reasons of the monitor at each reading")
        ->type_name("FILE");
    const auto sweep = std::make_shared<std::optional<std::string>>();
    command
        .add_option("--sweep", *sweep,
                    "play the night with each of these values of a setting and print one line for "
                    "each, such as Sensitivity=0..9 or ScreenDown=off..on")
        ->type_name("KEY=A..B");
    command.add_flag("--json", options->json, "print only the summary, as JSON");
    command
        .add_option("--root", options->root,
                    "store the phone's files as real files below this folder instead of in "
                    "memory; a missing folder is created, and an existing settings file is kept "
                    "unless --settings or --set is given")
        ->type_name("FOLDER");
    addNightInputOptions(command, *options);
    for (const char* whole : {"--log", "--trace", "--report", "--root"})
        command.get_option("--sweep")->excludes(command.get_option(whole));
    for (const char* withoutStory : {"--sweep", "--json"})
        live->excludes(command.get_option(withoutStory));
    command.callback([&action, options, sweep] {
        action = [options, sweep] {
            if (*sweep)
                return sweepSetting({*options, **sweep, options->json}, std::cout, std::cerr);
            return playNight(*options, std::cout, std::cerr);
        };
    });
}

} // namespace noctara
