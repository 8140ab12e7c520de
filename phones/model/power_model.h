/// Power of the simulated phone: the charger, idle sleep with its messages, and the wake-ups that
/// end it.
#pragma once

#include "phones/model/recorder.h"
#include "phones/model/scenario.h"
#include "platform/charger.h"
#include "platform/system_power.h"
#include "platform/wake_scheduler.h"

#include <vector>

namespace noctara {

class PowerModel final : public SystemPower, public WakeScheduler, public Charger {
public:
    PowerModel(const Scenario& scenario, const VirtualClock& phoneClock, const Recorder& calls);

    PowerConnection registerForSystemPower(PowerCallback callback,
                                           NotificationPortRef& port) override;
    RunLoopRef currentRunLoop() override;
    void addSource(RunLoopRef runLoop, NotificationPortRef port) override;
    void allowPowerChange(PowerConnection connection, std::intptr_t notification) override;
    void cancelPowerChange(PowerConnection connection, std::intptr_t notification) override;

    void schedule(Date date, const std::string& identifier) override;
    void cancel(Date date, const std::string& identifier) override;

    ObjectRef sharedController(ClassRef controllerClass) override;
    bool isOnAC(ObjectRef controller) override;

    /// Sends a power message to whoever listens.
    void sendMessage(std::uint32_t type);

    /// Brings the dictionary of the system's list of wake-ups up to date.
    void describeWakes(Dictionary& list) const;

    /// Adds a wake-up that is already in the list.
    void addWake(const Scenario::Wake& wake) { wakes.push_back(wake); }
    const std::vector<Scenario::Wake>& scheduledWakes() const { return wakes; }

    void plug(bool onCharger);
    bool isAsleep() const { return asleep; }

    /// The user, or the outside, is doing something: the wait for idle sleep starts anew.
    void noteActivity();
    /// Ends a sleep, if there is one.
    void wake();

    /// By the clock that is never set: when `runDue` next has something to do. Infinity when never.
    double nextDue() const;
    /// A wake-up that is due is taken off the list and ends a sleep; else the phone asks to sleep.
    void runDue();

    bool registrationFails = false;

private:
    void askToSleep();

    const VirtualClock& clock;
    const Recorder& recorder;

    bool onAC;
    double idleSleep; ///< Seconds; 0: never.
    double nextAsk;   ///< By the clock that is never set.
    bool asleep = false;
    std::vector<Scenario::Wake> wakes;

    PowerCallback listener = nullptr;
    bool listens = false;
    std::intptr_t lastNotification = 0;
    bool cancelled = false; ///< The answer to the last message.
};

} // namespace noctara
