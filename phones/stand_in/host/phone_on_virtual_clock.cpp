#include "phones/stand_in/host/phone_on_virtual_clock.h"

#include "phones/stand_in/host/interruption.h"
#include "phones/stand_in/host/main_run_loop.h"

#include <cmath>

namespace noctara {

namespace {

/// Seconds. The monitor wakes the main run loop, so this wait needs no limit.
constexpr double aLongTime = 1e6;

} // namespace

void PhoneOnVirtualClock::monitorStarts() {
    wakeUpAt = clock.monotonic;
    monitorThread = Thread::waiting;
}

void PhoneOnVirtualClock::monitorBegins() {
    monitorMayRun.acquire();
}

void PhoneOnVirtualClock::monitorEnds() {
    monitorThread = Thread::ended;
    mainRunLoop::wake();
}

std::int64_t PhoneOnVirtualClock::readTime() {
    try {
        noteClockRead();
    } catch (const MonitorSpins& spins) {
        // The main thread ends the night, and this thread does not run again.
        whyItSpins = spins.what();
        waitForMainThread();
    }
    return static_cast<std::int64_t>(std::floor(clock.wall().secondsSince1970));
}

void PhoneOnVirtualClock::monitorSleeps(unsigned seconds) {
    {
        const OnPhone inside(*this);
        recorder.call(Operation::sleep, {std::int64_t{seconds}});
        if (seconds == 0)
            return;
        noteWait();
        wakeUpAt = clock.monotonic + seconds;
    }
    waitForMainThread();
}

void PhoneOnVirtualClock::waitForMainThread() {
    monitorThread = Thread::waiting;
    mainRunLoop::wake();
    monitorMayRun.acquire();
}

void PhoneOnVirtualClock::letMonitorRun() {
    monitorThread = Thread::running;
    monitorMayRun.release();
    while (monitorThread == Thread::running)
        mainRunLoop::runOnce(aLongTime);
    if (!whyItSpins.empty())
        throw MonitorSpins(whyItSpins);
}

bool PhoneOnVirtualClock::playToTheEnd() {
    // From here on the main thread leaves the phone only in two cases: the monitor runs, or the
    // main run loop delivers something to the library.
    const OnPhone inside(*this);
    advance(clock.monotonic);
    while (!interrupted() && monitorThread == Thread::waiting && moveToWakeUp(wakeUpAt, end))
        performOutside([this] { letMonitorRun(); });
    const bool ends = !interrupted();
    if (ends)
        advance(end);
    files.writeSystemFiles();
    return ends;
}

} // namespace noctara
