/// The time zones of this system.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace noctara {

/// The names of the IANA time zones. Empty if the system has no list of them.
std::vector<std::string> timeZoneNames();

/// What to write instead of a name that is not a time zone: the nearest name, or the zone of the
/// city of this name.
std::string adviceOnTimeZone(std::string_view name);

} // namespace noctara
