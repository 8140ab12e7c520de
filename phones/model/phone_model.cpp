#include "phones/model/phone_model.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace noctara {

const std::string settingsFilePath =
    "/private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist";

namespace {

constexpr double never = std::numeric_limits<double>::infinity();

/// More than any cycle of the monitor takes.
constexpr int mostLooksWithoutWaiting = 10000;

const std::string pushPath =
    "/private/var/mobile/Library/Preferences/com.apple.persistentconnection-mcc.plist";

} // namespace

PhoneModel::PhoneModel(const Scenario& scenario, std::unique_ptr<FileStore> store) :
    clock{scenario.start.secondsSince1970, 0},
    recorder(clock),
    radios(scenario, recorder),
    files(std::move(store), recorder),
    applications(scenario, recorder),
    device(scenario, recorder),
    motion(scenario.phone.deviceMotion, recorder),
    power(scenario, clock, recorder),
    process(scenario, recorder),
    end(scenario.end.secondsSince1970),
    zone(scenario.timezone),
    events(scenario.events) {
    motion.setPosture(scenario.phone.posture);
    if (scenario.settings && !files.isThere(settingsFilePath))
        files.writeByOthers(settingsFilePath, *scenario.settings);

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
}

double PhoneModel::nextDue() const {
    const double event = nextEvent < events.size() ? events[nextEvent].at.secondsSince1970 : never;
    return std::min(event, power.nextDue());
}

void PhoneModel::advance(double to) {
    const bool caller = std::exchange(recorder.onMainThread, true);
    for (double due = nextDue(); due <= to; due = nextDue()) {
        clock.elapsedClock = std::max(clock.elapsedClock, due);
        runDue();
    }
    clock.elapsedClock = std::max(clock.elapsedClock, to);
    recorder.onMainThread = caller;
}

void PhoneModel::runDue() {
    if (nextEvent < events.size() && events[nextEvent].at.secondsSince1970 <= power.nextDue()) {
        const Event& event = events[nextEvent++];
        happens(event.action, event.value);
    } else {
        power.runDue();
        doWorkPutOff();
    }
}

void PhoneModel::noteLookAtClock() {
    if (++looksWithoutWaiting > mostLooksWithoutWaiting)
        throw MonitorSpins("the monitor goes round and round without waiting: a phone would get "
                           "hot and run down");
}

void PhoneModel::onMainThread(std::function<void()> work) {
    workPutOff.push_back(std::move(work));
    doWorkPutOff();
}

void PhoneModel::doWorkPutOff() {
    if (!power.isAsleep())
        for (const auto& work : std::exchange(workPutOff, {}))
            work();
}

void PhoneModel::wakeUp() {
    power.wake();
    power.noteActivity();
    doWorkPutOff();
}

} // namespace noctara
