#include "night/situation.h"

#include "monitor/countdown.h"
#include "monitor/posture.h"
#include "night/local_clock_text.h"
#include "night/reading_words.h"
#include "platform/system_power.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace noctara {

namespace {

constexpr double countdownPause = 1.0;
constexpr double settleTime = 1.0;

} // namespace

Situation::Situation(const Scenario& scenario, Date at, std::function<Date()> wallClock) :
    night(scenario),
    zone(scenario.timezone),
    instant(at),
    now(std::move(wallClock)),
    watchingSince(scenario.start),
    onCharger(scenario.phone.charger) {}

bool Situation::isOver(Date at) {
    reached = reached || elapsed.at(at) > elapsed.at(instant);
    return reached;
}

void Situation::watch(Watch state, Date at) {
    waitBegan = at;
    if (settings)
        interval = std::max(0, settings->sleepTime);
    if (state == watching)
        return;
    watching = state;
    watchingSince = at;
}

void Situation::called(const Call& call) {
    if (isOver(call.at))
        return;
    if (call.operation == Operation::isOnAC)
        onCharger = std::get<bool>(*call.result);
}

void Situation::happens(const Happening& happening) {
    if (isOver(happening.at))
        return;
    elapsed.happens(happening);
    if (const auto* change = std::get_if<ChargerChange>(&happening.event)) {
        onCharger = change->plugged;
        unpluggedWhileQuiet = quiet && !onCharger;
    } else if (const auto* message = std::get_if<PowerMessage>(&happening.event)) {
        if (message->type == kIOMessageSystemWillSleep)
            idleSleepSince = happening.at;
        else if (message->type == kIOMessageSystemHasPoweredOn)
            idleSleepSince.reset();
    } else if (std::holds_alternative<MonitorStop>(happening.event)) {
        watch(Watch::ended, happening.at);
    }
}

void Situation::decided(const Decision& decision) {
    const Date at = now();
    if (isOver(at))
        return;
    if (const auto* loaded = std::get_if<SettingsLoaded>(&decision)) {
        settings = loaded->settings;
    } else if (const auto* begins = std::get_if<MonitoringBegins>(&decision)) {
        quiet = begins->inSleepState;
        quietSince = at;
        watch(Watch::reading, at);
        interval = 0;
    } else if (const auto* compared = std::get_if<AirplaneModeCompared>(&decision)) {
        changedByHand = compared->changedByHand;
    } else if (const auto* skipped = std::get_if<NoReading>(&decision)) {
        const bool isOff = skipped->reason == NoReading::Reason::monitoringIsOff;
        watch(isOff && changedByHand                                ? Watch::suspended
              : isOff                                               ? Watch::off
              : skipped->reason == NoReading::Reason::outsideWindow ? Watch::outsideWindow
                                                                    : Watch::notOnCharger,
              at);
    } else if (const auto* taken = std::get_if<Reading>(&decision)) {
        reading = *taken;
        readingAt = at;
        watch(Watch::reading, at);
    } else if (const auto* counted = std::get_if<ReadingCounted>(&decision)) {
        count = counted->inARow % Countdown::readingsForChange;
    } else if (const auto* changed = std::get_if<StateChanged>(&decision)) {
        quiet = changed->inSleepState;
        quietSince = at;
        unpluggedWhileQuiet = false;
    }
}

std::string Situation::at(Date date) const {
    const std::string time = timeText(zone, date);
    const std::string day = dayText(zone, date);
    if (day == dayText(zone, instant))
        return time;
    // "Saturday, 1 March 2014" without the weekday and the year.
    const auto from = day.find(", ") + 2;
    return fmt::format("{} on {}", time, day.substr(from, day.rfind(' ') - from));
}

std::string Situation::watchText() const {
    switch (watching) {
    case Watch::notStarted:
        return night.phone.bundle == springBoardBundle
                   ? "The monitor has not started."
                   : fmt::format("There is no monitor: the library is loaded into {}, not into {}.",
                                 night.phone.bundle, springBoardBundle);
    case Watch::reading:
        return fmt::format("The monitor watches since {}.", at(watchingSince));
    case Watch::off:
        return fmt::format("Monitoring is switched off (Enabled) since {}.", at(watchingSince));
    case Watch::suspended:
        return fmt::format("Monitoring is suspended since {}, because airplane mode was changed by "
                           "hand (DetectManual).",
                           at(watchingSince));
    case Watch::outsideWindow:
        return fmt::format("The monitor takes no readings since {}: it is outside the window.",
                           at(watchingSince));
    case Watch::notOnCharger:
        return fmt::format("The monitor takes no readings since {}: the phone is not on the "
                           "charger.",
                           at(watchingSince));
    case Watch::ended:
        break;
    }
    return fmt::format("The monitor was told to stop at {}.", at(watchingSince));
}

std::string Situation::stateText() const {
    std::string text;
    if (quiet)
        text = fmt::format("The phone is quiet since {}.", at(*quietSince));
    else
        text = "The phone is not quiet.";
    if (idleSleepSince)
        text += fmt::format(" It is in idle sleep since {}.", at(*idleSleepSince));
    return text;
}

