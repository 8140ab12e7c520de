/// The local times of a scenario and the instants that they denote.
#pragma once

#include "night/toml_reader.h"
#include "phones/model/local_time.h"
#include "platform/calendar.h"

#include <string>

namespace noctara {

/// A local time in whole seconds, with or without its day.
struct WrittenTime {
    DateComponents parts; ///< Without a day, its year, month and day have no meaning.
    bool hasDay = true;
    std::string place; ///< The file and position, or the option, for error messages.
};

enum class TimeForm { WithDay, DayOptional };

/// Throws BadInput for a value that is not such a time, and for years outside 1970 to 9999.
WrittenTime writtenTime(const TomlValue& value, TimeForm form);

/// As above, from the text of a command line option: "2014-03-01T22:30:00" or, if the day is
/// optional, "22:30:00". A space may replace the T; the seconds may be omitted.
WrittenTime writtenTime(const std::string& option, const std::string& text, TimeForm form);

/// The instant of a time that has a day: the earlier one if the clocks show that time twice. Throws
/// BadInput for a local time that the clocks skip.
Date instantOf(const WrittenTime& time, const TimeZone& zone);

/// As instantOf. A time without a day denotes its next occurrence at or after `from`.
Date instantOrNext(const WrittenTime& time, const TimeZone& zone, Date from);

/// The instant of a local date-time, or of a date-time with an offset from UTC.
Date instantOfAnyDateTime(const TomlValue& value, const TimeZone& zone);

/// In TOML's form: "2014-03-01T22:30:00".
std::string localText(const DateComponents& parts);

} // namespace noctara
