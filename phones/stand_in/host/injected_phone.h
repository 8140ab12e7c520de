/// The phone of this process, into which the library is injected. It is the same model as the
/// simulated phone, but the library reaches it through real classes, functions and run loops.
///
/// `PhoneOnVirtualClock` and `PhoneInRealTime` define how time passes.
#pragma once

#include "phones/model/phone_model.h"
#include "phones/stand_in/stand_in_phone.h"

#include <filesystem>
#include <mutex>
#include <thread>

namespace noctara {

class InjectedPhone : public PhoneModel, public StandInPhone {
public:
    /// The phone's files are real files below `root`. Create it on the main thread. A process has
    /// one phone, which must exist until the process ends.
    InjectedPhone(const Scenario& scenario, const std::filesystem::path& root);

    /// The place on this machine of a file of the phone.
    std::filesystem::path placeOf(const std::string& pathOnPhone) const;

    // StandInPhone.
    const StandInServices& enter() override;
    void leave() override;
    void performOnMainRunLoop(const std::function<void()>& work) override;

    /// The wall clock as the library reads it, by `time` and by `+[NSDate date]`. Any thread.
    virtual std::int64_t readTime() = 0;
    virtual Date readDate() = 0;

    // The steps of the monitor thread. The main thread calls the first function, and the monitor
    // thread calls the others.
    virtual void monitorStarts() {}
    virtual void monitorBegins() {}
    virtual void monitorEnds() {}
    virtual void monitorSleeps(unsigned seconds) = 0;

    /// Plays the scenario to the end. Call it on the main thread when SpringBoard has launched.
    /// False if the night was interrupted. On the virtual clock it throws MonitorSpins; the process
    /// should then end at once.
    virtual bool playToTheEnd() = 0;

protected:
    /// Sets the model's clock to the present. Called when a thread enters or leaves the phone.
    virtual void catchUp() {}

    /// Leaves the phone, runs `work` and enters the phone again. Others can enter it meanwhile.
    /// Main thread.
    void performOutside(const std::function<void()>& work);

    std::recursive_mutex mutex; ///< Held by the thread that has entered.

private:
    void sendACPowerChanged() override;
    void stopMonitor() override;

    const std::filesystem::path rootFolder;
    const StandInServices services;
    const std::thread::id mainThread = std::this_thread::get_id();
    int depth = 0; ///< Of nested entries. Guarded by `mutex`.
};

/// Enters the phone for the lifetime of the object.
class OnPhone {
public:
    explicit OnPhone(InjectedPhone& entered) : phone(entered) { phone.enter(); }
    ~OnPhone() { phone.leave(); }
    OnPhone(const OnPhone&) = delete;
    OnPhone& operator=(const OnPhone&) = delete;

    InjectedPhone* operator->() const { return &phone; }

private:
    InjectedPhone& phone;
};

/// The phone of this process; null before there is one.
extern InjectedPhone* injectedPhone;

} // namespace noctara
