/// Wake-ups of the sleeping phone, scheduled with the system (AppSupport).
///
/// The system lists them in
/// "/private/var/preferences/SystemConfiguration/com.apple.AutoWake.plist".
#pragma once

#include "platform/property_list.h"

#include <string>

namespace noctara {

class WakeScheduler {
public:
    virtual ~WakeScheduler() = default;

    /// Asks the system to wake the phone at `date` (`CPScheduleWakeAtDateWithIdentifier`).
    virtual void schedule(Date date, const std::string& identifier) = 0;

    /// Takes back the wake-up scheduled for `date` under `identifier`
    /// (`CPCancelWakeAtDateWithIdentifier`). `date` may also be the one that the system's list
    /// shows for it, which can lack the fraction of a second. Nothing happens when there is none.
    virtual void cancel(Date date, const std::string& identifier) = 0;
};

} // namespace noctara
