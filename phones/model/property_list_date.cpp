/// The dates of XML property lists.
#include "phones/model/property_list_date.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdio>

namespace noctara {

using std::chrono::days;
using std::chrono::hh_mm_ss;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;
using std::chrono::year_month_day;

namespace {

/// Takes a number of at most `digits` digits, and the character after it, from the start of a text.
std::optional<unsigned> takeNumber(std::string_view& text, std::ptrdiff_t digits, char after) {
    unsigned number = 0;
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    const std::ptrdiff_t length = parsed.ptr - text.data();
    if (length == 0 || length > digits || parsed.ptr == end || *parsed.ptr != after)
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(length) + 1);
    return number;
}

} // namespace

std::optional<std::int64_t> secondsOfDateText(std::string_view text) {
    const auto year = takeNumber(text, 4, '-');
    const auto month = takeNumber(text, 2, '-');
    const auto day = takeNumber(text, 2, 'T');
    const auto hour = takeNumber(text, 2, ':');
    const auto minute = takeNumber(text, 2, ':');
    const auto second = takeNumber(text, 2, 'Z');
    if (!year || !month || !day || !hour || !minute || !second || !text.empty())
        return std::nullopt;
    const year_month_day date{std::chrono::year(static_cast<int>(*year)),
                              std::chrono::month(*month), std::chrono::day(*day)};
    if (*year < 1 || !date.ok() || *hour > 23 || *minute > 59 || *second > 59)
        return std::nullopt;
    const auto time = std::chrono::hours(*hour) + std::chrono::minutes(*minute) + seconds(*second);
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
