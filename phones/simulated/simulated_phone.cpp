#include "phones/simulated/simulated_phone.h"

#include "host/host.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace noctara {

namespace {

constexpr double never = std::numeric_limits<double>::infinity();

class StartedThread final : public Thread {};

/// What the library keeps for the life of its process ends with the process.
void endProcess() {
    delete NoctaraInstance;
    NoctaraInstance = nullptr;
    orig_SpringBoard_applicationDidFinishLaunching = nullptr;
    orig_SBUIController_ACPowerChanged = nullptr;
    root_port = 0;
    registeredRunLoop = nullptr;
    cachedMGGetBoolAnswer = nullptr;
    settingsNotificationToken = 0;
    processPlatform = nullptr;
}

} // namespace

/// While it lives, the monitor thread has control.
class SimulatedPhone::Handover {
public:
    explicit Handover(SimulatedPhone& simulatedPhone) : phone(simulatedPhone) { set(true); }
    ~Handover() { set(false); }
    Handover(const Handover&) = delete;
    Handover& operator=(const Handover&) = delete;

private:
    void set(bool toMonitor) {
        phone.monitorHasControl = toMonitor;
        phone.recorder.onMainThread = !toMonitor;
    }

    SimulatedPhone& phone;
};

SimulatedPhone::SimulatedPhone(const Scenario& scenario, std::unique_ptr<FileStore> store) :
    PhoneModel(scenario, std::move(store)), services{process, process, *this,        *this,  *this,
                                                     files,   process, power,        power,  power,
                                                     motion,  process, applications, radios, radios,
                                                     radios,  radios,  radios,       radios, device,
                                                     device,  device} {
    processPlatform = &services;
}

SimulatedPhone::~SimulatedPhone() {
    monitorThread.reset();
    endProcess();
}

NoctaraThread* SimulatedPhone::monitor() const {
    return NoctaraInstance;
}

void SimulatedPhone::launch() {
    NoctaraInitialize();
    process.applicationDidFinishLaunching();
}

void SimulatedPhone::playUntil(Date date) {
    playLimit = std::max(date.secondsSince1970, clock.elapsedClock);
    advance(clock.elapsedClock);
    if (monitorThread && clock.elapsedClock < playLimit) {
        const Handover handover(*this);
        monitorThread->resume();
    }
    if (motion.readings < readingsWanted)
        advance(playLimit);
}

void SimulatedPhone::playReadings(int count) {
    readingsWanted = motion.readings + count;
    playUntil({end});
    readingsWanted = std::numeric_limits<int>::max();
}

void SimulatedPhone::playToTheEnd() {
    playUntil({end});
    monitorThread.reset();
    files.writeSystemFiles();
}

void SimulatedPhone::asMonitorThread(const std::function<void()>& work) {
    recorder.onMainThread = false;
    work();
    recorder.onMainThread = true;
}

std::int64_t SimulatedPhone::time() {
    noteLookAtClock();
    return static_cast<std::int64_t>(std::floor(clock.wall().secondsSince1970));
}

void SimulatedPhone::sleep(unsigned seconds) {
    recorder.call("sleep", {std::int64_t{seconds}});
    if (seconds == 0)
        return;
    noteWait();
    const double wakeUpAt = clock.elapsedClock + seconds;
    while (power.isAsleep() || clock.elapsedClock < wakeUpAt) {
        const double next = power.isAsleep() ? nextDue() : wakeUpAt;
        if (monitorHasControl && (next >= playLimit || motion.readings >= readingsWanted))
            monitorThread->park();
        else if (next < never)
            advance(next);
        else
            return;
    }
}

std::unique_ptr<Thread> SimulatedPhone::start(const char* name, std::function<void()> body) {
    recorder.call("NSThread start", {name});
    monitorThread = std::make_unique<HandedOverThread>(std::move(body));
    return std::make_unique<StartedThread>();
}

void SimulatedPhone::performOnMainThread(const char* selector, const std::function<void()>& work) {
    recorder.call("performSelectorOnMainThread:withObject:waitUntilDone:", {selector});
    const bool caller = std::exchange(recorder.onMainThread, true);
    work();
    recorder.onMainThread = caller;
}

void SimulatedPhone::sendACPowerChanged() {
    process.acPowerChanged(static_cast<Charger*>(&power));
}

void SimulatedPhone::stopMonitor() {
    if (auto* running = monitor())
        running->stop();
}

} // namespace noctara
