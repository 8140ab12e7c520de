/// The phone with the library injected into a process of its own, this one: the same phone as the
/// simulated one, asked through real classes, functions and run loops instead of interfaces.
///
/// How time passes is left to `PhoneOnVirtualClock` and `PhoneInRealTime`.
#pragma once

#include "phones/model/phone_model.h"
#include "phones/stand_in/stand_in_phone.h"

#include <filesystem>
#include <mutex>
#include <thread>

namespace noctara {

class InjectedPhone : public PhoneModel, public StandInPhone {
public:
    /// The phone's files are real ones below `root`. To be made on the main thread; there is one
    /// at a time, it is the phone of this process, and it must not end before the process does.
    InjectedPhone(const Scenario& scenario, const std::filesystem::path& root);

    /// Where a file of the phone's is on this machine.
    std::filesystem::path placeOf(const std::string& pathOnPhone) const;

    // StandInPhone.
    const StandInServices& enter() override;
    void leave() override;
    void performOnMainRunLoop(const std::function<void()>& work) override;

    /// The wall clock as the library reads it, by `time` and by `+[NSDate date]`. Any thread.
    virtual std::int64_t readTime() = 0;
    virtual Date readDate() = 0;

    // What the monitor thread does: main thread starts it, and all else is called by itself.
    virtual void monitorStarts() {}
    virtual void monitorBegins() {}
    virtual void monitorEnds() {}
    virtual void monitorSleeps(unsigned seconds) = 0;

    /// Plays the scenario to the end, once SpringBoard has launched. Main thread. False when it was
    /// interrupted. Throws MonitorSpins, if it is the phone that moves the clock. The process is
    /// then to end without delay.
    virtual bool playToTheEnd() = 0;

protected:
    /// Sets the model's clock to the present. Called when a thread enters or leaves the phone.
    virtual void catchUp() {}

    /// Does `work` with the phone left, for others to enter it. Main thread.
    void performOutside(const std::function<void()>& work);

    std::recursive_mutex mutex; ///< Held by whoever is inside.

private:
    void sendACPowerChanged() override;
    void stopMonitor() override;

    const std::filesystem::path rootFolder;
    const StandInServices services;
    const std::thread::id mainThread = std::this_thread::get_id();
    int depth = 0; ///< Of nested entries. Guarded by `mutex`.
};

/// The phone for the length of a call by a part of this process.
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
