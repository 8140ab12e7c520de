#include "night/advice.h"

#include "phones/model/local_time.h"

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <utility>

namespace noctara {

namespace {

/// Values of one setting, the one to prefer first.
struct Choices {
    std::string key;
    std::vector<PropertyList> values;
};

Choices numbers(std::string key, std::int32_t from, std::int32_t to) {
    Choices choices{std::move(key), {}};
    for (std::int32_t value = from; from <= to ? value <= to : value >= to;
         value += from <= to ? 1 : -1)
        choices.values.emplace_back(std::int64_t{value});
    return choices;
}

Choices onOff(std::string key, bool on) {
    return {std::move(key), {PropertyList(on)}};
}

/// The settings page offers 0 to 9. Lower ones allow more tilt.
std::vector<Choices> widerSensitivities(const Settings& settings) {
    if (settings.sensitivity == 0)
        return {};
    const bool isOffered = settings.sensitivity > 0 && settings.sensitivity <= 9;
    return {numbers("Sensitivity", isOffered ? settings.sensitivity - 1 : 9, 0)};
}

/// A minute. With a longer interval the phone comes back late.
constexpr std::int32_t longestInterval = 12;

class Search {
public:
    Search(Wish wished, const Scenario& played, const Retry& retryNight) :
        wish(wished), zone(played.timezone), scenario(played), retry(retryNight) {}

    AdviceSearch run(const NightFindings& night) {
        slips = night.obstacles.slips();
        Dictionary changed;
        std::unique_ptr<NightFindings> latest;
        const NightFindings* current = &night;
        // Of the settings that hinder together, each hides the next.
        constexpr int mostSettings = 3;
        for (int count = 0; count < mostSettings; ++count) {
            const auto groups = choicesFor(*current, changed);
            for (const auto& group : groups)
                if (auto advice = best(group, changed)) {
                    result.found = std::move(advice);
                    return std::move(result);
                }
            if (groups.empty() || wish != Wish::quiet)
                break;
            changed.set(groups.front().key, groups.front().values.front());
            latest = retry(changed);
            if (!latest)
                break;
            current = latest.get();
        }
        return std::move(result);
    }

private:
    std::vector<Choices> choicesFor(const NightFindings& night, const Dictionary& changed) {
        std::vector<Choices> groups;
        const auto& settings = night.obstacles.settings();
        if (!settings)
            return groups;
        const auto add = [&](std::vector<Choices> more) {
            for (auto& group : more)
                if (!changed.find(group.key) && !isSet(group) &&
                    std::none_of(groups.begin(), groups.end(),
                                 [&](const auto& known) { return known.key == group.key; }))
                    groups.push_back(std::move(group));
        };
        switch (wish) {
        case Wish::quiet:
            for (const Obstacle obstacle : obstaclesByWeight(night.obstacles))
                add(choicesAgainst(obstacle, *settings, changed));
            break;
        case Wish::held:
            add(widerSensitivities(*settings));
            if (const std::int32_t interval = settings->sleepTime / 5; interval < longestInterval)
                add({numbers("ScanInterval", std::max(0, interval) + 1, longestInterval)});
            break;
        case Wish::back:
            // A phone that is still read comes back whatever the Sensitivity is.
            if (night.figures.stillQuiet && night.obstacles.last() < Obstacle::noSample)
                add(choicesAgainst(night.obstacles.last(), *settings, changed));
            add(otherRadios(*settings));
            break;
        }
        return groups;
    }

    /// Whether the setting has the only choice all night.
    bool isSet(const Choices& choices) const {
        const auto* value = scenario.settings ? scenario.settings->find(choices.key) : nullptr;
        return value && choices.values.size() == 1 && *value == choices.values.front() &&
               std::none_of(scenario.events.begin(), scenario.events.end(), [&](const auto& event) {
                   const auto* change = std::get_if<SettingsChange>(&event.event);
                   return change && change->changed.find(choices.key);
               });
    }

    std::vector<Choices> choicesAgainst(Obstacle obstacle, const Settings& settings,
                                        const Dictionary& changed) {
        switch (obstacle) {
        case Obstacle::switchedOff:
            return {onOff("Enabled", true)};
        case Obstacle::suspended:
            return {onOff("DetectManual", false)};
        case Obstacle::outsideWindow:
            return widerWindows(changed);
        case Obstacle::notOnCharger:
            return {onOff("EnableOnAC", false)};
        case Obstacle::idleSleep:
            return {onOff("ActiveOnSleep", true)};
        case Obstacle::wrongSide:
            return {onOff("ScreenDown", !settings.screenDown)};
        case Obstacle::tooTilted:
        case Obstacle::none:
            return widerSensitivities(settings);
        default:
            return {};
        }
    }

