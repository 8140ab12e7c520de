#include "phones/stand_in/host/phone_in_real_time.h"

#include "phones/stand_in/host/interruption.h"
#include "phones/stand_in/host/main_run_loop.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <ctime>

namespace noctara {

namespace {

/// Seconds of this machine. The main thread looks at least this often for what is due, because
/// another thread can make something due earlier, such as a wake-up.
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

void PhoneInRealTime::catchUp() {
    clock.monotonic = std::max(clock.monotonic, present());
}

std::int64_t PhoneInRealTime::readTime() {
    const OnPhone inside(*this);
    const double now = clock.wall().secondsSince1970;
    return recorder.answer(Operation::time, static_cast<std::int64_t>(std::floor(now)));
}

Date PhoneInRealTime::readDate() {
    const OnPhone inside(*this);
    return {recorder.answer(Operation::date, clock.wall().secondsSince1970)};
}

void PhoneInRealTime::monitorSleeps(unsigned seconds) {
    {
        const OnPhone inside(*this);
        recorder.call(Operation::sleep, {std::int64_t{seconds}});
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
        // Use `now` and not the present, because what is due between the two has not happened yet.
        const bool hasEnded = now >= end;
        if (hasEnded || interrupted()) {
            // The phone is not left again, so that the monitor's next call blocks.
            files.writeSystemFiles();
            return hasEnded;
        }
        const double wait = std::min(nextDue(), end) - present();
        leave();
        mainRunLoop::runOnce(std::clamp(wait / speed, 0.0, longestWait));
    }
}

} // namespace noctara
