#include "settings/settings_check.h"

#include "input/bad_input.h"
#include "monitor/posture.h"
#include "settings/setting_keys.h"
#include "settings/setting_words.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

namespace noctara {

namespace {

/// What the key counts as when the home screen starts.
std::int32_t countedAs(const Dictionary& settings, std::string_view name) {
    const PropertyList* const value = settings.find(name);
    const SettingKey& key = *findSettingKey(name);
    if (!value)
        return key.whenMissing;
    return key.kind == SettingKey::Kind::onOff ? value->boolValue() : value->intValue();
}

std::string hourInWords(std::int32_t hour) {
    return hour == 0 || hour == 24 ? "midnight" : fmt::format("{}:00", hour);
}

/// When the time limit lets the phone go quiet. Both hours are on the current day; an hour
/// outside 0 to 23 is on another day.
std::string windowInWords(std::int32_t start, std::int32_t stop) {
    constexpr std::int32_t wholeDay = 24;
    std::int32_t from = std::max(start, 0);
    std::int32_t to = std::min(stop, wholeDay);
    if (stop < start) {
        const bool hasEvening = start < wholeDay;
        const bool hasMorning = stop > 0;
        if (start < 0 || stop >= wholeDay) {
            from = 0;
            to = wholeDay;
        } else if (hasEvening != hasMorning) {
            from = hasEvening ? start : 0;
            to = hasEvening ? wholeDay : stop;
        } else if (!hasEvening) {
            to = from;
        }
    } else if (to <= from) {
        to = from;
    }
    if (from == to)
        return "the phone never goes quiet";
    if (from == 0 && to == wholeDay)
        return "the phone goes quiet at any hour";
    return fmt::format("the phone goes quiet only from {} to {}", hourInWords(from),
                       hourInWords(to));
}

std::string sensitivityInWords(std::int32_t sensitivity) {
    const double degrees = postureTolerance(sensitivity) * degreesPerRadian;
    if (std::isinf(degrees))
        return "the phone lies at any tilt";
    if (degrees < 0)
        return "no tilt counts as lying, and the phone never goes quiet";
    return fmt::format("the phone may be tilted by {:.2g}° at most", degrees);
}

/// The product is the monitor's: it wraps at 32 bits.
std::string scanIntervalInWords(std::int32_t interval) {
    const auto seconds = static_cast<std::int32_t>(static_cast<std::uint32_t>(interval) * 5U);
    if (seconds >= 5)
        return fmt::format("Noctara takes a reading every {} s", seconds);
    const std::string later = seconds < 0 ? "Noctara stops reading for years"
                              : seconds == 0
                                  ? "Noctara reads without a pause"
                                  : fmt::format("Noctara takes a reading every {} s", seconds);
    return "it counts as 1 when the home screen starts, but if it is set later, " + later;
}

/// What the monitor makes of a number that is out of range.
std::string effectOf(const Dictionary& settings, std::string_view name, std::int32_t number) {
    if (name == "Sensitivity")
        return sensitivityInWords(number);
    if (name == "ScanInterval")
        return scanIntervalInWords(number);
    return "with TimeLimit on, " +
           windowInWords(countedAs(settings, "StartHour"), countedAs(settings, "StopHour"));
}

std::optional<Oddity> oddityOfSwitch(std::string_view name, const PropertyList& value) {
    const auto number = wholeNumberIn(value);
    if (value.as<bool>() || number == 0 || number == 1)
        return std::nullopt;
    return Oddity{Oddity::Kind::wrongType,
                  fmt::format("{} is {}, not on or off: it counts as {}.", name,
                              valueInWords(value), value.boolValue() ? "on" : "off")};
}

std::optional<Oddity> oddityOfNumber(const Dictionary& settings, const SettingKey& key,
                                     const PropertyList& value) {
    const std::int32_t counted = value.intValue();
    const auto number = wholeNumberIn(value);
    const bool isInRange = counted >= key.least && counted <= key.most;
    if (number == counted && isInRange)
        return std::nullopt;
    const std::string expected =
        number ? fmt::format("{} to {}", key.least, key.most) : "a whole number";
    std::string effect = isInRange ? "" : effectOf(settings, key.name, counted);
    if (number != counted)
        effect = fmt::format("it counts as {}{}{}", counted, isInRange ? "" : ", and ", effect);
    return Oddity{
        number ? Oddity::Kind::outOfRange : Oddity::Kind::wrongType,
        fmt::format("{} is {}, not {}: {}.", key.name, valueInWords(value), expected, effect)};
}

Oddity oddityOfMissing(const SettingKey& key) {
    return {Oddity::Kind::missingKey,
            fmt::format("{} is missing: {}.", key.name, missingInWords(key))};
}

Oddity oddityOfUnknown(std::string_view key) {
    const auto meant = nearestSettingKey(key);
    return {Oddity::Kind::unknownKey,
            fmt::format("{} is no setting and has no effect{}", inQuotes(key),
                        meant ? fmt::format("; did you mean {}?", inQuotes(*meant)) : ".")};
}

std::optional<Oddity> oddityOfApplication(std::string_view key, std::string_view identifier,
                                          const PropertyList& value,
                                          const std::vector<std::string>* known) {
    if (identifier.empty())
        return Oddity{Oddity::Kind::unknownKey,
                      fmt::format("{} names no application and has no effect.", inQuotes(key))};
    if (auto oddity = oddityOfSwitch(inQuotes(key), value))
        return oddity;
    if (!known || !value.boolValue() ||
        std::find(known->begin(), known->end(), identifier) != known->end())
        return std::nullopt;
    return Oddity{
        Oddity::Kind::absentApplication,
        fmt::format("{} is on, but the phone does not have this application.", inQuotes(key))};
}

} // namespace

std::vector<Oddity> checkSettings(const Dictionary& settings,
                                  const std::vector<std::string>* knownApplications) {
    std::vector<Oddity> found;
    const auto add = [&](const std::optional<Oddity>& oddity) {
        if (oddity)
            found.push_back(*oddity);
    };
    for (const auto& key : settingKeys()) {
        const PropertyList* const value = settings.find(key.name);
        // Nothing reads "Stop".
        if (!value && key.name != "Stop")
            add(oddityOfMissing(key));
        else if (value && key.kind == SettingKey::Kind::onOff)
            add(oddityOfSwitch(key.name, *value));
        else if (value)
            add(oddityOfNumber(settings, key, *value));
    }
    const std::int32_t hour = countedAs(settings, "StartHour");
    if (countedAs(settings, "TimeLimit") && hour == countedAs(settings, "StopHour"))
        add(Oddity{Oddity::Kind::emptyWindow,
                   fmt::format("StartHour and StopHour are both {}: with TimeLimit on, the phone "
                               "never goes quiet.",
                               hour)});
    for (const auto& [key, value] : settings) {
        if (const auto identifier = identifierInKey(key))
            add(oddityOfApplication(key, *identifier, value, knownApplications));
        else if (!findSettingKey(key))
            add(oddityOfUnknown(key));
    }
    return found;
}

} // namespace noctara
