/// The dates of XML property lists.
#include "phones/model/property_list_date.h"

#include <array>
#include <chrono>
#include <cstdio>

namespace noctara {

using std::chrono::days;
using std::chrono::hh_mm_ss;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;
using std::chrono::year_month_day;

std::optional<std::int64_t> secondsOfDateText(std::string_view text) {
    int year = 0;
    unsigned month = 0, day = 0, hour = 0, minute = 0, second = 0;
    int length = 0;
    const std::string terminated(text);
    const int fields = std::sscanf(terminated.c_str(), " %4d-%2u-%2uT%2u:%2u:%2uZ %n", &year,
                                   &month, &day, &hour, &minute, &second, &length);
    if (fields != 6 || static_cast<std::size_t>(length) != text.size())
        return std::nullopt;
    const year_month_day date{std::chrono::year(year), std::chrono::month(month),
                              std::chrono::day(day)};
    if (year < 1 || !date.ok() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    const auto time = std::chrono::hours(hour) + std::chrono::minutes(minute) + seconds(second);
    return (sys_days(date) + time).time_since_epoch().count();
}

std::string dateText(std::int64_t secondsSince1970) {
    const sys_seconds instant{seconds(secondsSince1970)};
    const auto midnight = std::chrono::floor<days>(instant);
    const year_month_day date(midnight);
    const hh_mm_ss time(instant - midnight);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}

} // namespace noctara
