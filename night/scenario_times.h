/// The local times of a scenario: as they are written, and the instants that they mean.
#pragma once

#include "night/toml_reader.h"
#include "phones/model/local_time.h"
#include "platform/calendar.h"

#include <string>

namespace noctara {

/// A local time in whole seconds, with or without its day.
struct WrittenTime {
    DateComponents parts; ///< Without a day, its year, month and day say nothing.
    bool hasDay = true;
    std::string place; ///< Where it stands, for messages.
};

enum class TimeForm { WithDay, DayOptional };

/// Throws BadInput for what is no such time, and for years outside 1970 to 2067 (later dates do not
/// fit property-list files).
WrittenTime writtenTime(const TomlValue& value, TimeForm form);

/// As above, of the text of a command line option: "2014-03-01T22:30:00" or, with the day optional,
/// "22:30:00"; a space may stand for the T, and the seconds may be left out.
WrittenTime writtenTime(const std::string& option, const std::string& text, TimeForm form);

/// The instant of a time with its day; of one that the clocks repeat the earlier. Throws BadInput
/// for one that the clocks skip.
Date instantOf(const WrittenTime& time, const TimeZone& zone);

/// The same; without a day, the next such time that is not before `from`.
Date instantOrNext(const WrittenTime& time, const TimeZone& zone, Date from);

/// An instant that the file gives as a local date-time, or one with an offset from UTC.
Date instantOfAnyDateTime(const TomlValue& value, const TimeZone& zone);

/// As TOML writes it: "2014-03-01T22:30:00".
std::string localText(const DateComponents& parts);

} // namespace noctara
