/// The functions of script_functions.h that change scenarios.
#include "command/night_player.h"
#include "input/bad_input.h"
#include "input/printable.h"
#include "night/event_words.h"
#include "night/scenario_file.h"
#include "night/scenario_text.h"
#include "night/scenario_times.h"
#include "night/typical_night.h"
#include "page/script_functions.h"
#include "page/settings_data.h"
#include "phones/model/local_time.h"
#include "report/local_times.h"
#include "settings/setting_keys.h"
#include "settings/setting_value.h"
#include "settings/settings_file.h"

#include <exception>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

namespace {

constexpr const char* nameForErrors = "the scenario";

std::optional<std::string> textIn(const Json& question, const char* key) {
    const auto found = question.find(key);
    return found == question.end() ? std::nullopt : std::optional(found->get<std::string>());
}

/// Throws BadInput for settings that no scenario file can have. `file` is the name of their file.
void requireWritable(const Scenario& scenario, const std::string& file) {
    try {
        parseScenario(scenarioText(scenario), nameForErrors);
    } catch (const std::exception&) {
        throw BadInput(printable(file) +
                       ": a night cannot be played with it here, because a scenario file cannot "
                       "have all of its values, such as data");
    }
}

/// Returns the instant of an event of the question.
Date dateOf(const Json& event, const Scenario& scenario) {
    if (!event.contains("local"))
        return {scenario.start.secondsSince1970 + event.at("at").get<double>()};
    const std::string text = event["local"];
    return instantOf(writtenTime("an event", text, TimeForm::WithDay), TimeZone(scenario.timezone));
}

Scenario changedScenario(const Json& question) {
    std::string text = textIn(question, "scenario").value_or(std::string(typicalNight));
    // The old events may be before a new start, so they are removed before it is set.
    if (question.contains("events"))
        text = scenarioText(parseScenario(text, nameForErrors), std::vector<WrittenEvent>());
    Scenario scenario = parseScenario(
        text, nameForErrors,
        {textIn(question, "start"), textIn(question, "end"), textIn(question, "timezone")});
    if (const auto file = textIn(question, "file")) {
        scenario.settings = readSettingsFile(*file);
        requireWritable(scenario, *file);
    }
    if (const auto key = textIn(question, "key")) {
        const PropertyList value =
            parseSettingValue("set", *key, question.at("value").get<std::string>());
        refuseOutOfRange("set", *key, value);
        scenario = withSettings(std::move(scenario), {{*key, value}});
    }
    if (!question.contains("events"))
        return scenario;
    std::vector<WrittenEvent> events;
    for (const auto& event : question["events"])
        events.push_back({dateOf(event, scenario), event.at("action"), event.at("value")});
    return parseScenario(scenarioText(scenario, events), nameForErrors);
}

Json eventsOf(const Scenario& scenario) {
    Json events = Json::array();
    const auto written = writtenEvents(scenario);
    for (std::size_t i = 0; i < written.size(); ++i) {
        const std::string words = eventInWords(scenario.events[i].event);
        events.push_back({{"at", written[i].at.secondsSince1970 - scenario.start.secondsSince1970},
                          {"action", written[i].action},
                          {"value", written[i].value},
                          {"words", words.empty() ? "A power message." : words}});
    }
    return events;
}

} // namespace

Json scenarioOf(const Json& question) {
    const Scenario scenario = changedScenario(question);
    const TimeZone zone(scenario.timezone);
    const double start = scenario.start.secondsSince1970;
    const double length = scenario.end.secondsSince1970 - start;
    return {{"scenario", scenarioText(scenario)},
            {"start", localText(zone.components(scenario.start))},
            {"end", localText(zone.components(scenario.end))},
            {"length", length},
            {"timezone", scenario.timezone},
            {"localTimes", localTimesForPage(zone, start, 0, length)},
            {"settings", settingsForPage(scenario.settings.value_or(defaultSettings()))},
            {"events", eventsOf(scenario)}};
}

} // namespace noctara
