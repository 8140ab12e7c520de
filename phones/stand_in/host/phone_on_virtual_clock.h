/// The phone whose clock moves only when the monitor waits: real threads, handed over one at a
/// time, so that a night takes seconds and comes out the same every time.
#pragma once

#include "phones/stand_in/host/injected_phone.h"

#include <atomic>
#include <semaphore>
#include <string>

namespace noctara {

class PhoneOnVirtualClock final : public InjectedPhone {
public:
    using InjectedPhone::InjectedPhone;

    Date wallClock() const override { return clock.wall(); }
    void monitorStarts() override;
    void monitorBegins() override;
    void monitorEnds() override;
    void monitorLooksAtClock() override;
    void monitorSleeps(unsigned seconds) override;
    bool playToTheEnd() override;

private:
    /// Where the monitor thread is.
    enum class Thread { absent, waiting, running, ended };

    void waitForMainThread();
    void letMonitorRun();
    bool moveToWakeUp();

    std::atomic<Thread> monitorThread = Thread::absent;
    std::binary_semaphore monitorMayRun{0};
    double wakeUpAt = 0;    ///< Of the waiting monitor, by the clock that is never set.
    std::string whyItSpins; ///< Empty while it does not.
};

} // namespace noctara
