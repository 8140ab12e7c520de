/// Local times as text for the user.
#pragma once

#include "phones/model/local_time.h"

#include <string>

namespace noctara {

/// "23:30:05", in the phone's time zone.
std::string timeText(const TimeZone& zone, Date date);

/// "Saturday, 1 March 2014".
std::string dayText(const TimeZone& zone, Date date);

} // namespace noctara
