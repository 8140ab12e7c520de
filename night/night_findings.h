/// What a night shows about the settings: its figures, what kept the phone from the quiet state,
/// and the radios after it.
#pragma once

#include "monitor/decisions.h"
#include "night/morning_check.h"
#include "night/night_figures.h"
#include "night/obstacles.h"
#include "output/interruption.h"
#include "phones/model/phone_observer.h"
#include "phones/model/scenario.h"

#include <functional>

namespace noctara {

class NightFindings final : public PhoneObserver, public MonitorObserver {
public:
    /// `wallClock` tells the time on the phone.
    NightFindings(const Scenario& scenario, std::function<Date()> wallClock) :
        morning(scenario), obstacles(scenario), now(std::move(wallClock)), counter(scenario) {}

    void called(const Call& call) override {
        // Here the monitor holds nothing, and an exception can unwind it.
        if (call.operation == Operation::sleep)
            stopIfInterrupted();
        counter.called(call);
        morning.called(call);
    }

    void happens(const Happening& happening) override {
        counter.happens(happening);
        obstacles.happens(happening);
        morning.happens(happening);
    }

    void decided(const Decision& decision) override {
        const Date at = now();
        counter.decided(at, decision);
        obstacles.decided(at, decision);
        morning.decided(at, decision);
    }

    /// Ends the night now. Call it before the fields are read.
    void finish() {
        figures = counter.figures(now());
        obstacles.finish(now());
    }

    NightFigures figures;
    MorningCheck morning;
    Obstacles obstacles;

private:
    std::function<Date()> now;
    FigureCounter counter;
};

} // namespace noctara
