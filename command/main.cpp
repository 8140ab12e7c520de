/// The `noctara` command. Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.
#include "command/capabilities_command.h"
#include "command/detect_command.h"
#include "command/night_command.h"
#include "input/bad_input.h"
#include "night/chosen_scenario.h"
#include "recording/recording_file.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <iostream>
#include <map>
#include <optional>
#include <string>

namespace {

using namespace noctara;

constexpr int foundWrong = 1;
constexpr int badInput = 2;

/// An option whose value is one of a few words.
template <typename Choice>
void addChoice(CLI::App& command, const std::string& name, std::optional<Choice>& chosen,
               const std::map<std::string, Choice>& choices, const std::string& typeName,
               const std::string& description) {
    command
        .add_option_function<std::string>(
            name,
            [=, &chosen](const std::string& word) {
                const auto choice = choices.find(word);
                if (choice != choices.end()) {
                    chosen = choice->second;
                    return;
                }
                std::string accepted;
                for (const auto& [other, value] : choices)
                    accepted += (accepted.empty() ? "" : ", ") + other;
                throw CLI::ValidationError(name, inQuotes(word) + " is none of: " + accepted);
            },
            description)
        ->type_name(typeName);
}

void addRecordingOptions(CLI::App& command, RecordingOptions& options) {
    addChoice<AccelerationUnit>(command, "--unit", options.unit,
                                {{"g", AccelerationUnit::g},
                                 {"mg", AccelerationUnit::milliG},
                                 {"m/s2", AccelerationUnit::metresPerSecondSquared}},
                                "UNIT",
                                "unit of the recording, if the data does not tell it: g, mg, m/s2");
    addChoice<AxisConvention>(
        command, "--axes", options.axes,
        {{"android", AxisConvention::android}, {"ios", AxisConvention::ios}}, "AXES",
        "whose axes the recording uses: android (screen up reads z = +1 g) or ios (z = -1 g)");
    command
        .add_option("--rate", options.rate,
                    "samples per second, evenly spaced, for a recording without usable times")
        ->type_name("HZ");
}

} // namespace

int main(int count, char** arguments) {
    CLI::App app{"Noctara switches a phone's radios off while it lies still at night. This command "
                 "plays its nights on a simulated phone."};
    app.name("noctara");
    app.require_subcommand(1);
    app.footer("Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.");

    NightOptions night;
    auto& nightCommand =
        *app.add_subcommand("night", "Plays a night and tells what the phone did, and why");
    nightCommand
        .add_option("SCENARIO", night.scenario,
                    "scenario file (see docs/scenarios.md); without one, a typical night")
        ->type_name("");
    nightCommand.add_flag("--log", night.log, "tell the lines of the system log as well");
    nightCommand
        .add_option("--trace", night.trace,
                    "write every call that the monitor makes of the phone to this file, as "
                    "JSON Lines (see docs/trace.md)")
        ->type_name("FILE");
    nightCommand
        .add_option("--settings", night.settings,
                    "start from a copy of this settings file, an XML or binary property "
                    "list, instead of the scenario's settings")
        ->type_name("FILE");
    nightCommand
        .add_option("--root", night.root,
                    "keep the phone's files as real files below this folder, made if it is "
                    "missing, instead of in memory; a settings file that is there is kept, unless "
                    "--settings names another")
        ->type_name("FOLDER");
    auto* const motion =
        nightCommand
            .add_option("--motion", night.motion,
                        "feed the accelerometer from this recording, which repeats when it "
                        "ends, instead of the scenario's postures")
            ->type_name("RECORDING");
    nightCommand
        .add_option("--motion-at", night.motionAt,
                    "when the recording begins, as --start or as a time such as 23:30; "
                    "default: the start")
        ->type_name("TIME")
        ->needs(motion);
    addRecordingOptions(nightCommand, night.recording);
    nightCommand
        .add_option("--start", night.overrides.start,
                    "local date and time to start at, such as 2014-03-01T22:30")
        ->type_name("TIME");
    nightCommand
        .add_option("--end", night.overrides.end,
                    "local date and time to end at, or a time such as 07:30")
        ->type_name("TIME");
    nightCommand
        .add_option("--timezone", night.overrides.timezone,
                    "time zone of the phone, such as Europe/Paris")
        ->type_name("ZONE");

    std::filesystem::path recording;
    RecordingOptions recordingOptions;
    DetectOptions detection;
    auto& detectCommand = *app.add_subcommand(
        "detect", "Tells which Sensitivity suits a phone, from a recording of its accelerometer");
    detectCommand
        .add_option("RECORDING", recording,
                    "CSV file with time, x, y and z, as phone loggers write them")
        ->type_name("")
        ->required();
    detectCommand
        .add_option("--sensitivity", detection.sensitivity,
                    "the Sensitivity of the verdicts in the table by seconds")
        ->capture_default_str();
    addRecordingOptions(detectCommand, recordingOptions);

    std::optional<std::filesystem::path> capabilitiesScenario;
    auto& capabilitiesCommand = *app.add_subcommand(
        "capabilities", "Lists the capabilities that the scenario's phone reports");
    capabilitiesCommand
        .add_option("SCENARIO", capabilitiesScenario,
                    "scenario file; without one, the phone of the typical night")
        ->type_name("");

    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0)
            return app.exit(error);
        std::cerr << "noctara: " << error.what() << " (--help tells what there is)\n";
        return badInput;
    }

    try {
        int exitCode = 0;
        if (nightCommand.parsed())
            exitCode = playNight(night, std::cout, std::cerr);
        else if (detectCommand.parsed())
            detect(readRecording(recording, recordingOptions, std::cerr), detection, std::cout);
        else
            reportCapabilities(chosenScenario(capabilitiesScenario, {}));
        if (std::cout.flush() && std::fflush(stdout) == 0)
            return exitCode;
        std::cerr << "noctara: the output could not be written whole\n";
    } catch (const BadInput& error) {
        std::cerr << "noctara: " << error.what() << '\n';
        return badInput;
    } catch (const std::exception& error) {
        std::cerr << "noctara: " << error.what() << '\n';
    }
    return foundWrong;
}
