#include "phones/emulated/emulated_phone.h"

#include "phones/emulated/process.h"

#include <cmath>
#include <utility>

namespace noctara::emulated {

EmulatedPhone* EmulatedPhone::current = nullptr;

EmulatedPhone::EmulatedPhone(const Scenario& scenario, std::unique_ptr<FileStore> store,
                             const Loading& loading) :
    PhoneModel(scenario, std::move(store)), coreFoundationVersion(scenario.phone.corefoundation) {
    current = this;
    theProcess = std::make_unique<Process>(*this, loading);
}

EmulatedPhone::~EmulatedPhone() {
    current = nullptr;
}

bool EmulatedPhone::playNight() {
    try {
        launch();
        playToTheEnd();
    } catch (const Fault& fault) {
        const Processor& processor =
            recorder.onMainThread ? *theProcess->main : *theProcess->monitor;
        theProcess->report(std::string(fault.what()) + ", " + theProcess->whereabouts(processor));
        return false;
    }
    theProcess->objectiveC.checkLeaks({theProcess->main.get(), theProcess->monitor.get()});
    return true;
}

void EmulatedPhone::launch() {
    theProcess->initialise();
    const Object& springBoard = theProcess->shared("SpringBoard");
    theProcess->send(*theProcess->main, springBoard.address,
                     "applicationDidFinishLaunching:", {springBoard.address});
}

void EmulatedPhone::playToTheEnd() {
    advance(clock.monotonic);
    if (monitorBody) {
        recorder.onMainThread = false;
        try {
            monitorBody();
        } catch (const NightIsOver&) {
        }
        recorder.onMainThread = true;
    }
    advance(end);
    files.writeSystemFiles();
}

std::int64_t EmulatedPhone::time() {
    noteClockRead();
    return static_cast<std::int64_t>(std::floor(clock.wall().secondsSince1970));
}

void EmulatedPhone::sleep(unsigned seconds) {
    recorder.call(Operation::sleep, {std::int64_t{seconds}});
    theProcess->objectiveC.checkPools(*theProcess->monitor);
    if (seconds == 0)
        return;
    noteWait();
    recorder.onMainThread = true;
    const bool isDay = !moveToWakeUp(clock.monotonic + seconds, end);
    recorder.onMainThread = false;
    if (isDay)
        throw NightIsOver();
}

void EmulatedPhone::startMonitor(const std::string& name, std::function<void()> body) {
    if (monitorBody)
        throw Fault(
            "a second thread starts, and the emulated process has only one besides the main "
            "thread");
    recorder.call(Operation::NSThreadStart, {name});
    monitorBody = std::move(body);
}

void EmulatedPhone::performOnMainThread(const std::string& selector,
                                        const std::function<void()>& work) {
    recorder.call(Operation::performSelectorOnMainThread, {selector});
    const bool caller = std::exchange(recorder.onMainThread, true);
    work();
    recorder.onMainThread = caller;
}

PowerConnection EmulatedPhone::registerForSystemPower(Address refcon, Address callback,
                                                      NotificationPortRef& port) {
    powerRefcon = refcon;
    powerCallback = callback;
    return power.registerForSystemPower(deliverPowerMessage, port);
}

void EmulatedPhone::deliverPowerMessage(void*, std::uint32_t service, std::uint32_t type,
                                        void* argument) {
    current->theProcess->callOnMain(current->powerCallback,
                                    {current->powerRefcon, undefinedHalf | service,
                                     undefinedHalf | type, reinterpret_cast<Address>(argument)});
}

ServerConnectionRef EmulatedPhone::createServerConnection(Address callback) {
    serverCallback = callback;
    return radios.createServerConnection(deliverServerAnswer);
}

void EmulatedPhone::deliverServerAnswer() {
    current->theProcess->callOnMain(current->serverCallback, {});
}

void EmulatedPhone::sendACPowerChanged() {
    theProcess->send(*theProcess->main, theProcess->shared("SBUIController").address,
                     "ACPowerChanged");
}

void EmulatedPhone::stopMonitor() {
    const auto instance =
        theProcess->memory.read<Address>(theProcess->exported("_NoctaraInstance"));
    if (instance != 0)
        theProcess->send(*theProcess->main, instance, "stop");
}

} // namespace noctara::emulated
