/// The phone whose clock moves only while the monitor waits. Its two threads are real ones, of
/// which one runs at a time, so that a night takes seconds and comes out the same every time.
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
    /// Where the monitor thread is.
    enum class Thread { absent, waiting, running, ended };

    void waitForMainThread();
    void letMonitorRun();

    std::atomic<Thread> monitorThread = Thread::absent;
    std::binary_semaphore monitorMayRun{0};
    double wakeUpAt = 0;    ///< When the monitor's wait ends, by the monotonic clock.
    std::string whyItSpins; ///< Empty as long as the monitor waits now and then.
};

} // namespace noctara
