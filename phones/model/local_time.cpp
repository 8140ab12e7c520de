/// Local time by the system's time zone tables.
#include "phones/model/local_time.h"

#include <date/tz.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace noctara {

namespace {

constexpr std::int64_t secondsPerDay = 86400;

/// No zone is, or ever was, a day or more away from UTC.
constexpr std::int64_t farthestOffset = secondsPerDay;

/// Further away from 1970 than this the clocks no longer change: the library's years end with
/// 32767.
constexpr std::int64_t farthestChange = 900'000'000'000;

/// The Gregorian calendar repeats itself after this many years, which are this many days.
constexpr std::int64_t yearsPerEra = 400;
constexpr std::int64_t daysPerEra = 146097;

/// Beyond it, a year does not fit the components any more.
constexpr double farthestDate = 3e16;

std::int64_t floorDivide(std::int64_t dividend, std::int64_t divisor) {
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

std::int64_t secondsOf(date::sys_seconds instant) {
    return instant.time_since_epoch().count();
}

std::int64_t wholeSeconds(Date date) {
    return static_cast<std::int64_t>(
        std::floor(std::fmin(std::fmax(date.secondsSince1970, -farthestDate), farthestDate)));
}

/// The months count from any January, the days from any first of a month.
std::int64_t localSeconds(const DateComponents& parts) {
    const std::int64_t months = std::int64_t{parts.year} * 12 + parts.month - 1;
    const std::int64_t year = floorDivide(months, 12);
    const std::int64_t era = floorDivide(year, yearsPerEra);
    const auto firstOfMonth =
        date::sys_days{date::year{static_cast<int>(year - era * yearsPerEra)} /
                       date::month{static_cast<unsigned>(months - year * 12 + 1)} / 1};
    const std::int64_t days =
        era * daysPerEra + firstOfMonth.time_since_epoch().count() + parts.day - 1;
    return days * secondsPerDay + std::int64_t{parts.hour} * 3600 +
           std::int64_t{parts.minute} * 60 + parts.second;
}

date::sys_days firstOfMarch(date::year year) {
    return year / date::March / 1;
}

/// The latest year in the tables whose days from March on fall on the same weekdays.
date::year likeYearInTables(date::year year) {
    const auto weekday = date::weekday{firstOfMarch(year)};
    date::year like{2036};
    while (date::weekday{firstOfMarch(like)} != weekday)
        --like;
    return like;
}

/// What holds at `instant`. The tables list yearly changes of the clocks only up to 2037; after
/// that the years repeat those in the tables that have the same weekdays.
date::sys_info infoAt(const date::time_zone& zone, date::sys_seconds instant) {
    const date::sys_seconds tablesEnd = date::sys_days{date::year{2038} / 1 / 1};
    const date::sys_seconds forever = date::sys_days{date::year::max() / date::December / 31};

    date::sys_info info = zone.get_info(instant);
    if (info.begin >= tablesEnd || info.end < forever)
        return info;
    if (instant < tablesEnd) {
        info.end = tablesEnd;
        return info;
    }

    auto year = date::year_month_day{date::floor<date::days>(instant)}.year();
    if (instant < firstOfMarch(year))
        --year;
    const auto shift = firstOfMarch(year) - firstOfMarch(likeYearInTables(year));
    info = zone.get_info(instant - shift);
    info.begin = std::max<date::sys_seconds>(info.begin + shift, firstOfMarch(year));
    info.end = std::min<date::sys_seconds>(info.end + shift, firstOfMarch(++year));
    info.begin = std::max(info.begin, tablesEnd);
    return info;
}

} // namespace

TimeZone::TimeZone(const std::string& name) : zone(date::locate_zone(name)), zoneName(name) {
    spanAt(0);
}

const TimeZone::Span& TimeZone::spanAt(std::int64_t instant) const {
    constexpr std::int64_t farthest = farthestChange + 2 * farthestOffset;
    instant = std::clamp(instant, -farthest, farthest);
    if (instant < lastSpan.begin || instant >= lastSpan.end) {
        const auto info = infoAt(*zone, date::sys_seconds{std::chrono::seconds{instant}});
        lastSpan = {secondsOf(info.begin), secondsOf(info.end), info.offset.count()};
    }
    return lastSpan;
}

DateComponents TimeZone::components(Date date) const {
    const std::int64_t instant = wholeSeconds(date);
    const std::int64_t local = instant + spanAt(instant).offset;
    const std::int64_t days = floorDivide(local, secondsPerDay);
    const std::int64_t era = floorDivide(days, daysPerEra);
    const date::year_month_day day{
        date::sys_days{date::days{static_cast<int>(days - era * daysPerEra)}}};
    const auto second = static_cast<std::int32_t>(local - days * secondsPerDay);

    DateComponents parts;
    parts.year = static_cast<std::int32_t>(static_cast<int>(day.year()) + era * yearsPerEra);
    parts.month = static_cast<std::int32_t>(static_cast<unsigned>(day.month()));
    parts.day = static_cast<std::int32_t>(static_cast<unsigned>(day.day()));
    parts.hour = second / 3600;
    parts.minute = second / 60 % 60;
    parts.second = second % 60;
    return parts;
}

TimeZone::Instants TimeZone::instants(const DateComponents& components) const {
    const std::int64_t local = localSeconds(components);

    // Far from any change of the clocks the last span alone decides.
    const std::int64_t guess = local - lastSpan.offset;
    if (guess >= lastSpan.begin + 2 * farthestOffset && guess < lastSpan.end - 2 * farthestOffset)
        return {guess, guess, true};

    const std::int64_t nearLocal = std::clamp(local, -farthestChange, farthestChange);
    const std::int64_t beyond = local - nearLocal;
    Instants found{0, 0, false};
    std::int64_t movedOn = 0;
    for (std::int64_t at = nearLocal - farthestOffset; at <= nearLocal + farthestOffset;) {
        const Span& span = spanAt(at);
        const std::int64_t instant = nearLocal - span.offset;
        if (instant >= span.end)
            movedOn = instant + beyond;
        else if (instant >= span.begin)
            found = {found.exist ? found.first : instant + beyond, instant + beyond, true};
        at = span.end;
    }
    return found.exist ? found : Instants{movedOn, movedOn, false};
}

Date TimeZone::date(const DateComponents& components) const {
    return {static_cast<double>(instants(components).last)};
}

Date TimeZone::firstDate(const DateComponents& components) const {
    return {static_cast<double>(instants(components).first)};
}

bool TimeZone::exists(const DateComponents& components) const {
    return instants(components).exist;
}

} // namespace noctara
