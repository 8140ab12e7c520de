#include "night/night_summary.h"

#include "monitor/noctara_thread.h"

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

} // namespace

void NightSummary::called(const Call& call) {
    const auto operation = call.operation;
    if (operation == "startAccelerometerUpdates") {
        accelerometerStarted = now();
    } else if (operation == "stopAccelerometerUpdates") {
        ++readings;
        accelerometerSeconds += now() - accelerometerStarted;
    } else if (operation == "performSelectorOnMainThread:withObject:waitUntilDone:") {
        if (std::get<std::string_view>(call.arguments[0]) != "setStateAirplaneMode")
            return;
        ++transitions;
        if (inSleepState)
            secondsInSleepState += now() - sleepStateBegan;
        inSleepState = phone.monitor()->currentState;
        sleepStateBegan = now();
    } else if (operation == "NSThread start") {
        // A phone found in airplane mode is taken for one in the sleep state.
        inSleepState = phone.radios.states().airplane;
    } else if (operation == "CPScheduleWakeAtDateWithIdentifier") {
        ++wakesScheduled;
    } else if (operation == "IOCancelPowerChange") {
        ++idleSleepsRefused;
    } else if (operation == "launch" || operation == "activate") {
        ++applicationsLaunched;
    } else if (operation == "kill") {
        ++applicationsQuit;
    }
}

void NightSummary::happens(const Happening& happening) {
    if (happening.action != "power_message")
        return;
    const auto& message = *happening.value.as<Dictionary>();
    switch (static_cast<std::uint32_t>(*message.find("type")->as<std::int64_t>())) {
    case kIOMessageSystemWillSleep:
        ++idleSleepsAllowed;
        systemSleepBegan = now();
        wakesListedBeforeSleep = wakesListed();
        break;
    case kIOMessageSystemHasPoweredOn:
        secondsOfSystemSleep += now() - systemSleepBegan;
        if (wakesListed() < wakesListedBeforeSleep)
            ++wakesFired;
        break;
    default:
        break;
    }
}

/// The monitor's own wake-ups in the system's list.
std::ptrdiff_t NightSummary::wakesListed() const {
    const auto& wakes = phone.power.scheduledWakes();
    return std::count_if(wakes.begin(), wakes.end(), [](const auto& wake) {
        return wake.scheduledBy == "com.quorbit.Noctara";
    });
}

void NightSummary::print(std::ostream& out) const {
    const double asleep = secondsInSleepState + (inSleepState ? now() - sleepStateBegan : 0);
    const auto line = [&](const char* name, const std::string& value) {
        out << fmt::format("  {:<22}{}\n", name, value);
    };
    out << "\nSummary of " << duration(now() - started) << "\n";
    line("in the sleep state", duration(asleep) + (inSleepState ? ", and still in it" : ""));
    line("transitions", fmt::format("{}", transitions));
    line("readings",
         fmt::format("{}, accelerometer on for {}", readings, duration(accelerometerSeconds)));
    line("wake-ups", fmt::format("{} scheduled, {} fired", wakesScheduled, wakesFired));
    line("idle sleeps", fmt::format("{} refused, {} allowed, {} in all", idleSleepsRefused,
                                    idleSleepsAllowed, duration(secondsOfSystemSleep)));
    line("applications",
         fmt::format("{} launched, {} quit", applicationsLaunched, applicationsQuit));
}

} // namespace noctara
