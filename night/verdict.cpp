#include "night/verdict.h"

#include "monitor/posture.h"
#include "night/local_clock_text.h"
#include "settings/setting_words.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace noctara {

namespace {

const char* side(bool screenDown) {
    return screenDown ? "down" : "up";
}

std::string count(int number, const char* one, const char* many) {
    return fmt::format("{} {}", number, number == 1 ? one : many);
}

std::string tiltsText(const Spread& tilt) {
    // Tilts are shown to a tenth of a degree. A smaller spread is one value.
    return tilt.highest - tilt.lowest < 0.1
               ? fmt::format("{:.1f}° off", tilt.median)
               : fmt::format("{:.1f}° to {:.1f}° off", tilt.lowest, tilt.highest);
}

std::string toleranceText(const Settings& settings) {
    const double degrees = postureTolerance(settings.sensitivity) * degreesPerRadian;
    if (degrees < 0)
        return fmt::format("Sensitivity {} allows no tilt", settings.sensitivity);
    return fmt::format("Sensitivity {} allows {:.1f}°", settings.sensitivity, degrees);
}

std::string windowText(const Settings& settings) {
    if (settings.startTime == settings.stopTime)
        return fmt::format("the window from {}:00 to {}:00 is empty", settings.startTime,
                           settings.stopTime);
    return fmt::format("it was not between {}:00 and {}:00", settings.startTime, settings.stopTime);
}

std::string settingsText(const Dictionary& settings) {
    std::vector<std::string> parts;
    for (const auto& [key, value] : settings)
        parts.push_back(fmt::format("{} {}", key, valueInWords(value)));
    return fmt::format("{}", fmt::join(parts, " with "));
}

class Judge {
public:
    Judge(const Scenario& played, const NightFindings& findings, const Retry& retryNight) :
        scenario(played),
        zone(played.timezone),
        night(findings),
        figures(findings.figures),
        obstacles(findings.obstacles),
        retry(retryNight) {}

    Verdict judge() const {
        if (auto notBack = whatIsNotBack())
            return *notBack;
        if (figures.timesQuiet == 0)
            return neverQuiet();
        if (obstacles.slips() > 0)
            return backAndForth();
        const char* end =
            figures.stillQuiet ? "and still quiet at the end" : "everything came back";
        return {Verdict::Kind::quiet,
                std::nullopt,
                {},
                {},
                fmt::format("Quiet for {}, {}.", durationText(figures.quiet), end)};
    }

private:
    std::string at(Date date) const { return timeText(zone, date); }

    std::optional<Verdict> whatIsNotBack() const {
        const auto& complaints = night.morning.complaints();
        std::optional<Obstacle> reason;
        std::string text;
        if (!complaints.empty()) {
            text = fmt::format("Not back: {}.", fmt::join(complaints, "; "));
        } else if (figures.stillQuiet && (obstacles.pickedUp() || isBlind())) {
            if (!isBlind() && obstacles.last() != Obstacle::idleSleep)
                return std::nullopt;
            reason = obstacles.last();
            const std::string pickedUp =
                obstacles.pickedUp()
                    ? fmt::format(", although it was picked up at {}", at(*obstacles.pickedUp()))
                    : "";
            text = fmt::format("Not back: still quiet at the end{}; no readings since {}, because "
                               "{}.",
                               pickedUp, at(obstacles.lastSince()), whyNoReadings(*reason));
        } else {
            return std::nullopt;
        }
        return withAdvice({Verdict::Kind::notBack, reason, {}, {}, std::move(text)}, Wish::back);
    }

    /// Whether the monitor takes no readings at the end, and will take none.
    bool isBlind() const {
        switch (obstacles.last()) {
        case Obstacle::switchedOff:
        case Obstacle::suspended:
        case Obstacle::notOnCharger:
        case Obstacle::ended:
            return true;
        default:
            return false;
        }
    }

    static const char* whyNoReadings(Obstacle obstacle) {
        switch (obstacle) {
        case Obstacle::switchedOff:
            return "monitoring is switched off (Enabled)";
        case Obstacle::suspended:
            return "airplane mode was changed by hand (DetectManual)";
        case Obstacle::notOnCharger:
            return "the phone is not on the charger (EnableOnAC)";
        case Obstacle::ended:
            return "the monitor was told to stop";
        default:
            return "the phone is in idle sleep";
        }
    }

