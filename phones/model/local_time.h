/// Local time in the time zones of the world, so that a simulated night has real changes of the
/// clocks.
#pragma once

#include "platform/calendar.h"

#include <cstdint>
#include <string>

namespace date {
class time_zone;
}

namespace noctara {

/// An IANA time zone. Calls remember where the last one looked, so an object belongs to one thread.
class TimeZone {
public:
    /// Throws std::runtime_error when the system knows no zone of this name.
    explicit TimeZone(const std::string& name);

    /// The parts of the second in which `date` lies. A date beyond a thousand million years is
    /// taken for that limit, not-a-number for the earliest date.
    DateComponents components(Date date) const;

    /// As Calendar::date. Parts of any size carry over.
    Date date(const DateComponents& components) const;

    /// As `date`, but of a local time that occurs twice the earlier instant.
    Date firstDate(const DateComponents& components) const;

    /// False for a local time that a change of the clocks skips.
    bool exists(const DateComponents& components) const;

    const std::string& name() const { return zoneName; }

private:
    /// A stretch of time in which the offset from UTC does not change. In seconds since 1970.
    struct Span {
        std::int64_t begin = 0;
        std::int64_t end = 0; ///< The first second that no longer belongs to it.
        std::int64_t offset = 0;
    };

    /// The instants that a local time may mean; the same one twice when it is unambiguous.
    struct Instants {
        std::int64_t first = 0;
        std::int64_t last = 0;
        bool exist = true; ///< False: skipped, and both are moved on by the gap.
    };

    const Span& spanAt(std::int64_t instant) const;
    Instants instants(const DateComponents& components) const;

    const date::time_zone* zone;
    std::string zoneName;
    mutable Span lastSpan;
};

} // namespace noctara
