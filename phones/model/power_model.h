/// The power management of the simulated phone: the charger, idle sleep with its messages, and
/// scheduled wake-ups.
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

    /// Sends a power message to the registered callback, if its run loop source has been added.
    void sendMessage(std::uint32_t type);

    /// Writes the scheduled wake-ups into the dictionary of the system's list.
    void describeWakes(Dictionary& list) const;

    /// Adds a wake-up without a call of the monitor.
    void addWake(const Scenario::Wake& wake) { wakes.push_back(wake); }
    const std::vector<Scenario::Wake>& scheduledWakes() const { return wakes; }

    void plug(bool onCharger);
    bool isAsleep() const { return asleep; }

    /// Restarts the wait for idle sleep, after an action of the user or another event.
    void noteActivity();
    /// Wakes the phone if it is asleep.
    void wake();

    /// When `runDue` next has something to do, by the monotonic clock. Infinity when never.
    double nextDue() const;
    /// Removes the wake-ups that are due and wakes the phone. If none is due, the phone asks to
    /// start idle sleep.
    void runDue();

    bool registrationFails = false;

private:
    void askToSleep();

    const VirtualClock& clock;
    const Recorder& recorder;

    bool onAC;
    double idleSleep; ///< Seconds; 0: never.
    /// When the phone next asks to start idle sleep, by the monotonic clock. Infinity for never.
    double nextAsk = 0;
    bool asleep = false;
    std::vector<Scenario::Wake> wakes;

    PowerCallback listener = nullptr;
    bool listens = false;
    std::intptr_t lastNotification = 0;
    bool cancelled = false; ///< Whether the last message was cancelled.
};

} // namespace noctara
