/// A phone with the monitor linked into the same program. It plays a night in milliseconds and
/// deterministically.
///
/// There are two threads, main and monitor, which never run at the same time. The monitor runs
/// until it sleeps. Everything that is due until the end of its sleep then runs, in order, as work
/// of the main thread. Events come before the monitor's work at the same instant. Only sleep takes
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
    /// Sets the process's platform, so only one phone can exist at a time. The files are in memory
    /// unless another store is given.
    explicit SimulatedPhone(const Scenario& scenario,
                            std::unique_ptr<FileStore> files = makeMemoryFileStore());

    /// Ends the monitor thread and resets the library's process-wide state.
    ~SimulatedPhone() override;

    /// Calls the library's load-time routine. SpringBoard then finishes launching.
    void launch();

    /// Plays on until just before the monitor's work at `date`, by the monotonic clock.
    void playUntil(Date date);
    void playFor(double seconds) { playUntil({clock.monotonic + seconds}); }

    /// Plays until the monitor has taken that many more readings and acted on them.
    void playReadings(int count);

    /// Plays the rest of the scenario. Ends the monitor thread even if it is in a wait.
    void playToTheEnd();

    /// Ends the scenario here, before its end. Nothing can be played after that.
    void endHere();

    /// Runs `work` as the monitor thread.
    void asMonitorThread(const std::function<void()>& work);

    const Platform& platform() const { return services; }
    Date now() override { return clock.wall(); }

private:
    class Handover;

    std::int64_t time() override;
    void sleep(unsigned seconds) override;
    DateComponents components(Date date) override { return timeZone().components(date); }
    Date date(const DateComponents& components) override { return timeZone().date(components); }
    std::unique_ptr<Thread> start(const char* name, std::function<void()> body) override;
    bool isMainThread() override { return recorder.onMainThread; }
    void performOnMainThread(const char* selector, const std::function<void()>& work) override;

    /// The instant before which the clock stays while the monitor waits; minus infinity when it
    /// does not move at all.
    double limitOfMove() const;

    void sendACPowerChanged() override;
    void stopMonitor() override;

    std::unique_ptr<HandedOverThread> monitorThread;
    bool monitorHasControl = false; ///< False: the caller of the phone's methods has it.
    double playLimit = std::numeric_limits<double>::infinity();
    int readingsWanted = std::numeric_limits<int>::max();

    Platform services;
};

} // namespace noctara
