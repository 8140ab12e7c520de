#include "night/local_clock_text.h"

#include <date/date.h>
#include <fmt/format.h>

namespace noctara {

std::string timeText(const TimeZone& zone, Date date) {
    const auto parts = zone.components(date);
    return fmt::format("{:02}:{:02}:{:02}", parts.hour, parts.minute, parts.second);
}

std::string dayText(const TimeZone& zone, Date date) {
    const auto parts = zone.components(date);
    const auto day = date::year(parts.year) / parts.month / parts.day;
    return date::format("%A, ", date::sys_days(day)) + fmt::format("{} ", parts.day) +
           date::format("%B %Y", day);
}

} // namespace noctara
