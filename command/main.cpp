/// The `noctara` command. Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.
#include "command/capabilities_command.h"
#include "command/detect_command.h"
#include "command/night_command.h"
#include "command/replay_command.h"
#include "input/bad_input.h"
#include "input/command_line.h"
#include "night/chosen_scenario.h"
#include "recording/recording_file.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <map>
#include <optional>
#include <string>

namespace {

using namespace noctara;

/// Adds an option whose value is one of a few words.
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
                                "unit of the recording, if the file does not give it: g, mg, m/s2");
    addChoice<AxisConvention>(
        command, "--axes", options.axes,
        {{"android", AxisConvention::android}, {"ios", AxisConvention::ios}}, "AXES",
        "whose axes the recording uses: android (screen up reads z = +1 g) or ios (z = -1 g)");
    command
        .add_option("--rate", options.rate,
                    "samples per second, evenly spaced, for a recording without usable times")
        ->type_name("HZ");
}

void addTimeOptions(CLI::App& command, ScenarioOverrides& overrides) {
    command
        .add_option("--start", overrides.start,
                    "local date and time to start at, such as 2014-03-01T22:30")
        ->type_name("TIME");
    command
        .add_option("--end", overrides.end,
                    "local date and time to end at, or a time such as 07:30")
        ->type_name("TIME");
    command
        .add_option("--timezone", overrides.timezone,
                    "time zone of the phone, such as Europe/Paris")
        ->type_name("ZONE");
}

} // namespace

int main(int count, char** arguments) {
    CLI::App app{"Noctara switches a phone's radios off while it lies still at night. This command "
                 "runs it on a simulated phone."};
    app.name("noctara");
    app.require_subcommand(1);
    app.footer("Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.");

    NightOptions night;
    auto& nightCommand =
        *app.add_subcommand("night", "Plays a night and prints what the phone did and why");
    nightCommand
        .add_option("SCENARIO", night.scenario,
                    "scenario file (see docs/scenarios.md); without one, a typical night")
        ->type_name("");
    nightCommand.add_flag("--log", night.log, "print the lines of the system log as well");
    nightCommand
        .add_option("--trace", night.trace,
                    "write every call of the monitor and every event to this file, as "
                    "JSON Lines (see docs/trace.md)")
        ->type_name("FILE");
    nightCommand
        .add_option("--settings", night.settings,
                    "start from a copy of this settings file, an XML or binary property "
                    "list, instead of the scenario's settings")
        ->type_name("FILE");
    nightCommand
        .add_option("--root", night.root,
                    "store the phone's files as real files below this folder instead of in "
                    "memory; a missing folder is created, and an existing settings file is kept "
                    "unless --settings is given")
        ->type_name("FOLDER");
    auto* const motion =
        nightCommand
            .add_option("--motion", night.motion,
                        "feed the accelerometer from this recording, which repeats when it "
                        "ends, instead of the scenario's postures")
            ->type_name("RECORDING");
    nightCommand
        .add_option("--motion-at", night.motionAt,
                    "when the recording begins, in the form of --start or as a time such as 23:30; "
                    "default: the start")
        ->type_name("TIME")
        ->needs(motion);
    addRecordingOptions(nightCommand, night.recording);
    addTimeOptions(nightCommand, night.overrides);

    ReplayOptions replayed;
    auto& replayCommand = *app.add_subcommand(
        "replay", "Prints the story of a trace, and where the trace differs from the rules");
    replayCommand
        .add_option("TRACE", replayed.trace,
                    "trace of a night (see docs/trace.md); - is standard input")
        ->type_name("")
        ->required();
    replayCommand
        .add_option("--scenario", replayed.scenario,
                    "scenario file of that night, for what a trace does not have: the time zone, "
                    "the radios at the start, the names of applications")
        ->type_name("FILE");
    replayCommand.add_flag("--log", replayed.log, "print the lines of the system log as well");
    addTimeOptions(replayCommand, replayed.overrides);

    std::filesystem::path recording;
    RecordingOptions recordingOptions;
    DetectOptions detection;
    auto& detectCommand = *app.add_subcommand(
        "detect",
        "Finds the Sensitivity that suits a phone, from a recording of its accelerometer");
    detectCommand
        .add_option("RECORDING", recording,
                    "CSV file with time, x, y and z, as written by a logger on a phone")
        ->type_name("")
        ->required();
    detectCommand
        .add_option("--sensitivity", detection.sensitivity,
                    "Sensitivity for the verdicts in the table of seconds")
        ->capture_default_str();
    addRecordingOptions(detectCommand, recordingOptions);

    std::optional<std::filesystem::path> capabilitiesScenario;
    auto& capabilitiesCommand = *app.add_subcommand(
        "capabilities", "Lists the capabilities that the scenario's phone reports");
    capabilitiesCommand
        .add_option("SCENARIO", capabilitiesScenario,
                    "scenario file; without one, the phone of the typical night")
        ->type_name("");

    return runCommandLine(app, count, arguments, [&] {
        if (nightCommand.parsed())
            return playNight(night, std::cout, std::cerr);
        if (replayCommand.parsed())
            return replay(replayed, std::cout);
        if (detectCommand.parsed())
            detect(readRecording(recording, recordingOptions, std::cerr), detection, std::cout);
        else
            reportCapabilities(chosenScenario(capabilitiesScenario, {}));
        return 0;
    });
}
