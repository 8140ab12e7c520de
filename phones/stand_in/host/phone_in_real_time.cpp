#include "phones/stand_in/host/phone_in_real_time.h"

#include "phones/stand_in/host/interruption.h"
#include "phones/stand_in/host/main_run_loop.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <ctime>

namespace noctara {

namespace {

/// Seconds of this machine after which the main thread looks whether something has become due that
/// it did not know of.
constexpr double longestWait = 0.1;

double monotonicClock() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

void waitOnThisMachine(double seconds) {
    const double whole = std::floor(seconds);
    timespec left = {static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9)};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

} // namespace

PhoneInRealTime::PhoneInRealTime(const Scenario& scenario, const std::filesystem::path& root,
                                 double secondsPerSecond) :
    InjectedPhone(scenario, root),
    speed(secondsPerSecond),
    begin(scenario.start.secondsSince1970),
    beginOnThisMachine(monotonicClock()) {}

double PhoneInRealTime::present() const {
    return begin + (monotonicClock() - beginOnThisMachine) * speed;
}

Date PhoneInRealTime::wallClock() const {
    return {present() + wallOffset};
}

void PhoneInRealTime::catchUp() {
    clock.elapsedClock = std::max(clock.elapsedClock, present());
    wallOffset = clock.wallOffset;
}

void PhoneInRealTime::monitorSleeps(unsigned seconds) {
    {
        const OnPhone inside(*this);
        recorder.call("sleep", {std::int64_t{seconds}});
    }
    if (seconds == 0)
        return;
    waitOnThisMachine(seconds / speed);
    std::unique_lock lock(mutex);
    phoneMayHaveWokenUp.wait(lock, [this] { return !power.isAsleep(); });
}

bool PhoneInRealTime::playToTheEnd() {
    for (;;) {
        enter();
        const double now = std::min(present(), end);
        advance(now);
        phoneMayHaveWokenUp.notify_all();
        // The clock may have passed the end meanwhile, with something still to come before it.
        const bool hasEnded = now >= end;
        if (hasEnded || interrupted()) {
            // Nobody else is to enter any more.
            files.writeSystemFiles();
            return hasEnded;
        }
        const double wait = std::min(nextDue(), end) - present();
        leave();
        mainRunLoop::runOnce(std::clamp(wait / speed, 0.0, longestWait));
    }
}

} // namespace noctara
