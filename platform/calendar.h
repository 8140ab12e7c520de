/// The user's calendar, in the user's time zone.
#pragma once

#include "platform/property_list.h"

#include <cstdint>

namespace noctara {

/// A local date and time. Months and days count from 1.
struct DateComponents {
    std::int32_t year = 1970;
    std::int32_t month = 1;
    std::int32_t day = 1;
    std::int32_t hour = 0;
    std::int32_t minute = 0;
    std::int32_t second = 0;
};

class Calendar {
public:
    virtual ~Calendar() = default;

    virtual DateComponents components(Date date) = 0;

    /// The instant of a local date and time. An hour outside 0 to 23 carries over into neighbouring
    /// days. A local time that occurs twice means the later instant. A local time that a clock
    /// change skips is moved forward by the length of the change.
    virtual Date date(const DateComponents& components) = 0;
};

} // namespace noctara
