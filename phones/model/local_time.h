/// Local time in IANA time zones.
#pragma once

#include "platform/calendar.h"

#include <absl/time/time.h>

#include <cstdint>
#include <string>
#include <vector>

namespace noctara {

/// The difference between local time and UTC from an instant on.
struct LocalOffset {
    Date from;
    std::int32_t seconds;     ///< East of UTC is positive.
    std::string abbreviation; ///< Such as "CET".
};

/// An IANA time zone.
class TimeZone {
public:
    /// Throws std::runtime_error if the system has no zone of this name.
    explicit TimeZone(const std::string& name);

    /// The local time at `date`, rounded down to a second. Dates are clamped to about 950 million
    /// years before and after 1970. NaN becomes the earliest date.
    DateComponents components(Date date) const;

    /// As Calendar::date. Parts of any size carry over into the larger ones.
    Date date(const DateComponents& components) const;

    /// As `date`, but the earlier instant of a local time that occurs twice.
    Date firstDate(const DateComponents& components) const;

    /// False for a local time that a clock change skips.
    bool exists(const DateComponents& components) const;

    /// The offsets between two dates, in order. The first one begins at `first`.
    std::vector<LocalOffset> offsets(Date first, Date last) const;

    std::string name() const { return zone.name(); }

private:
    absl::TimeZone zone;
};

} // namespace noctara
