#include "phones/model/phone_model.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace noctara {

const std::string settingsFilePath =
    "/private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist";

namespace {

constexpr double never = std::numeric_limits<double>::infinity();

/// More than any cycle of the monitor needs.
constexpr int mostReadsWithoutWaiting = 10000;

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
        clock.monotonic = std::max(clock.monotonic, due);
        runDue();
    }
    clock.monotonic = std::max(clock.monotonic, to);
    recorder.onMainThread = caller;
}

bool PhoneModel::moveToWakeUp(double wakeUpAt, double limit) {
    for (double due = nextDue(); power.isAsleep() || due <= wakeUpAt; due = nextDue()) {
        if (due >= limit)
            return false;
        advance(due);
    }
    if (wakeUpAt >= limit)
        return false;
    clock.monotonic = std::max(clock.monotonic, wakeUpAt);
    return true;
}

void PhoneModel::runDue() {
    if (nextEvent < events.size() && events[nextEvent].at.secondsSince1970 <= power.nextDue()) {
        happens(events[nextEvent++].event);
    } else {
        power.runDue();
        runPendingWork();
    }
}

void PhoneModel::noteClockRead() {
    if (++readsWithoutWaiting > mostReadsWithoutWaiting)
        throw MonitorSpins("the monitor loops without waiting, which would drain the battery of a "
                           "real phone");
}

void PhoneModel::onMainThread(std::function<void()> work) {
    pendingWork.push_back(std::move(work));
    runPendingWork();
}

void PhoneModel::runPendingWork() {
    if (!power.isAsleep())
        for (const auto& work : std::exchange(pendingWork, {}))
            work();
}

void PhoneModel::wakeUp() {
    power.wake();
    power.noteActivity();
    runPendingWork();
}

} // namespace noctara
