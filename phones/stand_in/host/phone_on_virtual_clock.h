/// The phone whose clock moves only while the monitor waits. It has two real threads, of which one
/// runs at a time. A night therefore takes seconds, and every run gives the same result.
#pragma once

#include "phones/stand_in/host/injected_phone.h"

#include <atomic>
#include <semaphore>
#include <string>

namespace noctara {

class PhoneOnVirtualClock final : public InjectedPhone {
public:
    using InjectedPhone::InjectedPhone;

    std::int64_t readTime() override;
    Date readDate() override { return clock.wall(); }
    void monitorStarts() override;
    void monitorBegins() override;
    void monitorEnds() override;
    void monitorSleeps(unsigned seconds) override;
    bool playToTheEnd() override;

private:
    /// The state of the monitor thread.
    enum class Thread { absent, waiting, running, ended };

    void waitForMainThread();
    void letMonitorRun();

    std::atomic<Thread> monitorThread = Thread::absent;
    std::binary_semaphore monitorMayRun{0};
    double wakeUpAt = 0;    ///< When the monitor's wait ends, by the monotonic clock.
    std::string whyItSpins; ///< Empty unless the monitor loops without waiting.
};

} // namespace noctara
