/// Converts the local times of a night to JSON for the scripts of the pages.
#pragma once

#include "night/trace.h"
#include "phones/model/local_time.h"

namespace noctara {

/// Returns an array with one item [time, seconds, abbreviation] for each offset of the time zone
/// between `from` and `to`. Times are seconds since the start of the night. An item is valid from
/// its time on: the local time is then the time of the night plus `seconds`, in seconds since 1970.
/// At the time 0 the clock shows `base`, in seconds since 1970.
Json localTimesForPage(const TimeZone& zone, double base, double from, double to);

} // namespace noctara
