#include "night/night_summary.h"

#include "input/printable.h"
#include "night/local_clock_text.h"
#include "output/terminal_text.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace noctara {

namespace {

using Json = nlohmann::ordered_json;

Json instant(const std::optional<Date>& date) {
    return date ? Json(date->secondsSince1970) : Json();
}

Json settingsAsJson(const Dictionary& settings) {
    Json object = Json::object();
    for (const auto& [key, value] : settings) {
        if (const auto* on = value.as<bool>())
            object[key] = *on;
        else
            object[key] = *value.as<std::int64_t>();
    }
    return object;
}

Json reasonsAsJson(const Verdict& verdict) {
    Json reasons = Json::array();
    for (const auto& [obstacle, seconds] : verdict.hindrances)
        reasons.push_back({{"reason", nameOf(obstacle)}, {"seconds", seconds}});
    return reasons;
}

Json adviceAsJson(const AdviceSearch& search) {
    Json object{{"tried", search.tried}};
    if (!search.found)
        return object;
    object["settings"] = settingsAsJson(search.found->settings);
    object["quiet"] = search.found->figures.quiet;
    object["firstQuiet"] = instant(search.found->figures.firstQuiet);
    object["lastBack"] = instant(search.found->figures.lastBack);
    object["everythingBack"] = search.found->everythingBack;
    return object;
}

/// The monitor replaces its wake-up in every cycle, so that it is always 15 minutes ahead.
std::string wakeUpsInWords(int scheduled, int fired) {
    if (scheduled == 0)
        return "none scheduled";
    const std::string woke = fired == 0   ? "never woke the phone"
                             : fired == 1 ? "woke the phone once"
                                          : fmt::format("woke the phone {} times", fired);
    return fmt::format("one kept 15 minutes ahead (renewed {} times); it {}", scheduled, woke);
}

std::string quietInWords(const NightFigures& figures, const TimeZone& zone) {
    if (!figures.firstQuiet)
        return "never";
    std::string text = durationText(figures.quiet);
    if (figures.timesQuiet > 1)
        text += fmt::format(" in {} stretches", figures.timesQuiet);
    text += ", from " + timeText(zone, *figures.firstQuiet);
    return text + (figures.stillQuiet ? " to the end" : " to " + timeText(zone, *figures.lastBack));
}

} // namespace

std::vector<std::pair<std::string, std::string>> figuresInWords(const NightFigures& figures,
                                                                const TimeZone& zone) {
    return {
        {"quiet", quietInWords(figures, zone)},
        {"readings", fmt::format("{}, accelerometer on for {}", figures.readings,
                                 durationText(figures.accelerometerOn))},
        {"wake-ups", wakeUpsInWords(figures.wakesScheduled, figures.wakesFired)},
        {"idle sleeps", fmt::format("{} refused, {} allowed, {} in all", figures.idleSleepsRefused,
                                    figures.idleSleepsAllowed, durationText(figures.idleSleep))},
        {"applications", fmt::format("{} launched, {} quit", figures.applicationsLaunched,
                                     figures.applicationsQuit)},
    };
}

void printSummary(const NightSummary& summary, const std::string& timezone, std::ostream& out) {
    const NightFigures& figures = summary.figures;
    out << '\n'
        << heading << printable(summary.verdict.text) << plain << "\n\nFigures of "
        << durationText(figures.duration) << '\n';
    for (const auto& [name, value] : figuresInWords(figures, TimeZone(timezone)))
        out << fmt::format("  {:<22}{}\n", name, value);
    for (const auto& clause : summary.faults)
        out << '\n' << alarm << "Something is wrong: " << printable(clause) << '.' << plain << '\n';
}

Json toJson(const NightSummary& summary) {
    const auto& [verdict, figures, faults] = summary;
    Json object{{"verdict", nameOf(verdict.kind)},
                {"text", verdict.text},
                {"reason", verdict.reason ? Json(nameOf(*verdict.reason)) : Json()},
                {"reasons", reasonsAsJson(verdict)},
                {"advice", adviceAsJson(verdict.advice)},
                {"faults", faults}};
    object["duration"] = figures.duration;
    object["quiet"] = figures.quiet;
    object["stillQuiet"] = figures.stillQuiet;
    object["firstQuiet"] = instant(figures.firstQuiet);
    object["lastBack"] = instant(figures.lastBack);
    object["timesQuiet"] = figures.timesQuiet;
    object["timesBack"] = figures.timesBack;
    object["readings"] = figures.readings;
    object["accelerometerOn"] = figures.accelerometerOn;
    object["wakeUpsScheduled"] = figures.wakesScheduled;
    object["wakeUpsFired"] = figures.wakesFired;
    object["idleSleepsRefused"] = figures.idleSleepsRefused;
    object["idleSleepsAllowed"] = figures.idleSleepsAllowed;
    object["idleSleep"] = figures.idleSleep;
    object["applicationsLaunched"] = figures.applicationsLaunched;
    object["applicationsQuit"] = figures.applicationsQuit;
    return object;
}

} // namespace noctara
