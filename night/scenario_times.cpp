/// The local times of a scenario.
#include "night/scenario_times.h"

#include "input/bad_input.h"

#include <absl/time/civil_time.h>

#include <array>
#include <cstdio>
#include <regex>

namespace noctara {

namespace {

constexpr int firstYear = 1970;

std::string accepted(TimeForm form) {
    const std::string withDay = "write a local date-time such as 2014-03-01T22:30:00";
    return form == TimeForm::WithDay ? withDay : withDay + " or a local time such as 22:30:00";
}

std::string timeText(const DateComponents& parts) {
    std::array<char, 40> text;
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d", parts.hour, parts.minute,
                  parts.second);
    return text.data();
}

std::string dayText(const DateComponents& parts) {
    std::array<char, 40> text;
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", parts.year, parts.month, parts.day);
    return text.data();
}

absl::CivilDay dayOf(const DateComponents& parts) {
    return absl::CivilDay(parts.year, parts.month, parts.day);
}

std::int64_t secondsOfDay(const DateComponents& parts) {
    return std::int64_t{parts.hour} * 3600 + std::int64_t{parts.minute} * 60 + parts.second;
}

DateComponents onDay(const DateComponents& time, absl::CivilDay day) {
    DateComponents parts = time;
    parts.year = static_cast<std::int32_t>(day.year());
    parts.month = day.month();
    parts.day = day.day();
    return parts;
}

[[noreturn]] void refuseSkipped(const DateComponents& parts, const TimeZone& zone,
                                const std::string& place) {
    throw BadInput(place + ": " + timeText(parts) + " does not exist in " + zone.name() + " on " +
                   dayText(parts) + "; the clocks skip it, write an earlier or a later time");
}

/// Years after 9999 cannot be written: a year has four digits.
void refuseEarlyYear(const DateComponents& parts, const std::string& place) {
    if (parts.year < firstYear)
        throw BadInput(place + ": the year is " + std::to_string(parts.year) +
                       "; accepted: " + std::to_string(firstYear) + " to 9999");
}

/// Refuses a fraction of a second and a year before the first.
DateComponents partsOf(const toml::date_time& dateTime, const TomlValue& value, TimeForm form) {
    if (dateTime.time.nanosecond != 0)
        value.refuse(value.name() + " has a fraction of a second", accepted(form));
    const DateComponents parts{dateTime.date.year, dateTime.date.month,  dateTime.date.day,
                               dateTime.time.hour, dateTime.time.minute, dateTime.time.second};
    refuseEarlyYear(parts, value.place());
    return parts;
}

} // namespace

WrittenTime writtenTime(const TomlValue& value, TimeForm form) {
    const auto* dateTime = value.node().as_date_time();
    if (dateTime && !dateTime->get().offset)
        return {partsOf(dateTime->get(), value, form), true, value.place()};
    const auto* time = value.node().as_time();
    if (!time || form == TimeForm::WithDay)
        value.refuseType(accepted(form));
    const toml::date anyDay{firstYear, 1, 1};
    return {partsOf(toml::date_time{anyDay, time->get()}, value, form), false, value.place()};
}

WrittenTime writtenTime(const std::string& option, const std::string& text, TimeForm form) {
    static const std::regex pattern(R"((?:(\d{4})-(\d\d)-(\d\d)[T ])?(\d\d):(\d\d)(?::(\d\d))?)");
    const auto refuse = [&](const std::string& wrong) {
        throw BadInput(option + ": " + inQuotes(text) + " " + wrong + "; " + accepted(form));
    };
    std::smatch match;
    if (!std::regex_match(text, match, pattern))
        refuse("is no local time");
    const auto number = [&](std::size_t group) {
        return match[group].matched ? std::stoi(match[group]) : 0;
    };
    WrittenTime time{{firstYear, 1, 1, number(4), number(5), number(6)}, match[1].matched, option};
    if (time.parts.hour > 23 || time.parts.minute > 59 || time.parts.second > 59)
        refuse("is not a time of day");
    if (!time.hasDay) {
        if (form == TimeForm::WithDay)
            refuse("has no date");
        return time;
    }
    time.parts.year = number(1);
    time.parts.month = number(2);
    time.parts.day = number(3);
    const absl::CivilDay day = dayOf(time.parts);
    if (day.month() != time.parts.month || day.day() != time.parts.day)
        refuse("is no day of the calendar");
    refuseEarlyYear(time.parts, option);
    return time;
}

Date instantOf(const WrittenTime& time, const TimeZone& zone) {
    if (!zone.exists(time.parts))
        refuseSkipped(time.parts, zone, time.place);
    return zone.firstDate(time.parts);
}

Date instantOrNext(const WrittenTime& time, const TimeZone& zone, Date from) {
    if (time.hasDay)
        return instantOf(time, zone);
    const DateComponents now = zone.components(from);
    const absl::CivilDay today = dayOf(now);

    // Clocks set back at midnight repeat a part of the previous evening, so the search starts
    // there.
    for (int daysAhead = -1;; ++daysAhead) {
        const DateComponents parts = onDay(time.parts, today + daysAhead);
        if (!zone.exists(parts)) {
            const bool passed =
                daysAhead < 0 || (daysAhead == 0 && secondsOfDay(parts) < secondsOfDay(now));
            if (!passed)
                refuseSkipped(parts, zone, time.place);
            continue;
        }
        for (const Date candidate : {zone.firstDate(parts), zone.date(parts)})
            if (candidate >= from)
                return candidate;
    }
}

Date instantOfAnyDateTime(const TomlValue& value, const TimeZone& zone) {
    const auto* dateTime = value.node().as_date_time();
    if (!dateTime || !dateTime->get().offset)
        return instantOf(writtenTime(value, TimeForm::WithDay), zone);
    const DateComponents parts = partsOf(dateTime->get(), value, TimeForm::WithDay);
    const std::int64_t days = dayOf(parts) - absl::CivilDay(1970);
    return {static_cast<double>(days * 86400 + secondsOfDay(parts) -
                                std::int64_t{dateTime->get().offset->minutes} * 60)};
}

std::string localText(const DateComponents& parts) {
    return dayText(parts) + "T" + timeText(parts);
}

} // namespace noctara
