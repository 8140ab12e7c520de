#include "phones/stand_in/host/phone_on_virtual_clock.h"

#include "phones/stand_in/host/interruption.h"
#include "phones/stand_in/host/main_run_loop.h"

namespace noctara {

namespace {

/// Seconds to wait for the monitor before looking again; it says when there is something to see.
constexpr double aLongTime = 1e6;

} // namespace

void PhoneOnVirtualClock::monitorStarts() {
    wakeUpAt = clock.elapsedClock;
    monitorThread = Thread::waiting;
}

void PhoneOnVirtualClock::monitorBegins() {
    monitorMayRun.acquire();
}

void PhoneOnVirtualClock::monitorEnds() {
    monitorThread = Thread::ended;
    mainRunLoop::wake();
}

void PhoneOnVirtualClock::monitorLooksAtClock() {
    try {
        noteLookAtClock();
    } catch (const MonitorSpins& spins) {
        whyItSpins = spins.what();
        waitForMainThread();
    }
}

void PhoneOnVirtualClock::monitorSleeps(unsigned seconds) {
    {
        const OnPhone inside(*this);
        recorder.call("sleep", {std::int64_t{seconds}});
        if (seconds == 0)
            return;
        noteWait();
        wakeUpAt = clock.elapsedClock + seconds;
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

/// False when the scenario ends before the monitor wakes up.
bool PhoneOnVirtualClock::moveToWakeUp() {
    while (power.isAsleep() || clock.elapsedClock < wakeUpAt) {
        const double next = power.isAsleep() ? nextDue() : wakeUpAt;
        if (next >= end)
            return false;
        advance(next);
    }
    return true;
}

bool PhoneOnVirtualClock::playToTheEnd() {
    // From here on the phone is left only for the monitor, and for what is delivered to it.
    const OnPhone inside(*this);
    advance(clock.elapsedClock);
    while (!interrupted() && monitorThread == Thread::waiting && moveToWakeUp())
        performOutside([this] { letMonitorRun(); });
    const bool ends = !interrupted();
    if (ends)
        advance(end);
    files.writeSystemFiles();
    return ends;
}

} // namespace noctara