    Verdict neverQuiet() const {
        const auto ranked = obstaclesByWeight(obstacles);
        Obstacle reason = ranked.empty() ? Obstacle::none : ranked.front();
        Verdict verdict{Verdict::Kind::neverQuiet, reason, {}, {}, ""};
        verdict.text = fmt::format("Never quiet: {}.", fmt::join(reasonTexts(ranked), "; "));
        return withAdvice(std::move(verdict), Wish::quiet);
    }

    /// The weightiest reason, and others that lasted at least a tenth as long.
    std::vector<std::string> reasonTexts(const std::vector<Obstacle>& ranked) const {
        if (ranked.empty())
            return {"the night ended too early"};
        std::vector<std::string> texts{reasonText(ranked.front())};
        const double longest = obstacles.seconds(ranked.front());
        for (std::size_t i = 1; i < ranked.size(); ++i) {
            const double seconds = obstacles.seconds(ranked[i]);
            const bool inHand = ranked[i] == Obstacle::moving || ranked[i] == Obstacle::notLaidDown;
            if (!inHand && seconds * 10 >= longest && seconds >= 60)
                texts.push_back(
                    fmt::format("for {}, {}", durationText(seconds), reasonText(ranked[i])));
        }
        return texts;
    }

    std::string reasonText(Obstacle obstacle) const {
        const Settings settings = obstacles.settings().value_or(Settings{});
        const auto tilt = obstacles.tilt(obstacle);
        switch (obstacle) {
        case Obstacle::notStarted:
            return fmt::format("the library is loaded into {}, not into {}", scenario.phone.bundle,
                               springBoardBundle);
        case Obstacle::ended:
            return fmt::format("the monitor was told to stop at {}",
                               at(*obstacles.firstMet(obstacle)));
        case Obstacle::switchedOff:
            return "monitoring is switched off (Enabled)";
        case Obstacle::suspended:
            return fmt::format("airplane mode was changed by hand before {}, which suspends "
                               "monitoring (DetectManual)",
                               at(*obstacles.firstMet(obstacle)));
        case Obstacle::outsideWindow:
            return windowText(settings) + " (TimeLimit)";
        case Obstacle::notOnCharger:
            return "the phone was not on the charger, and the settings want it there (EnableOnAC)";
        case Obstacle::idleSleep:
            return "the phone was in idle sleep, in which no readings are taken";
        case Obstacle::noSample:
            return "the accelerometer delivered nothing";
        case Obstacle::deviceMotion:
            return "the phone delivers device motion, which never counts as lying";
        case Obstacle::moving:
            return movingText();
        case Obstacle::notLaidDown:
            return fmt::format("the phone was never laid down with the screen {} ({})",
                               side(settings.screenDown), tiltsText(*tilt));
        case Obstacle::wrongSide:
            return wrongSideText(settings, *tilt);
        case Obstacle::tooTilted:
            return fmt::format("it lay {}; {}", tiltsText(*tilt), toleranceText(settings));
        case Obstacle::none:
            break;
        }
        const int broken = obstacles.brokenCountdowns();
        return "never three readings in a row; " +
               (broken == 1 ? std::string("a movement broke the countdown")
                            : fmt::format("movements broke {} countdowns", broken));
    }

    std::string wrongSideText(const Settings& settings, const Spread& tilt) const {
        std::string text =
            fmt::format("the phone lay still with the screen {}; the settings want it {}",
                        side(!settings.screenDown), side(settings.screenDown));
        if (tilt.median >= postureTolerance(settings.sensitivity) * degreesPerRadian)
            text += fmt::format(", and flatter: it lay {}; {}", tiltsText(tilt),
                                toleranceText(settings));
        return text;
    }

    std::string movingText() const {
        const Spread length = *obstacles.movingLength();
        constexpr double keepsStill = 0.03;
        if (length.highest - length.lowest < keepsStill)
            return fmt::format("the accelerometer reads {:.2f} g, and only 0.9 to 1.1 g count as "
                               "still",
                               length.median);
        return "the phone never lay still";
    }

