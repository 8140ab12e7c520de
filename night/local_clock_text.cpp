#include "night/local_clock_text.h"

#include <absl/time/time.h>
#include <fmt/format.h>

namespace noctara {

std::string timeText(const TimeZone& zone, Date date) {
    const auto parts = zone.components(date);
    return fmt::format("{:02}:{:02}:{:02}", parts.hour, parts.minute, parts.second);
}

std::string dayText(const TimeZone& zone, Date date) {
    const auto parts = zone.components(date);
    const auto midnight =
        absl::FromCivil(absl::CivilDay(parts.year, parts.month, parts.day), absl::UTCTimeZone());
    return absl::FormatTime("%A, %-d %B %Y", midnight, absl::UTCTimeZone());
}

} // namespace noctara
