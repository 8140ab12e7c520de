#include "command/setting_sweep.h"

#include "input/bad_input.h"
#include "night/local_clock_text.h"
#include "night/night_summary.h"
#include "settings/setting_value.h"
#include "settings/setting_words.h"

#include <fmt/format.h>
#include <fmt/ostream.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace noctara {

namespace {

struct Sweep {
    std::string key;
    std::vector<PropertyList> values;
};

/// A night takes milliseconds. This is enough for every setting and still ends.
constexpr std::int64_t mostValues = 1000;

Sweep parseSweep(const std::string& text) {
    const auto [key, range] = keyAndValue("--sweep", text);
    const auto dots = range.find("..");
    if (dots == range.npos)
        throw BadInput(fmt::format("--sweep: {} has no \"..\"; give the first and the last value, "
                                   "such as Sensitivity=0..9 or ScreenDown=off..on",
                                   inQuotes(text)));
    const auto first = parseSettingValue("--sweep", key, range.substr(0, dots));
    const auto last = parseSettingValue("--sweep", key, range.substr(dots + 2));
    Sweep sweep{key, {first}};
    if (const auto* const begin = first.as<std::int64_t>()) {
        const std::int64_t end = *last.as<std::int64_t>();
        const std::int64_t step = *begin <= end ? 1 : -1;
        for (std::int64_t value = *begin; value != end;) {
            if (static_cast<std::int64_t>(sweep.values.size()) == mostValues)
                throw BadInput(fmt::format("--sweep: {} has more than {} values; give fewer",
                                           inQuotes(range), mostValues));
            sweep.values.emplace_back(value += step);
        }
    } else if (first != last) {
        sweep.values.push_back(last);
    }
    return sweep;
}

std::string resultText(const Verdict& verdict, const NightFindings& night) {
    switch (verdict.kind) {
    case Verdict::Kind::quiet:
        return night.figures.stillQuiet ? "still quiet at the end" : "everything came back";
    case Verdict::Kind::neverQuiet:
        return fmt::format("never quiet: {}", shortText(*verdict.reason));
    case Verdict::Kind::backAndForth:
        return fmt::format("back and forth: {}", night.obstacles.slips());
    case Verdict::Kind::notBack:
        break;
    }
    const auto& complaints = night.morning.complaints();
    return "not back: " +
           (complaints.empty() ? std::string("still quiet at the end") : complaints.front());
}

} // namespace

int sweepSetting(const SweepOptions& options, std::ostream& out, std::ostream& complaints) {
    const Sweep sweep = parseSweep(options.values);
    const NightInput input = readNightInput(options.night, complaints);
    const TimeZone zone(input.scenario.timezone);
    const auto timeOf = [&](const std::optional<Date>& date) {
        return date ? timeText(zone, *date) : std::string("-");
    };
    const std::size_t width = std::max<std::size_t>(sweep.key.size(), 5);
    if (!options.json)
        fmt::print(out, "{:<{}}  {:<12}  {:<8}  {:<8}  {:>5}  {:>8}  result\n", sweep.key, width,
                   "quiet", "from", "back", "times", "readings");
    auto all = nlohmann::ordered_json::array();
    for (const auto& value : sweep.values) {
        NightInput changed = input;
        changed.scenario = withSettings(input.scenario, {{sweep.key, value}});
        const auto night = findingsOf(changed);
        if (!night) {
            fmt::print(out, "{:<{}}  the night ended early\n", valueInWords(value), width);
            continue;
        }
        const Verdict verdict = verdictOn(changed.scenario, *night, {});
        const auto& figures = night->figures;
        if (options.json) {
            auto summary = toJson({verdict, figures, {}});
            summary["setting"] = sweep.key;
            summary["value"] = valueInWords(value);
            all.push_back(std::move(summary));
            continue;
        }
        fmt::print(out, "{:<{}}  {:<12}  {:<8}  {:<8}  {:>5}  {:>8}  {}\n", valueInWords(value),
                   width, figures.timesQuiet ? durationText(figures.quiet) : "never",
                   timeOf(figures.firstQuiet),
                   timeOf(figures.stillQuiet ? std::nullopt : figures.lastBack), figures.timesQuiet,
                   figures.readings, resultText(verdict, *night));
    }
    if (options.json)
        out << all.dump(2) << '\n';
    return 0;
}

} // namespace noctara
