/// The phone that exists only here: radios, files, applications, power and faults, and what happens
/// to them at which instant. Whoever runs the monitor on it says how time passes: the simulated
/// phone does, with the monitor linked into the same program, and so does the stand-in phone, with
/// the library loaded into a process of its own.
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

class NoctaraThread;

/// Where the settings file is on the phone.
extern const std::string settingsFilePath;

/// The monitor goes round without ever waiting, which on a phone would burn a core.
class MonitorSpins : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class PhoneModel {
public:
    virtual ~PhoneModel() = default;
    PhoneModel(const PhoneModel&) = delete;
    PhoneModel& operator=(const PhoneModel&) = delete;

    /// To be called before the phone is launched; the observer must outlive the last play.
    void observe(PhoneObserver& observer) { recorder.add(observer); }

    /// Makes something happen now, as an event of the scenario would.
    void happens(const std::string& action, const PropertyList& value);

    const TimeZone& timeZone() const { return zone; }

    /// The monitor that runs on this phone; null while there is none.
    virtual NoctaraThread* monitor() const = 0;

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

    /// SpringBoard notices a change of the charger.
    virtual void sendACPowerChanged() = 0;

    /// Lets the monitor end, if there is one.
    virtual void stopMonitor() = 0;

    /// By the clock that is never set: when the next thing is due. Infinity when nothing is.
    double nextDue() const;

    /// Moves the clock, running all that is due on the way as the main thread's work, the last
    /// instant included.
    void advance(double to);

    /// To be called at every look of the monitor at the clock. Throws MonitorSpins when there have
    /// been too many since it last waited.
    void noteLookAtClock();
    void noteWait() { looksWithoutWaiting = 0; }

    const double end; ///< Of the scenario, by the clock that is never set.

private:
    void runDue();

    /// Hands over to the main thread, which does nothing while the phone sleeps.
    void onMainThread(std::function<void()> work);
    void doWorkPutOff();

    void wakeUp();
    void switchByHand(const std::string& action, const PropertyList& value);
    void editFile(const std::string& path, const std::function<void(Dictionary&)>& edit);
    void announceSettings(const std::function<void(Dictionary&)>& edit);

    TimeZone zone;
    std::vector<Event> events;
    std::size_t nextEvent = 0;
    std::vector<std::function<void()>> workPutOff; ///< Until the phone wakes up.
    int looksWithoutWaiting = 0;
};

} // namespace noctara
