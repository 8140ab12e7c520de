#include "platform/simulated/simulated_phone.h"

#include "host/host.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace noctara {

namespace {

constexpr double never = std::numeric_limits<double>::infinity();

/// More looks at the clock than any cycle of the monitor takes.
constexpr int mostTurnsWithoutWaiting = 10000;

const std::string pushPath =
    "/private/var/mobile/Library/Preferences/com.apple.persistentconnection-mcc.plist";

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
    clock{scenario.start.secondsSince1970, 0},
    recorder(clock),
    radios(scenario, recorder),
    files(std::move(store), recorder),
    applications(scenario, recorder),
    device(scenario, recorder),
    motion(scenario.phone.deviceMotion, recorder),
    power(scenario, clock, recorder),
    process(scenario, recorder),
    zone(scenario.timezone),
    end(scenario.end.secondsSince1970),
    events(scenario.events),
    services{process, process, *this,  *this,   *this,        files,  process, power,
             power,   power,   motion, process, applications, radios, radios,  radios,
             radios,  radios,  radios, device,  device,       device} {
    motion.setPosture(scenario.phone.posture);
    if (scenario.settings && !files.isThere(simulatedSettingsPath))
        files.writeByOthers(simulatedSettingsPath, *scenario.settings);

    files.keepUpToDate(
        "/var/preferences/SystemConfiguration/com.apple.radios.plist",
        [this](Dictionary& file) { file.set("AirplaneMode", radios.states().airplane); });
    files.keepUpToDate(
        "/private/var/mobile/Library/Preferences/com.apple.preferences.network.plist",
        [this](Dictionary& file) {
            file.set("wifi-network", radios.states().wifi);
            file.set("bluetooth-network", radios.states().bluetooth);
        });
    files.keepUpToDate("/var/mobile/Library/Preferences/com.apple.locationd.plist",
                       [this](Dictionary& file) {
                           file.set("LocationServicesEnabled", radios.states().location);
                       });
    files.keepUpToDate("/private/var/preferences/SystemConfiguration/com.apple.AutoWake.plist",
                       [this](Dictionary& file) { power.describeWakes(file); });
    editFile(pushPath, [&](Dictionary& file) { file.set("PCEnablePush", scenario.radios.push); });
    files.writeSystemFiles();
    processPlatform = &services;
}

SimulatedPhone::~SimulatedPhone() {
    monitor.reset();
    endProcess();
}

void SimulatedPhone::launch() {
    NoctaraInitialize();
    process.applicationDidFinishLaunching();
}

void SimulatedPhone::playUntil(Date date) {
    playLimit = std::max(date.secondsSince1970, clock.elapsedClock);
    advance(clock.elapsedClock);
    if (monitor && clock.elapsedClock < playLimit) {
        const Handover handover(*this);
        monitor->resume();
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
    monitor.reset();
    files.writeSystemFiles();
}

void SimulatedPhone::asMonitorThread(const std::function<void()>& work) {
    recorder.onMainThread = false;
    work();
    recorder.onMainThread = true;
}

std::int64_t SimulatedPhone::time() {
    if (++turnsWithoutWaiting > mostTurnsWithoutWaiting)
        throw MonitorSpins("the monitor goes round and round without waiting: a phone would get "
                           "hot and run down");
    return static_cast<std::int64_t>(std::floor(clock.wall().secondsSince1970));
}

void SimulatedPhone::sleep(unsigned seconds) {
    recorder.call("sleep", {std::int64_t{seconds}});
    if (seconds == 0)
        return;
    turnsWithoutWaiting = 0;
    const double wakeUpAt = clock.elapsedClock + seconds;
    while (power.isAsleep() || clock.elapsedClock < wakeUpAt) {
        const double next = power.isAsleep() ? nextDue() : wakeUpAt;
        if (monitorHasControl && (next >= playLimit || motion.readings >= readingsWanted))
            monitor->park();
        else if (next < never)
            advance(next);
        else
            return;
    }
}

std::unique_ptr<Thread> SimulatedPhone::start(const char* name, std::function<void()> body) {
    recorder.call("NSThread start", {name});
    monitor = std::make_unique<HandedOverThread>(std::move(body));
    return std::make_unique<StartedThread>();
}

void SimulatedPhone::performOnMainThread(const char* selector, const std::function<void()>& work) {
    recorder.call("performSelectorOnMainThread:withObject:waitUntilDone:", {selector});
    const bool caller = std::exchange(recorder.onMainThread, true);
    work();
    recorder.onMainThread = caller;
}

double SimulatedPhone::nextDue() const {
    const double event = nextEvent < events.size() ? events[nextEvent].at.secondsSince1970 : never;
    return std::min(event, power.nextDue());
}

/// Moves the clock, running all that is due on the way, the last instant included.
void SimulatedPhone::advance(double to) {
    const bool caller = std::exchange(recorder.onMainThread, true);
    for (double due = nextDue(); due <= to; due = nextDue()) {
        clock.elapsedClock = std::max(clock.elapsedClock, due);
        runDue();
    }
    clock.elapsedClock = std::max(clock.elapsedClock, to);
    recorder.onMainThread = caller;
}

void SimulatedPhone::runDue() {
    if (nextEvent < events.size() && events[nextEvent].at.secondsSince1970 <= power.nextDue()) {
        const Event& event = events[nextEvent++];
        happens(event.action, event.value);
    } else {
        power.runDue();
        doWorkPutOff();
    }
}

void SimulatedPhone::onMainThread(std::function<void()> work) {
    workPutOff.push_back(std::move(work));
    doWorkPutOff();
}

void SimulatedPhone::doWorkPutOff() {
    if (!power.isAsleep())
        for (const auto& work : std::exchange(workPutOff, {}))
            work();
}

void SimulatedPhone::wakeUp() {
    power.wake();
    power.noteActivity();
    doWorkPutOff();
}

} // namespace noctara
