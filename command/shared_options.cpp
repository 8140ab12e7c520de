#include "command/shared_options.h"

#include "input/bad_input.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace noctara {

namespace {

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

/// Adds an option whose value is the symbol of a unit.
void addUnit(CLI::App& command, const std::string& name, const std::string& accepted,
             const std::string& description, const std::function<bool(std::string_view)>& choose) {
    command
        .add_option_function<std::string>(
            name,
            [=](const std::string& symbol) {
                if (!choose(symbol))
                    throw CLI::ValidationError(name, inQuotes(symbol) + " is none of: " + accepted);
            },
            description + ": " + accepted)
        ->type_name("UNIT");
}

} // namespace

void addRecordingOptions(CLI::App& command, RecordingOptions& options) {
    addUnit(command, "--unit", "g, mg, m/s² (or m/s2)",
            "unit of the recording, if the file does not give it",
            [&options](std::string_view symbol) {
                const auto unit = findUnitOfAcceleration(symbol);
                if (unit)
                    options.unit = unit->unit;
                return unit.has_value();
            });
    addUnit(command, "--time-unit", "s, ms, us, ns",
            "unit of its times, if the file does not give it", [&options](std::string_view symbol) {
                options.timeUnit = findUnitOfTime(symbol);
                return options.timeUnit.has_value();
            });
    addChoice<AxisConvention>(
        command, "--axes", options.axes,
        {{"android", AxisConvention::android}, {"ios", AxisConvention::ios}}, "AXES",
        "whose axes the recording uses: android (screen up reads z = +1 g) or ios (z = -1 g)");
    command
        .add_option("--rate", options.rate,
                    "samples per second, evenly spaced, for a recording without usable times")
        ->type_name("HZ")
        ->check([](const std::string& text) {
            return text.empty()
                       ? std::string("\"\" is not a number; give the number of readings per second")
                       : std::string();
        });
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

} // namespace noctara