    Verdict backAndForth() const {
        const Settings& settings = *obstacles.settings();
        const auto tilt = obstacles.slipTilt();
        std::string text =
            fmt::format("Back and forth: quiet for {} in all, but back {} without being picked up",
                        durationText(figures.quiet), count(obstacles.slips(), "time", "times"));
        text += tilt ? fmt::format(" ({}; {}).", tiltsText(*tilt), toleranceText(settings))
                     : " (it moved).";
        if (!figures.stillQuiet)
            text += " At last everything came back.";
        const Obstacle reason = tilt ? Obstacle::tooTilted : Obstacle::moving;
        return withAdvice({Verdict::Kind::backAndForth, reason, {}, {}, std::move(text)},
                          Wish::held);
    }

    Verdict withAdvice(Verdict verdict, Wish wish) const {
        if (!retry)
            return verdict;
        verdict.advice = findAdvice(wish, scenario, night, retry);
        const auto& found = verdict.advice.found;
        if (found)
            verdict.text += ' ' + adviceText(*found, wish);
        else if (!verdict.advice.tried.empty())
            verdict.text += fmt::format(" Played again with other values of {}: none would have "
                                        "helped.",
                                        fmt::join(verdict.advice.tried, ", "));
        return verdict;
    }

    std::string adviceText(const Advice& advice, Wish wish) const {
        const std::string settings = settingsText(advice.settings);
        const auto& then = advice.figures;
        const std::string from = then.firstQuiet ? at(*then.firstQuiet) : "";
        const std::string radios = advice.everythingBack ? ""
                                                         : ", but not everything would have "
                                                           "come back";
        switch (wish) {
        case Wish::quiet:
            return fmt::format("{} would have worked from {}{}.", settings, from, radios);
        case Wish::held:
            return fmt::format("{} would have kept it quiet for {}, from {}{}.", settings,
                               durationText(then.quiet), from, radios);
        case Wish::back:
            break;
        }
        return fmt::format("With {} everything would have come back{}.", settings,
                           then.lastBack ? " at " + at(*then.lastBack) : "");
    }

    const Scenario& scenario;
    const TimeZone zone;
    const NightFindings& night;
    const NightFigures& figures;
    const Obstacles& obstacles;
    const Retry& retry;
};

} // namespace

Verdict verdictOn(const Scenario& scenario, const NightFindings& night, const Retry& retry) {
    Verdict verdict = Judge(scenario, night, retry).judge();
    for (const Obstacle obstacle : obstaclesByWeight(night.obstacles))
        verdict.hindrances.push_back({obstacle, night.obstacles.seconds(obstacle)});
    return verdict;
}

std::string nameOf(Verdict::Kind kind) {
    constexpr std::array names{"quiet", "neverQuiet", "backAndForth", "notBack"};
    return names[static_cast<std::size_t>(kind)];
}

std::string nameOf(Obstacle obstacle) {
    constexpr std::array<const char*, obstacleKinds> names{
        "notStarted",   "ended",     "switchedOff", "suspended",    "outsideWindow",
        "notOnCharger", "idleSleep", "noSample",    "deviceMotion", "moving",
        "notLaidDown",  "wrongSide", "tooTilted",   "none"};
    return names[static_cast<std::size_t>(obstacle)];
}

std::string shortText(Obstacle obstacle) {
    constexpr std::array<const char*, obstacleKinds> texts{"the library is not in SpringBoard",
                                                           "the monitor was stopped",
                                                           "switched off",
                                                           "suspended",
                                                           "outside the window",
                                                           "not on the charger",
                                                           "in idle sleep",
                                                           "the accelerometer delivers nothing",
                                                           "device motion",
                                                           "moving",
                                                           "not laid down",
                                                           "the wrong side up",
                                                           "too tilted",
                                                           "countdowns were broken"};
    return texts[static_cast<std::size_t>(obstacle)];
}

std::string durationText(double seconds) {
    const auto whole = std::llround(seconds);
    if (whole >= 3600)
        return fmt::format("{} h {:02} min", whole / 3600, whole / 60 % 60);
    if (whole >= 60)
        return fmt::format("{} min {:02} s", whole / 60, whole % 60);
    return fmt::format("{} s", whole);
}

} // namespace noctara