std::string Situation::windowText() const {
    if (!settings->timeLimit)
        return "Window: none (TimeLimit is off).";
    return fmt::format("Window: {}, from {}:00 to {}:00{}.",
                       isInsideWindow(instant) ? "inside" : "outside", settings->startTime,
                       settings->stopTime,
                       quiet ? "; it does not matter while the phone is quiet" : "");
}

std::string Situation::chargerText() const {
    const char* state = onCharger ? "plugged in" : "not plugged in";
    if (!settings->enabledOnChargeOnly)
        return fmt::format("Charger: {}; it does not matter (EnableOnAC is off).", state);
    if (!onCharger && unpluggedWhileQuiet)
        return fmt::format("Charger: {}; it does not matter until the phone is back, because it "
                           "was unplugged while the phone was quiet.",
                           state);
    return fmt::format("Charger: {}; it is needed (EnableOnAC is on).", state);
}

std::string Situation::readingText() const {
    if (!reading)
        return "Last reading: none yet.";
    const double tolerance = reading->tolerance * degreesPerRadian;
    const std::string allowed =
        tolerance < 0 ? std::string("no tilt") : fmt::format("less than {:.1f}° off", tolerance);
    return fmt::format("Last reading, at {}: {}. Allowed: {}, and 0.9 to 1.1 g.", at(readingAt),
                       readingInWords(*reading), allowed);
}

std::string Situation::missingText() const {
    const int missing = Countdown::readingsForChange - count;
    const std::string readings =
        fmt::format("{}{} in a row", missing, missing == 1 ? " more reading" : " readings");
    const char* side = settings->screenDown ? "down" : "up";
    std::string text = fmt::format("Missing for the next change: {} of the phone {} screen {}",
                                   readings, quiet ? "not lying" : "lying", side);
    if (watching == Watch::off)
        text += ", and Enabled has to be on";
    else if (watching == Watch::suspended)
        text += quiet ? ", and airplane mode has to be on again"
                      : ", and airplane mode has to be off again";
    if (settings->timeLimit && !quiet && !isInsideWindow(instant))
        text += fmt::format(", and the window begins at {}:00", settings->startTime);
    if (settings->enabledOnChargeOnly && !onCharger && !unpluggedWhileQuiet)
        text += ", and the charger has to be plugged in";
    text += '.';
    if (idleSleepSince)
        return text + " No readings are taken before the idle sleep ends.";
    if (const auto change = earliestChange())
        text += fmt::format(" At the earliest, {} at {}.",
                            quiet ? "the phone is back" : "it is quiet", at(*change));
    else
        text += " With these settings it never happens.";
    return text;
}

/// The rule of the monitor: both hours are on the day of `date`.
bool Situation::isInsideWindow(Date date) const {
    DateComponents parts = zone.components(date);
    parts.minute = parts.second = 0;
    parts.hour = settings->startTime;
    const Date start = zone.date(parts);
    parts.hour = settings->stopTime;
    const Date stop = zone.date(parts);
    if (settings->stopTime < settings->startTime)
        return date > start || date <= stop;
    return date >= start && date <= stop;
}

std::optional<Date> Situation::earliestChange() const {
    if (!settings || watching == Watch::notStarted || watching == Watch::ended || idleSleepSince)
        return std::nullopt;
    const auto later = [](Date date, double seconds) {
        return Date{date.secondsSince1970 + seconds};
    };
    const bool isCounting = count > 0 && watching == Watch::reading;
    Date cycle = later(waitBegan, isCounting ? countdownPause : interval);
    if (watching == Watch::off && cycle < instant)
        cycle = later(cycle, interval);
    else if (watching == Watch::suspended && !quiet)
        // The monitor waits twice, finds airplane mode as it was left, and waits once more.
        cycle = later(waitBegan, 3.0 * interval);

    constexpr double longestSearch = 2 * 86'400.0;
    int inARow = count;
    while (cycle.secondsSince1970 < instant.secondsSince1970 + longestSearch) {
        if (settings->timeLimit && !quiet && !isInsideWindow(cycle)) {
            cycle = later(cycle, std::max(1, settings->sleepTime));
            continue;
        }
        const Date decision = later(cycle, settleTime);
        if (decision > instant && ++inARow == Countdown::readingsForChange)
            return decision;
        cycle = later(decision, countdownPause);
    }
    return std::nullopt;
}

std::vector<std::string> Situation::description() const {
    std::vector<std::string> lines{watchText()};
    if (!settings || watching == Watch::notStarted)
        return lines;
    lines.push_back(stateText());
    lines.push_back(windowText());
    lines.push_back(chargerText());
    lines.push_back(readingText());
    if (watching == Watch::ended)
        return lines;
    lines.push_back(fmt::format("Count: {} of 3.", count));
    lines.push_back(missingText());
    return lines;
}

} // namespace noctara