    /// One hour earlier or later is preferred to no window.
    std::vector<Choices> widerWindows(const Dictionary& changed) {
        std::vector<Choices> groups;
        Dictionary without = changed;
        without.set("TimeLimit", PropertyList(false));
        const auto night = retry(without);
        if (night && night->figures.firstQuiet) {
            const int hour = zone.components(*night->figures.firstQuiet).hour;
            groups.push_back(numbers("StartHour", hour, hour));
            groups.push_back(numbers("StopHour", (hour + 1) % 24, (hour + 1) % 24));
        }
        groups.push_back(onOff("TimeLimit", false));
        return groups;
    }

    static std::vector<Choices> otherRadios(const Settings& settings) {
        std::vector<Choices> groups;
        if (!settings.airplaneSwitch)
            groups.push_back(onOff("AirplaneSwitch", true));
        for (const auto& [key, isOn] : {std::pair("3GSwitch", settings._3GSwitch),
                                        std::pair("EdgeSwitch", settings.edgeSwitch),
                                        std::pair("BTSwitch", settings.bluetoothSwitch),
                                        std::pair("WifiSwitch", settings.wifiSwitch),
                                        std::pair("PhoneSwitch", settings.phoneSwitch),
                                        std::pair("LocationSwitch", settings.locationSwitch)})
            if (isOn && !settings.airplaneSwitch)
                groups.push_back(onOff(key, false));
        return groups;
    }

    /// The value that grants the wish best. Of equally good ones, the first.
    std::optional<Advice> best(const Choices& choices, const Dictionary& changed) {
        if (std::find(result.tried.begin(), result.tried.end(), choices.key) == result.tried.end())
            result.tried.push_back(choices.key);
        std::optional<Advice> chosen;
        std::tuple<bool, int, double> rank;
        for (const auto& value : choices.values) {
            Dictionary settings = changed;
            settings.set(choices.key, value);
            const auto night = retry(settings);
            if (!night || !isGranted(*night))
                continue;
            // A difference of less than five minutes of quiet time does not matter.
            constexpr double sameQuiet = 300.0;
            const bool everythingBack = isBack(*night);
            const std::tuple other(everythingBack, -night->obstacles.slips(),
                                   std::floor(night->figures.quiet / sameQuiet));
            if (!chosen || other > rank) {
                chosen = Advice{settings, night->figures, everythingBack};
                rank = other;
            }
        }
        return chosen;
    }

    bool isGranted(const NightFindings& night) const {
        switch (wish) {
        case Wish::quiet:
            return night.figures.timesQuiet > 0;
        case Wish::held:
            return night.figures.timesQuiet > 0 && night.obstacles.slips() < slips;
        case Wish::back:
            break;
        }
        return night.figures.timesQuiet > 0 && isBack(night);
    }

    static bool isBack(const NightFindings& night) {
        return night.morning.complaints().empty() &&
               !(night.figures.stillQuiet && night.obstacles.pickedUp());
    }

    const Wish wish;
    const TimeZone zone;
    const Scenario& scenario;
    const Retry& retry;
    int slips = 0; ///< Of the night that was played first.
    AdviceSearch result;
};

} // namespace

AdviceSearch findAdvice(Wish wish, const Scenario& scenario, const NightFindings& night,
                        const Retry& retry) {
    return Search(wish, scenario, retry).run(night);
}

std::vector<Obstacle> obstaclesByWeight(const Obstacles& obstacles) {
    // A countdown lasts only a few seconds.
    constexpr double secondsOfCountdown = 60.0;
    // A phone that lay for a minute was meant to be quiet. Before that it may have been in the hand
    // for hours, which explains nothing.
    constexpr double shortestLying = 60.0;
    const double countdowns = obstacles.brokenCountdowns() * secondsOfCountdown;
    const double lying = obstacles.seconds(Obstacle::wrongSide) +
                         obstacles.seconds(Obstacle::tooTilted) + countdowns;
    const double shareOfHand = lying >= shortestLying ? 0.001 : 1.0;
    std::vector<std::pair<double, Obstacle>> weighed;
    for (std::size_t kind = 0; kind < obstacleKinds; ++kind) {
        const auto obstacle = static_cast<Obstacle>(kind);
        const bool inHand = obstacle == Obstacle::moving || obstacle == Obstacle::notLaidDown;
        const double weight = obstacle == Obstacle::none
                                  ? countdowns
                                  : obstacles.seconds(obstacle) * (inHand ? shareOfHand : 1.0);
        if (weight > 0)
            weighed.emplace_back(weight, obstacle);
    }
    std::stable_sort(weighed.begin(), weighed.end(),
                     [](const auto& one, const auto& other) { return one.first > other.first; });
    std::vector<Obstacle> kinds;
    for (const auto& [weight, obstacle] : weighed)
        kinds.push_back(obstacle);
    return kinds;
}

} // namespace noctara
