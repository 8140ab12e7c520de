#include "night/night_figures.h"

#include "platform/system_power.h"

#include <algorithm>

namespace noctara {

FigureCounter::FigureCounter(const Scenario& scenario) :
    started(scenario.start.secondsSince1970), wakeUps(scenario), quietBegan(started) {}

void FigureCounter::called(const Call& call) {
    wakeUps.called(call);
    switch (call.operation) {
    case Operation::startAccelerometerUpdates:
        accelerometerStarted = elapsed.at(call.at);
        break;
    case Operation::stopAccelerometerUpdates:
        counted.accelerometerOn += elapsed.at(call.at) - accelerometerStarted;
        break;
    case Operation::CPScheduleWakeAtDateWithIdentifier:
        ++counted.wakesScheduled;
        break;
    case Operation::IOCancelPowerChange:
        ++counted.idleSleepsRefused;
        break;
    case Operation::launch:
    case Operation::activate:
        ++counted.applicationsLaunched;
        break;
    case Operation::kill:
        ++counted.applicationsQuit;
        break;
    default:
        break;
    }
}

void FigureCounter::happens(const Happening& happening) {
    elapsed.happens(happening);
    const auto* message = std::get_if<PowerMessage>(&happening.event);
    if (!message)
        return;
    if (message->type == kIOMessageSystemWillSleep) {
        ++counted.idleSleepsAllowed;
        idleSleepBegan = elapsed.at(happening.at);
        wakeUps.takeDue(happening.at);
    } else if (message->type == kIOMessageSystemHasPoweredOn) {
        counted.idleSleep += elapsed.at(happening.at) - idleSleepBegan;
        const auto due = wakeUps.takeDue(happening.at);
        if (std::any_of(due.begin(), due.end(),
                        [](const auto& wake) { return wake.scheduledBy == "com.quorbit.Noctara"; }))
            ++counted.wakesFired;
    }
}

void FigureCounter::decided(Date at, const Decision& decision) {
    if (std::holds_alternative<Reading>(decision)) {
        ++counted.readings;
    } else if (const auto* begins = std::get_if<MonitoringBegins>(&decision)) {
        if (begins->inSleepState)
            changeState(true, at);
    } else if (const auto* changed = std::get_if<StateChanged>(&decision)) {
        changeState(changed->inSleepState, at);
    }
}

void FigureCounter::changeState(bool quiet, Date at) {
    if (quiet) {
        ++counted.timesQuiet;
        counted.firstQuiet = counted.firstQuiet.value_or(at);
        quietBegan = elapsed.at(at);
    } else {
        ++counted.timesBack;
        counted.lastBack = at;
        counted.quiet += elapsed.at(at) - quietBegan;
    }
    counted.stillQuiet = quiet;
}

NightFigures FigureCounter::figures(Date end) const {
    NightFigures figures = counted;
    figures.duration = elapsed.at(end) - started;
    if (figures.stillQuiet)
        figures.quiet += elapsed.at(end) - quietBegan;
    return figures;
}

} // namespace noctara
