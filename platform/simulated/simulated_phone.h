/// A phone that exists only here: a virtual clock, radios, files, applications and faults behind
/// the interfaces of `platform/`. It plays a night in milliseconds, the same way every time.
///
/// Two threads are at work, main and monitor, but never at once: the monitor runs until it sleeps;
/// all that is due by the time it wakes up then runs, in order, as the main thread's work. An
/// instant's events come before the monitor's own work at that instant. Nothing but sleep takes
/// time.
#pragma once

#include "platform/calendar.h"
#include "platform/clock.h"
#include "platform/platform.h"
#include "platform/simulated/handed_over_thread.h"
#include "platform/simulated/local_time.h"
#include "platform/simulated/recorder.h"
#include "platform/simulated/scenario.h"
#include "platform/simulated/simulated_applications.h"
#include "platform/simulated/simulated_device.h"
#include "platform/simulated/simulated_files.h"
#include "platform/simulated/simulated_motion.h"
#include "platform/simulated/simulated_power.h"
#include "platform/simulated/simulated_process.h"
#include "platform/simulated/simulated_radios.h"
#include "platform/threads.h"

#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

namespace noctara {

/// Where the settings file is on the phone.
extern const std::string simulatedSettingsPath;

/// The monitor goes round without ever waiting, which on a phone would burn a core.
class MonitorSpins : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class SimulatedPhone final : private Clock, private Calendar, private Threads {
public:
    /// Only one phone exists at a time: it is the process's platform. Its files are in memory
    /// unless another store is given.
    explicit SimulatedPhone(const Scenario& scenario,
                            std::unique_ptr<FileStore> files = makeMemoryFileStore());

    /// Ends the process on the phone, and with it all that the library keeps there.
    ~SimulatedPhone() override;

    SimulatedPhone(const SimulatedPhone&) = delete;
    SimulatedPhone& operator=(const SimulatedPhone&) = delete;

    /// To be called before the phone is launched; the observer must outlive the last play.
    void observe(PhoneObserver& observer) { recorder.add(observer); }

    /// Loads the library into the process; SpringBoard then finishes launching.
    void launch();

    /// Plays on until just before the monitor's work at `date`, by the clock that is never set.
    void playUntil(Date date);
    void playFor(double seconds) { playUntil({clock.elapsedClock + seconds}); }

    /// Plays on until the monitor has taken that many more readings, and drawn its conclusions.
    void playReadings(int count);

    /// Plays the rest of the scenario and ends the monitor thread wherever it waits.
    void playToTheEnd();

    /// Makes something happen now, as an event of the scenario would.
    void happens(const std::string& action, const PropertyList& value);

    /// Runs `work` as the monitor thread would.
    void asMonitorThread(const std::function<void()>& work);

    const Platform& platform() const { return services; }
    Date now() override { return clock.wall(); }
    const TimeZone& timeZone() const { return zone; }

    VirtualClock clock;
    Recorder recorder;
    SimulatedRadios radios;
    SimulatedFiles files;
    SimulatedApplications applications;
    SimulatedDevice device;
    SimulatedMotion motion;
    SimulatedPower power;
    SimulatedProcess process;

private:
    class Handover;

    std::int64_t time() override;
    void sleep(unsigned seconds) override;
    DateComponents components(Date date) override { return zone.components(date); }
    Date date(const DateComponents& components) override { return zone.date(components); }
    std::unique_ptr<Thread> start(const char* name, std::function<void()> body) override;
    bool isMainThread() override { return recorder.onMainThread; }
    void performOnMainThread(const char* selector, const std::function<void()>& work) override;

    double nextDue() const;
    void advance(double to);
    void runDue();

    /// Hands over to the main thread, which does nothing while the phone sleeps.
    void onMainThread(std::function<void()> work);
    void doWorkPutOff();

    void wakeUp();
    void switchByHand(const std::string& action, const PropertyList& value);
    void editFile(const std::string& path, const std::function<void(Dictionary&)>& edit);
    void announceSettings(const std::function<void(Dictionary&)>& edit);

    TimeZone zone;
    double end; ///< By the clock that is never set, as are all instants here.
    std::vector<Event> events;
    std::size_t nextEvent = 0;
    std::vector<std::function<void()>> workPutOff; ///< Until the phone wakes up.

    std::unique_ptr<HandedOverThread> monitor;
    bool monitorHasControl = false; ///< Else the caller of the phone's methods has it.
    double playLimit = std::numeric_limits<double>::infinity();
    int readingsWanted = std::numeric_limits<int>::max();
    int turnsWithoutWaiting = 0;

    Platform services;
};

} // namespace noctara
