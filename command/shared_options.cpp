#include "command/shared_options.h"

#include "input/bad_input.h"
#include "input/completion.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

namespace {

/// Adds an option whose value is one of a few words.
template <typename Choice>
CLI::Option* addChoice(CLI::App& command, const std::string& name, std::optional<Choice>& chosen,
                       const std::map<std::string, Choice>& choices, const std::string& typeName,
                       const std::string& description) {
    std::vector<std::string> words;
    for (const auto& [word, value] : choices)
        words.push_back(word);
    return completedByWords(command
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
                                        throw CLI::ValidationError(
                                            name, inQuotes(word) + " is none of: " + accepted);
                                    },
                                    description)
                                ->type_name(typeName),
                            words);
}

/// Adds an option whose value is the symbol of a unit.
CLI::Option* addUnit(CLI::App& command, const std::string& name,
                     const std::vector<std::string>& symbols, const std::string& description,
                     const std::function<bool(std::string_view)>& choose) {
    std::string accepted;
    for (const std::string& symbol : symbols)
        accepted += (accepted.empty() ? "" : ", ") + symbol;
    return completedByWords(command
                                .add_option_function<std::string>(
                                    name,
                                    [=](const std::string& symbol) {
                                        if (!choose(symbol))
                                            throw CLI::ValidationError(
                                                name,
                                                inQuotes(symbol) + " is none of: " + accepted);
                                    },
                                    description + ": " + accepted)
                                ->type_name("UNIT"),
                            symbols);
}

} // namespace

std::vector<CLI::Option*> addRecordingOptions(CLI::App& command, RecordingOptions& options) {
    auto* const unit = addUnit(command, "--unit", {"g", "mg", "m/s²"},
                               "unit of the recording, if the file does not give it",
                               [&options](std::string_view symbol) {
                                   const auto found = findUnitOfAcceleration(symbol);
                                   if (found)
                                       options.unit = found->unit;
                                   return found.has_value();
                               });
    auto* const timeUnit = addUnit(command, "--time-unit", {"s", "ms", "us", "ns"},
                                   "unit of its times, if the file does not give it",
                                   [&options](std::string_view symbol) {
                                       options.timeUnit = findUnitOfTime(symbol);
                                       return options.timeUnit.has_value();
                                   });
    auto* const axes = addChoice<AxisConvention>(
        command, "--axes", options.axes,
        {{"android", AxisConvention::android}, {"ios", AxisConvention::ios}}, "AXES",
        "whose axes the recording uses: android (screen up reads z = +1 g) or ios (z = -1 g)");
    auto* const rate =
        command
            .add_option("--rate", options.rate,
                        "samples per second, evenly spaced, for a recording without usable times")
            ->type_name("HZ")
            ->check([](const std::string& text) {
                return text.empty() ? std::string("\"\" is not a number; give the number of "
                                                  "readings per second")
                                    : std::string();
            });
    return {unit, timeUnit, axes, rate};
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
    completedByTimeZones(command
                             .add_option("--timezone", overrides.timezone,
                                         "time zone of the phone, such as Europe/Paris")
                             ->type_name("ZONE"));
}

void addNightInputOptions(CLI::App& command, NightInputOptions& options) {
    completedByFiles(
        command
            .add_option("--settings", options.settings,
                        "start from a copy of this settings file, an XML or binary property "
                        "list, instead of the scenario's settings; - is standard input")
            ->type_name("FILE"),
        ".plist");
    command
        .add_option("--set", options.set,
                    "change a setting, such as Sensitivity=3 or ScreenDown=off; may be repeated")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false);
    auto* const motion =
        command
            .add_option("--motion", options.motion,
                        "feed the accelerometer from this recording, which repeats when it "
                        "ends, instead of the scenario's postures; - is standard input")
            ->type_name("RECORDING");
    completedByFiles(motion, ".csv");
    command
        .add_option("--motion-at", options.motionAt,
                    "when the recording begins, in the form of --start or as a time such as 23:30; "
                    "default: the start")
        ->type_name("TIME")
        ->needs(motion);
    for (auto* const option : addRecordingOptions(command, options.recording))
        option->needs(motion);
    addTimeOptions(command, options.overrides);
}

} // namespace noctara
