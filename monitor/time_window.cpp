/// The nightly time window, in whole hours, and the wake-up that lets the monitor run while the
/// phone sleeps.
#include "monitor/description.h"
#include "monitor/noctara_thread.h"
#include "platform/calendar.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/wake_scheduler.h"

namespace noctara {

namespace {

// Created once, because every cycle uses them. Never destroyed, because the monitor thread runs
// until the process ends.
const std::string& wakeListPath =
    *new std::string("/private/var/preferences/SystemConfiguration/com.apple.AutoWake.plist");
const std::string& wakeIdentifier = *new std::string("com.quorbit.Noctara");

constexpr double wakeDistance = 900.0;

/// The time of a wake-up in the system's list. Null if another program scheduled it, or if it has
/// no date and so cannot be cancelled.
const Date* ownWakeTime(const PropertyList& entry) {
    const auto* wake = entry.as<Dictionary>();
    const auto* scheduledBy = wake ? wake->find("scheduledby") : nullptr;
    const auto* identifier = scheduledBy ? scheduledBy->as<std::string>() : nullptr;
    if (!identifier || *identifier != wakeIdentifier)
        return nullptr;
    const auto* time = wake->find("time");
    return time ? time->as<Date>() : nullptr;
}

} // namespace

bool NoctaraThread::isInTimeRange() {
    const Date now = platform.clock->now();
    DateComponents parts = platform.calendar->components(now);
    parts.minute = 0;
    parts.second = 0;

    // Both ends are on the current day. A window across midnight is its evening and its morning.
    parts.hour = startTime;
    const Date start = platform.calendar->date(parts);
    if (_DEBUG_)
        debugLog("Now=%s, StartDate=%s", description(now).c_str(), description(start).c_str());
    const std::int32_t stopHour = stopTime;
    const bool acrossMidnight = stopHour < startTime;
    if (acrossMidnight && now > start)
        return true;
    if (!acrossMidnight && now < start)
        return false;

    parts.hour = stopHour;
    const Date stop = platform.calendar->date(parts);
    if (_DEBUG_)
        debugLog("Now=%s, StopDate=%s", description(now).c_str(), description(stop).c_str());
    return now <= stop;
}

void NoctaraThread::awakeApp() {
    const Date wakeDate{platform.clock->now().secondsSince1970 + wakeDistance};
    std::string error;
    const auto list = platform.files->parse(wakeListPath, error);
    if (!list) {
        debugLog("Failed to read dict %s", error.c_str());
        return;
    }

    const auto* dictionary = list->as<Dictionary>();
    const auto* scheduled = dictionary ? dictionary->find("wake") : nullptr;
    if (const auto* wakes = scheduled ? scheduled->as<Array>() : nullptr)
        for (const auto& wake : *wakes)
            if (const Date* time = ownWakeTime(wake)) {
                if (_DEBUG_)
                    debugLog("Noctara Cancelling previous wake at %s", description(*time).c_str());
                platform.wakes->cancel(*time, wakeIdentifier);
            }
    platform.wakes->schedule(wakeDate, wakeIdentifier);
}

} // namespace noctara
