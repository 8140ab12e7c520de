#include "soak/random_scenario.h"

#include "night/scenario_times.h"
#include "soak/dice.h"
#include "soak/random_events.h"
#include "soak/random_settings.h"

#include <array>

namespace noctara {

namespace {

struct ChangeOfClocks {
    const char* zone;
    int year;
    int month;
    int day; ///< Whose small hours the change is in.
};

/// Changes of the clocks forwards and back, in both hemispheres, at midnight, and by half an hour.
constexpr std::array changesOfClocks{
    ChangeOfClocks{"Europe/Paris", 2013, 3, 31},
    ChangeOfClocks{"Europe/Paris", 2014, 10, 26},
    ChangeOfClocks{"Europe/London", 2015, 10, 25},
    ChangeOfClocks{"America/New_York", 2014, 3, 9},
    ChangeOfClocks{"America/New_York", 2013, 11, 3},
    ChangeOfClocks{"America/St_Johns", 2014, 11, 2},
    ChangeOfClocks{"America/Sao_Paulo", 2014, 2, 16},
    ChangeOfClocks{"America/Sao_Paulo", 2014, 10, 19},
    ChangeOfClocks{"Australia/Sydney", 2014, 4, 6},
    ChangeOfClocks{"Australia/Sydney", 2014, 10, 5},
    ChangeOfClocks{"Pacific/Auckland", 2013, 9, 29},
    ChangeOfClocks{"Pacific/Auckland", 2015, 4, 5},
    ChangeOfClocks{"Australia/Lord_Howe", 2014, 4, 6},
    ChangeOfClocks{"Australia/Lord_Howe", 2014, 10, 5},
};

constexpr std::array otherZones{
    "Europe/Paris",     "Europe/London",       "America/New_York",  "America/Los_Angeles",
    "America/St_Johns", "Asia/Kolkata",        "Asia/Kathmandu",    "Asia/Tokyo",
    "Australia/Sydney", "Australia/Lord_Howe", "Australia/Darwin",  "Pacific/Auckland",
    "Pacific/Chatham",  "America/Sao_Paulo",   "Africa/Casablanca", "Africa/Johannesburg",
};

std::string line(const std::string& key, const std::string& value) {
    return key + " = " + value + '\n';
}

std::string truthLine(const std::string& key, bool value) {
    return line(key, value ? "true" : "false");
}

/// A line with one of the values, or no line, for the default.
std::string perhaps(Dice& dice, int percent, const std::string& key,
                    std::initializer_list<const char*> values) {
    const bool isThere = dice.chance(percent);
    return isThere ? line(key, dice.oneOf(values)) : "";
}

/// The same for a boolean that is true in `percentTrue` of 100 cases.
std::string perhapsTrue(Dice& dice, int percent, const std::string& key, int percentTrue) {
    const bool isThere = dice.chance(percent);
    return isThere ? truthLine(key, dice.chance(percentTrue)) : "";
}

std::string inQuotes(const std::string& text) {
    return '"' + text + '"';
}

struct Period {
    std::string lines;
    TimeZone zone;
    Date start;
    Date end;
};

/// A local time that exists; of two occurrences the earlier one, as in scenario files.
Date existing(const TimeZone& zone, const DateComponents& parts) {
    return zone.firstDate(zone.components(zone.date(parts)));
}

/// Before the change of the clocks, so that it happens during the night.
DateComponents nightOfChange(Dice& dice, const ChangeOfClocks& change) {
    const auto hour = static_cast<std::int32_t>(dice.between(-2, 2));
    const auto minute = static_cast<std::int32_t>(dice.between(0, 59));
    return {change.year, change.month, change.day, hour, minute, 0};
}

DateComponents anyNight(Dice& dice) {
    DateComponents parts{};
    parts.year = static_cast<std::int32_t>(dice.between(2012, 2015));
    parts.month = static_cast<std::int32_t>(dice.between(1, 12));
    parts.day = static_cast<std::int32_t>(dice.between(1, 28));
    parts.hour =
        static_cast<std::int32_t>(dice.chance(75) ? dice.between(20, 27) : dice.between(0, 23));
    parts.minute = static_cast<std::int32_t>(dice.between(0, 59));
    parts.second = static_cast<std::int32_t>(dice.chance(50) ? 0 : dice.between(0, 59));
    return parts;
}

std::int64_t secondsLong(Dice& dice, NightLength length, bool acrossChange) {
    if (length == NightLength::whole)
        return dice.between(6 * 3600, 11 * 3600);
    const auto kind = dice.between(1, 100);
    if (kind <= 3)
        return dice.between(1, 120);
    if (kind <= 5)
        return dice.between(3, 6) * 3600;
    if (acrossChange || kind <= 20)
        return dice.between(3600, 3 * 3600);
    return dice.between(18 * 60, 90 * 60);
}

/// Hundredths of an hour are 36 seconds.
std::string hoursText(std::int64_t hundredths) {
    const auto fraction = std::to_string(hundredths % 100);
    return std::to_string(hundredths / 100) + '.' + (fraction.size() < 2 ? "0" : "") + fraction;
}

Period randomPeriod(Dice& dice, NightLength length) {
    const bool acrossChange = dice.chance(12);
    const auto change = dice.oneOf(changesOfClocks);
    const bool utc = dice.chance(25);
    const std::string zoneName = acrossChange ? change.zone : utc ? "UTC" : dice.oneOf(otherZones);
    const bool zoneIsWritten = !utc || acrossChange || dice.chance(30);
    const TimeZone zone(zoneName);

    const bool startIsWritten = acrossChange || dice.chance(95);
    Date start = existing(zone, {2014, 3, 1, 22, 30, 0});
    if (startIsWritten)
        start = existing(zone, acrossChange ? nightOfChange(dice, change) : anyNight(dice));

    Period period{"", zone, start, start};
    if (zoneIsWritten)
        period.lines += line("timezone", inQuotes(zoneName));
    if (startIsWritten)
        period.lines += line("start", localText(zone.components(start)));

    const std::int64_t seconds = secondsLong(dice, length, acrossChange);
    const Date end{start.secondsSince1970 + static_cast<double>(seconds)};
    const DateComponents endParts = zone.components(end);
    const bool endIsUnambiguous = zone.firstDate(endParts) == end;
    if (endIsUnambiguous && (seconds < 36 || dice.chance(50))) {
        period.lines += line("end", localText(endParts));
        period.end = end;
    } else {
        const std::int64_t hundredths = seconds / 36 + 1;
        period.lines += line("hours", hoursText(hundredths));
        period.end.secondsSince1970 += static_cast<double>(hundredths) * 36;
    }
    return period;
}

std::string randomPhone(Dice& dice, bool screenDown, bool fallsAsleep) {
    std::string lines;
    if (dice.chance(3))
        lines +=
            line("bundle", inQuotes(dice.chance(50) ? "com.apple.Maps" : "com.apple.springboard"));
    lines += perhaps(dice, 60, "machine",
                     {"\"iPhone1,1\"", "\"iPhone3,1\"", "\"iPhone4,1\"", "\"iPhone5,2\"",
                      "\"iPod5,1\"", "\"iPad2,1\"", "\"iPad3,3\"", "\"iPad3,3\""});
    lines += perhaps(dice, 25, "idiom", {"0", "1", "2"});
    lines += perhaps(dice, 50, "corefoundation",
                     {"793.0", "793", "675.32", "792.99", "793.01", "847.2", "1000.5"});
    lines += perhaps(dice, 40, "capabilities",
                     {"[\"cellular-data\", \"wifi\"]", "[\"cellular-data\"]", "[\"wifi\"]", "[]",
                      "[\"wifi\", \"telephony\", \"cellular-data\"]"});
    lines += perhaps(dice, 60, "rates",
                     {"[]", "[\"2G\"]", "[\"3G\"]", "[\"4G\"]", "[\"2G\", \"3G\"]",
                      "[\"2G\", \"3G\"]", "[\"2G\", \"4G\"]", "[\"3G\", \"4G\"]",
                      "[\"2G\", \"3G\", \"4G\"]", "[\"2G\", \"3G\", \"4G\"]", "[\"4G\", \"3G\"]"});
    lines += perhapsTrue(dice, 40, "telephony_manager", 85);
    lines += perhapsTrue(dice, 40, "telephony_server", 85);
    lines += perhapsTrue(dice, 40, "gestalt", 70);
    lines += perhapsTrue(dice, 40, "sounds", 70);
    lines += perhapsTrue(dice, 60, "charger", 45);
    if (dice.chance(60)) {
        const bool putDown = dice.chance(35);
        lines += line("posture", randomPosture(dice, putDown, screenDown));
    }
    lines += perhapsTrue(dice, 30, "device_motion", 8);
    if (fallsAsleep)
        lines += line("idle_sleep", std::to_string(dice.between(30, 600)));
    else if (dice.chance(20))
        lines += line("idle_sleep", "0");
    return lines.empty() ? "" : "\n[phone]\n" + lines;
}

std::string randomRadios(Dice& dice) {
    std::string lines;
    lines += perhapsTrue(dice, 40, "airplane", 40);
    lines += perhapsTrue(dice, 40, "wifi", 60);
    lines += perhapsTrue(dice, 40, "wifi_powered", 60);
    lines += perhapsTrue(dice, 40, "bluetooth", 60);
    lines += perhapsTrue(dice, 40, "bluetooth_connected", 40);
    lines += perhapsTrue(dice, 40, "cellular_data", 70);
    lines += perhaps(dice, 50, "max_rate", {"\"2G\"", "\"3G\"", "\"4G\"", "\"4G\""});
    lines += perhapsTrue(dice, 40, "location", 60);
    lines += perhapsTrue(dice, 30, "push", 50);
    lines += perhapsTrue(dice, 20, "tethering", 50);
    lines += perhaps(dice, 15, "call",
                     {"\"none\"", "\"in-call\"", "\"outgoing\"", "\"incoming\"", "\"active\""});
    return lines.empty() ? "" : "\n[radios]\n" + lines;
}

std::string settingsTable(const RandomSettings& settings) {
    if (!settings.file)
        return "";
    std::string text = "\n[settings]\n";
    for (const auto& [key, value] : *settings.file)
        text += line(keyText(key), value);
    return text;
}

std::string randomApplications(Dice& dice) {
    std::string text;
    bool oneIsInFront = false;
    for (const auto& identifier : applicationIdentifiers) {
        if (!dice.chance(45))
            continue;
        text += "\n[[application]]\n" + line("identifier", inQuotes(identifier));
        text +=
            perhaps(dice, 50, "name", {"\"Clock\"", "\"Träume ☾\"", "\"A \\\"name\\\"\"", "\"\""});
        const bool inFront = !oneIsInFront && dice.chance(20);
        oneIsInFront = oneIsInFront || inFront;
        if (inFront)
            text += truthLine("front", true);
        else
            text += perhapsTrue(dice, 60, "running", 60);
        text += perhapsTrue(dice, 40, "icon", 50);
    }
    return text;
}

/// Wake-ups of other programs and of the monitor, most of them during the night.
std::string randomWakes(Dice& dice, const Period& period) {
    std::string text;
    const auto length =
        static_cast<std::int64_t>(period.end.secondsSince1970 - period.start.secondsSince1970);
    for (auto left = dice.chance(60) ? 0 : dice.between(1, 3); left > 0; --left) {
        const char* const scheduledBy =
            dice.oneOf({"com.apple.alarm", "com.example.backup", "com.quorbit.Noctara"});
        text += "\n[[wake]]\n" + line("scheduledby", inQuotes(scheduledBy));
        const auto after = dice.chance(80) ? dice.between(1, length) : dice.between(-600, 86400);
        const Date at{period.start.secondsSince1970 + static_cast<double>(after)};
        text +=
            line("at", randomTimeText(dice, period.zone, at, {period.start.secondsSince1970 + 1}));
    }
    return text;
}

} // namespace

std::string randomScenario(std::uint64_t seed, NightLength length) {
    Dice dice(seed);
    const Period period = randomPeriod(dice, length);
    const RandomSettings settings = randomSettings(dice, period.zone.components(period.start).hour);
    const bool fallsAsleep = dice.chance(20);

    std::string text = "# Random scenario " + std::to_string(seed) + ".\n" + period.lines;
    text += randomPhone(dice, settings.screenDown, fallsAsleep);
    text += randomRadios(dice);
    text += settingsTable(settings);
    text += randomApplications(dice);
    text += randomWakes(dice, period);
    text += randomEvents(dice, {period.zone, period.start, period.end, settings, fallsAsleep});
    return text;
}

} // namespace noctara
