#include "phones/model/power_model.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace noctara {

namespace {

constexpr double askAgainAfter = 10;
constexpr double never = std::numeric_limits<double>::infinity();
constexpr PowerConnection rootDomain = 0x1003;

/// The time in an entry of the list of wake-ups. Null if the entry is not one of `identifier`, or
/// has more than these two values.
PropertyList* timeOfEntry(PropertyList& entry, const std::string& identifier) {
    auto* values = entry.as<Dictionary>();
    auto* scheduledBy = values && values->size() == 2 ? values->find("scheduledby") : nullptr;
    auto* found = scheduledBy ? scheduledBy->as<std::string>() : nullptr;
    return found && *found == identifier ? values->find("time") : nullptr;
}

} // namespace

PowerModel::PowerModel(const Scenario& scenario, const VirtualClock& phoneClock,
                       const Recorder& calls) :
    clock(phoneClock),
    recorder(calls),
    onAC(scenario.phone.charger),
    idleSleep(static_cast<double>(scenario.phone.idleSleep)),
    wakes(scenario.wakes) {
    noteActivity();
}

PowerConnection PowerModel::registerForSystemPower(PowerCallback callback,
                                                   NotificationPortRef& port) {
    const PowerConnection connection = registrationFails ? 0 : rootDomain;
    if (recorder.answer(Operation::IORegisterForSystemPower, std::int64_t{connection}) != 0) {
        listener = callback;
        port = this;
    }
    return connection;
}

RunLoopRef PowerModel::currentRunLoop() {
    return this;
}

void PowerModel::addSource(RunLoopRef, NotificationPortRef) {
    recorder.call(Operation::CFRunLoopAddSource, {"kCFRunLoopCommonModes"});
    listens = true;
}

void PowerModel::allowPowerChange(PowerConnection connection, std::intptr_t notification) {
    recorder.call(Operation::IOAllowPowerChange,
                  {std::int64_t{connection}, static_cast<std::int64_t>(notification)});
}

void PowerModel::cancelPowerChange(PowerConnection connection, std::intptr_t notification) {
    recorder.call(Operation::IOCancelPowerChange,
                  {std::int64_t{connection}, static_cast<std::int64_t>(notification)});
    cancelled = cancelled || notification == lastNotification;
}

void PowerModel::schedule(Date date, const std::string& identifier) {
    recorder.call(Operation::CPScheduleWakeAtDateWithIdentifier,
                  {date.secondsSince1970, identifier});
    wakes.push_back({identifier, date});
}

void PowerModel::cancel(Date date, const std::string& identifier) {
    recorder.call(Operation::CPCancelWakeAtDateWithIdentifier, {date.secondsSince1970, identifier});
    // The list of wake-ups is a file, which may keep whole seconds only. Who reads it cancels by
    // the date that it shows.
    const auto isMeant = [&](const auto& wake) {
        return wake.scheduledBy == identifier &&
               (wake.at == date || Date{std::floor(wake.at.secondsSince1970)} == date);
    };
    std::erase_if(wakes, isMeant);
}

ObjectRef PowerModel::sharedController(ClassRef controllerClass) {
    return controllerClass ? this : nullptr;
}

bool PowerModel::isOnAC(ObjectRef controller) {
    return recorder.answer(Operation::isOnAC, controller && onAC);
}

void PowerModel::sendMessage(std::uint32_t type) {
    ++lastNotification;
    cancelled = false;
    recorder.happens(PowerMessage{type, lastNotification});
    if (listens)
        listener(nullptr, 0, type, reinterpret_cast<void*>(lastNotification));
}

void PowerModel::describeWakes(Dictionary& list) const {
    auto* found = list.find("wake");
    if (!found || !found->as<Array>()) {
        list.set("wake", Array());
        found = list.find("wake");
    }
    Array& entries = *found->as<Array>();
    // This runs in every cycle of the monitor, and then most entries differ only in their time.
    if (entries.size() != wakes.size())
        entries.assign(wakes.size(), Dictionary());
    for (std::size_t i = 0; i < wakes.size(); ++i)
        if (auto* time = timeOfEntry(entries[i], wakes[i].scheduledBy))
            *time = wakes[i].at;
        else
            entries[i] = Dictionary{{"scheduledby", wakes[i].scheduledBy}, {"time", wakes[i].at}};
}

void PowerModel::plug(bool onCharger) {
    onAC = onCharger;
    noteActivity();
}

void PowerModel::noteActivity() {
    nextAsk = onAC || idleSleep == 0 ? never : clock.monotonic + idleSleep;
}

void PowerModel::wake() {
    if (!asleep)
        return;
    asleep = false;
    noteActivity();
    sendMessage(kIOMessageSystemHasPoweredOn);
}

double PowerModel::nextDue() const {
    double due = asleep ? never : nextAsk;
    for (const auto& wake : wakes)
        due = std::min(due, clock.monotonicAt(wake.at));
    return due;
}

void PowerModel::runDue() {
    const auto isDue = [this](const auto& wake) {
        return clock.monotonicAt(wake.at) <= clock.monotonic;
    };
    if (std::erase_if(wakes, isDue) != 0)
        wake();
    else
        askToSleep();
}

void PowerModel::askToSleep() {
    sendMessage(kIOMessageCanSystemSleep);
    if (cancelled) {
        nextAsk = clock.monotonic + askAgainAfter;
        return;
    }
    sendMessage(kIOMessageSystemWillSleep);
    asleep = true;
}

} // namespace noctara
