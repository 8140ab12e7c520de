/// The model of a phone: its radios, files, applications, power and faults, and the events of a
/// scenario. Derived classes run the monitor and decide how time passes. SimulatedPhone has the
/// monitor linked into the same program. The stand-in phone loads the library into a process.
#pragma once

#include "phones/model/applications_model.h"
#include "phones/model/device_model.h"
#include "phones/model/file_store.h"
#include "phones/model/files_model.h"
#include "phones/model/local_time.h"
#include "phones/model/motion_model.h"
#include "phones/model/power_model.h"
#include "phones/model/process_model.h"
#include "phones/model/radios_model.h"
#include "phones/model/recorder.h"
#include "phones/model/scenario.h"
#include "phones/model/virtual_clock.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace noctara {

/// The path of the settings file on the phone.
extern const std::string settingsFilePath;

/// The monitor loops without waiting, which would use all the time of a processor core.
class MonitorSpins : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class PhoneModel {
public:
    virtual ~PhoneModel() = default;
    PhoneModel(const PhoneModel&) = delete;
    PhoneModel& operator=(const PhoneModel&) = delete;

    /// Call it before the phone is launched. The observer must live until the phone has been played
    /// to its end.
    void observe(PhoneObserver& observer) { recorder.add(observer); }

    /// Makes an event happen now.
    void happens(const Event& event);

    const TimeZone& timeZone() const { return zone; }

    VirtualClock clock;
    Recorder recorder;
    RadiosModel radios;
    FilesModel files;
    ApplicationsModel applications;
    DeviceModel device;
    MotionModel motion;
    PowerModel power;
    ProcessModel process;

protected:
    PhoneModel(const Scenario& scenario, std::unique_ptr<FileStore> store);

    /// Sends ACPowerChanged to SpringBoard's controller.
    virtual void sendACPowerChanged() = 0;

    /// Calls the monitor's `stop`, if there is a monitor.
    virtual void stopMonitor() = 0;

    /// When the next thing is due, by the monotonic clock. Infinity when nothing is.
    double nextDue() const;

    /// Moves the monotonic clock to `to`. Runs everything that is due up to and including `to`, in
    /// order, as work of the main thread.
    void advance(double to);

    /// Moves the clock on for a monitor that waits until `wakeUpAt`, running all that is due on the
    /// way. No thread runs while the phone sleeps: the wait then lasts until it has woken up. False
    /// when that is not before `limit`; the clock then stands before the first move that would
    /// reach it, and the wait can be taken up again.
    bool moveToWakeUp(double wakeUpAt, double limit);

    /// To be called at every look of the monitor at the clock. Throws MonitorSpins when there have
    /// been too many since it last waited.
    void noteClockRead();
    void noteWait() { readsWithoutWaiting = 0; }

    const double end; ///< Of the scenario, by the monotonic clock.

private:
    struct Effect;

    void runDue();

    /// Runs work as the main thread: at once, or after waking up if the phone is asleep.
    void onMainThread(std::function<void()> work);
    void runPendingWork();

    void wakeUp();
    void editFile(const std::string& path, const std::function<void(Dictionary&)>& edit);
    void announceSettings(const std::function<void(Dictionary&)>& edit);

    TimeZone zone;
    std::vector<ScheduledEvent> events;
    std::size_t nextEvent = 0;
    std::vector<std::function<void()>> pendingWork; ///< Until the phone wakes up.
    int readsWithoutWaiting = 0;
};

} // namespace noctara
