/// The phone with the monitor linked into the same program: it plays a night in milliseconds, the
/// same way every time.
///
/// Two threads are at work, main and monitor, but never at once: the monitor runs until it sleeps;
/// all that is due by the time it wakes up then runs, in order, as the main thread's work. An
/// instant's events come before the monitor's own work at that instant. Nothing but sleep takes
/// time.
#pragma once

#include "phones/model/phone_model.h"
#include "phones/simulated/handed_over_thread.h"
#include "platform/calendar.h"
#include "platform/clock.h"
#include "platform/platform.h"
#include "platform/threads.h"

#include <functional>
#include <limits>
#include <memory>

namespace noctara {

class SimulatedPhone final : public PhoneModel, private Clock, private Calendar, private Threads {
public:
    /// Only one phone exists at a time: it is the process's platform. Its files are in memory
    /// unless another store is given.
    explicit SimulatedPhone(const Scenario& scenario,
                            std::unique_ptr<FileStore> files = makeMemoryFileStore());

    /// Ends the process on the phone, and with it all that the library keeps there.
    ~SimulatedPhone() override;

    /// Loads the library into the process; SpringBoard then finishes launching.
    void launch();

    /// Plays on until just before the monitor's work at `date`, by the clock that is never set.
    void playUntil(Date date);
    void playFor(double seconds) { playUntil({clock.elapsedClock + seconds}); }

    /// Plays on until the monitor has taken that many more readings, and drawn its conclusions.
    void playReadings(int count);

    /// Plays the rest of the scenario and ends the monitor thread wherever it waits.
    void playToTheEnd();

    /// Runs `work` as the monitor thread would.
    void asMonitorThread(const std::function<void()>& work);

    const Platform& platform() const { return services; }
    Date now() override { return clock.wall(); }
    NoctaraThread* monitor() const override;

private:
    class Handover;

    std::int64_t time() override;
    void sleep(unsigned seconds) override;
    DateComponents components(Date date) override { return timeZone().components(date); }
    Date date(const DateComponents& components) override { return timeZone().date(components); }
    std::unique_ptr<Thread> start(const char* name, std::function<void()> body) override;
    bool isMainThread() override { return recorder.onMainThread; }
    void performOnMainThread(const char* selector, const std::function<void()>& work) override;

    void sendACPowerChanged() override;
    void stopMonitor() override;

    std::unique_ptr<HandedOverThread> monitorThread;
    bool monitorHasControl = false; ///< Else the caller of the phone's methods has it.
    double playLimit = std::numeric_limits<double>::infinity();
    int readingsWanted = std::numeric_limits<int>::max();

    Platform services;
};

} // namespace noctara
