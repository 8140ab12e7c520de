/// The local times of a night, as the page's script takes them.
#pragma once

#include "night/trace.h"
#include "phones/model/local_time.h"

namespace noctara {

/// An array of [time, seconds, abbreviation]. From that time of the night on, local time in seconds
/// since 1970 is the time plus that number of seconds. Covers the times of the night between `from`
/// and `to`, during which the clock shows `base` plus the time, in seconds since 1970.
Json localTimesForPage(const TimeZone& zone, double base, double from, double to);

} // namespace noctara
