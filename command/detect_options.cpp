#include "command/commands.h"
#include "command/detect_command.h"
#include "command/shared_options.h"
#include "input/completion.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>

namespace noctara {

void addDetectCommand(CLI::App& app, Action& action) {
    const auto options = std::make_shared<DetectOptions>();
    auto& command = *app.add_subcommand(
        "detect",
        "Finds the Sensitivity that suits a phone, from a recording of its accelerometer");
    completedByFiles(
        command
            .add_option("RECORDING", options->file,
                        "CSV file with time, x, y and z, as written by a logger on a phone, or "
                        "compressed with gzip; - is standard input")
            ->type_name("")
            ->required(),
        ".csv");
    completedByWords(
        command
            .add_option(
                "--sensitivity", options->sensitivity,
                "Sensitivity for the verdicts in the table of seconds; the settings page offers 0 "
                "to 9")
            ->type_name("NUMBER")
            ->capture_default_str(),
        {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"});
    command.add_flag("--table", options->wholeTable,
                     "print a line for each second, instead of one for seconds that are alike");
    command
        .add_option("--report", options->report,
                    "write a page with charts of the recording to this file, for a browser")
        ->type_name("FILE");
    addRecordingOptions(command, options->recording);
    command.callback([&action, options] {
        action = [options] { return detect(*options, std::cout, std::cerr); };
    });
}

} // namespace noctara
