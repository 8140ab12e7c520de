#include "phones/model/power_model.h"

#include <algorithm>
#include <limits>

namespace noctara {

namespace {

constexpr double askAgainAfter = 10;
constexpr double never = std::numeric_limits<double>::infinity();
constexpr PowerConnection rootDomain = 0x1003;

} // namespace

PowerModel::PowerModel(const Scenario& scenario, const VirtualClock& phoneClock,
                       const Recorder& calls) :
    clock(phoneClock),
    recorder(calls),
    onAC(scenario.phone.charger),
    idleSleep(static_cast<double>(scenario.phone.idleSleep)),
    nextAsk(scenario.start.secondsSince1970 + idleSleep),
    wakes(scenario.wakes) {}

PowerConnection PowerModel::registerForSystemPower(PowerCallback callback,
                                                   NotificationPortRef& port) {
    const PowerConnection connection = registrationFails ? 0 : rootDomain;
    if (recorder.answer("IORegisterForSystemPower", std::int64_t{connection}) != 0) {
        listener = callback;
        port = this;
    }
    return connection;
}

RunLoopRef PowerModel::currentRunLoop() {
    return this;
}

void PowerModel::addSource(RunLoopRef, NotificationPortRef) {
    recorder.call("CFRunLoopAddSource", {"kCFRunLoopCommonModes"});
    listens = true;
}

void PowerModel::allowPowerChange(PowerConnection connection, std::intptr_t notification) {
    recorder.call("IOAllowPowerChange",
                  {std::int64_t{connection}, static_cast<std::int64_t>(notification)});
}

void PowerModel::cancelPowerChange(PowerConnection connection, std::intptr_t notification) {
    recorder.call("IOCancelPowerChange",
                  {std::int64_t{connection}, static_cast<std::int64_t>(notification)});
    cancelled = cancelled || notification == lastNotification;
}

void PowerModel::schedule(Date date, const std::string& identifier) {
    recorder.call("CPScheduleWakeAtDateWithIdentifier", {date.secondsSince1970, identifier});
    wakes.push_back({identifier, date});
}

void PowerModel::cancel(Date date, const std::string& identifier) {
    recorder.call("CPCancelWakeAtDateWithIdentifier", {date.secondsSince1970, identifier});
    std::erase_if(
        wakes, [&](const auto& wake) { return wake.at == date && wake.scheduledBy == identifier; });
}

ObjectRef PowerModel::sharedController(ClassRef controllerClass) {
    return controllerClass ? this : nullptr;
}

bool PowerModel::isOnAC(ObjectRef controller) {
    return recorder.answer("isOnAC", controller && onAC);
}

void PowerModel::sendMessage(std::uint32_t type) {
    ++lastNotification;
    cancelled = false;
    recorder.happens("power_message",
                     Dictionary{{"type", std::int64_t{type}},
                                {"notification", static_cast<std::int64_t>(lastNotification)}});
    if (listens)
        listener(nullptr, 0, type, reinterpret_cast<void*>(lastNotification));
}

void PowerModel::describeWakes(Dictionary& list) const {
    Array entries;
    entries.reserve(wakes.size());
    for (const auto& wake : wakes)
        entries.push_back(Dictionary{{"scheduledby", wake.scheduledBy}, {"time", wake.at}});
    list.set("wake", std::move(entries));
}

void PowerModel::plug(bool onCharger) {
    onAC = onCharger;
    noteActivity();
}

void PowerModel::noteActivity() {
    nextAsk = clock.elapsedClock + idleSleep;
}

void PowerModel::wake() {
    if (!asleep)
        return;
    asleep = false;
    noteActivity();
    sendMessage(kIOMessageSystemHasPoweredOn);
}

double PowerModel::nextDue() const {
    double due = asleep || onAC || idleSleep == 0 ? never : nextAsk;
    for (const auto& wake : wakes)
        due = std::min(due, clock.whenWallReads(wake.at));
    return due;
}

void PowerModel::runDue() {
    const auto isDue = [this](const auto& wake) {
        return clock.whenWallReads(wake.at) <= clock.elapsedClock;
    };
    if (std::erase_if(wakes, isDue) != 0)
        wake();
    else
        askToSleep();
}

void PowerModel::askToSleep() {
    sendMessage(kIOMessageCanSystemSleep);
    if (cancelled) {
        nextAsk = clock.elapsedClock + askAgainAfter;
        return;
    }
    sendMessage(kIOMessageSystemWillSleep);
    asleep = true;
}

} // namespace noctara
