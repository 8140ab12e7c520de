#include "command/commands.h"
#include "command/detect_command.h"
#include "command/shared_options.h"
#include "input/bad_input.h"
#include "input/completion.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>

namespace noctara {

namespace {

/// The settings file may hold any number of 32 bits.
std::int32_t sensitivityIn(const std::string& text) {
    std::int32_t sensitivity = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, sensitivity);
    if (error != std::errc{} || rest != end)
        throw CLI::ValidationError(
            "--sensitivity", inQuotes(text) + " is not a whole number of 32 bits; the settings "
                                              "page offers 0 to 9");
    return sensitivity;
}

} // namespace

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
            .add_option_function<std::string>(
                "--sensitivity",
                [options](const std::string& text) { options->sensitivity = sensitivityIn(text); },
                "Sensitivity for the verdicts in the table of seconds; the settings page offers 0 "
                "to 9")
            ->default_str(std::to_string(options->sensitivity))
            ->type_name("NUMBER"),
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
