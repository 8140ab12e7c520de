#include "phones/simulated/simulated_phone.h"

#include "host/host.h"
#include "phones/simulated/library_process.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace noctara {

namespace {

constexpr double never = std::numeric_limits<double>::infinity();

class StartedThread final : public Thread {};

} // namespace

/// Gives control to the monitor thread during its lifetime.
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
    PhoneModel(scenario, std::move(store)),
    services{
        .log = &process,
        .process = &process,
        .threads = this,
        .clock = this,
        .calendar = this,
        .files = &files,
        .notifications = &process,
        .power = &power,
        .wakes = &power,
        .charger = &power,
        .motion = &motion,
        .sounds = &process,
        .applications = &applications,
        .telephony = &radios,
        .wifi = &radios,
        .bluetooth = &radios,
        .location = &radios,
        .cellular = &radios,
        .preferences = &radios,
        .device = &device,
        .libraries = &device,
        .capabilities = &device,
    } {
    startLibrary(services);
}

SimulatedPhone::~SimulatedPhone() {
    monitorThread.reset();
    endLibrary();
}

void SimulatedPhone::launch() {
    NoctaraInitialize();
    process.applicationDidFinishLaunching();
}

void SimulatedPhone::playUntil(Date date) {
    playLimit = std::max(date.secondsSince1970, clock.monotonic);
    advance(clock.monotonic);
    if (monitorThread && clock.monotonic < playLimit) {
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
    endHere();
}

void SimulatedPhone::endHere() {
    monitorThread.reset();
    files.writeSystemFiles();
}

void SimulatedPhone::asMonitorThread(const std::function<void()>& work) {
    recorder.onMainThread = false;
    work();
    recorder.onMainThread = true;
}

std::int64_t SimulatedPhone::time() {
    noteClockRead();
    return static_cast<std::int64_t>(std::floor(clock.wall().secondsSince1970));
}

void SimulatedPhone::sleep(unsigned seconds) {
    recorder.call(Operation::sleep, {std::int64_t{seconds}});
    if (seconds == 0)
        return;
    noteWait();
    const double wakeUpAt = clock.monotonic + seconds;
    while (!moveToWakeUp(wakeUpAt, limitOfMove()) && monitorHasControl)
        monitorThread->park();
}

double SimulatedPhone::limitOfMove() const {
    if (!monitorHasControl)
        return never;
    return motion.readings >= readingsWanted ? -never : playLimit;
}

std::unique_ptr<Thread> SimulatedPhone::start(const char* name, std::function<void()> body) {
    recorder.call(Operation::NSThreadStart, {name});
    monitorThread = makeHandedOverThread(std::move(body));
    return std::make_unique<StartedThread>();
}

void SimulatedPhone::performOnMainThread(const char* selector, const std::function<void()>& work) {
    recorder.call(Operation::performSelectorOnMainThread, {selector});
    const bool caller = std::exchange(recorder.onMainThread, true);
    work();
    recorder.onMainThread = caller;
}

void SimulatedPhone::sendACPowerChanged() {
    process.acPowerChanged(static_cast<Charger*>(&power));
}

void SimulatedPhone::stopMonitor() {
    if (NoctaraInstance)
        NoctaraInstance->stop();
}

} // namespace noctara
