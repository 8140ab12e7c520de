#include "night/night_summary.h"

#include "platform/system_power.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace noctara {

namespace {

std::string duration(double seconds) {
    const auto whole = std::llround(seconds);
    if (whole >= 3600)
        return fmt::format("{} h {:02} min", whole / 3600, whole / 60 % 60);
    if (whole >= 60)
        return fmt::format("{} min {:02} s", whole / 60, whole % 60);
    return fmt::format("{} s", whole);
}

/// The monitor replaces its wake-up in every cycle, so that it is always 15 minutes ahead.
std::string wakeUpsInWords(int scheduled, int fired) {
    if (scheduled == 0)
        return "none scheduled";
    const std::string woke = fired == 0   ? "never woke the phone"
                             : fired == 1 ? "woke the phone once"
                                          : fmt::format("woke the phone {} times", fired);
    return fmt::format("one kept 15 minutes ahead (renewed {} times); it {}", scheduled, woke);
}

} // namespace

NightSummary::NightSummary(const Scenario& scenario) :
    started(scenario.start.secondsSince1970), wakeUps(scenario), sleepStateBegan(started) {}

void NightSummary::called(const Call& call) {
    wakeUps.called(call);
    switch (call.operation) {
    case Operation::startAccelerometerUpdates:
        accelerometerStarted = elapsed.at(call.at);
        break;
    case Operation::stopAccelerometerUpdates:
        accelerometerSeconds += elapsed.at(call.at) - accelerometerStarted;
        break;
    case Operation::CPScheduleWakeAtDateWithIdentifier:
        ++wakesScheduled;
        break;
    case Operation::IOCancelPowerChange:
        ++idleSleepsRefused;
        break;
    case Operation::launch:
    case Operation::activate:
        ++applicationsLaunched;
        break;
    case Operation::kill:
        ++applicationsQuit;
        break;
    default:
        break;
    }
}

void NightSummary::happens(const Happening& happening) {
    elapsed.happens(happening);
    const auto* message = std::get_if<PowerMessage>(&happening.event);
    if (!message)
        return;
    if (message->type == kIOMessageSystemWillSleep) {
        ++idleSleepsAllowed;
        systemSleepBegan = elapsed.at(happening.at);
        wakeUps.takeDue(happening.at);
    } else if (message->type == kIOMessageSystemHasPoweredOn) {
        secondsOfSystemSleep += elapsed.at(happening.at) - systemSleepBegan;
        const auto due = wakeUps.takeDue(happening.at);
        if (std::any_of(due.begin(), due.end(),
                        [](const auto& wake) { return wake.scheduledBy == "com.quorbit.Noctara"; }))
            ++wakesFired;
    }
}

void NightSummary::decided(Date at, const Decision& decision) {
    if (std::holds_alternative<Reading>(decision)) {
        ++readings;
    } else if (const auto* begins = std::get_if<MonitoringBegins>(&decision)) {
        inSleepState = begins->inSleepState;
        sleepStateBegan = elapsed.at(at);
    } else if (const auto* changed = std::get_if<StateChanged>(&decision)) {
        ++transitions;
        if (inSleepState)
            secondsInSleepState += elapsed.at(at) - sleepStateBegan;
        inSleepState = changed->inSleepState;
        sleepStateBegan = elapsed.at(at);
    }
}

void NightSummary::print(std::ostream& out, Date end) const {
    const double now = elapsed.at(end);
    const double quiet = secondsInSleepState + (inSleepState ? now - sleepStateBegan : 0);
    const auto line = [&](const char* name, const std::string& value) {
        out << fmt::format("  {:<22}{}\n", name, value);
    };
    out << "\nSummary of " << duration(now - started) << "\n";
    line("quiet", duration(quiet) + (inSleepState ? ", and still quiet" : ""));
    line("transitions", fmt::format("{}", transitions));
    line("readings",
         fmt::format("{}, accelerometer on for {}", readings, duration(accelerometerSeconds)));
    line("wake-ups", wakeUpsInWords(wakesScheduled, wakesFired));
    line("idle sleeps", fmt::format("{} refused, {} allowed, {} in all", idleSleepsRefused,
                                    idleSleepsAllowed, duration(secondsOfSystemSleep)));
    line("applications",
         fmt::format("{} launched, {} quit", applicationsLaunched, applicationsQuit));
}

} // namespace noctara
