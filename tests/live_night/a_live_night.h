/// A night that a test plays bit by bit, and acts on.
#pragma once

#include "host/host.h"
#include "live/live_night.h"
#include "night/night_report.h"
#include "night/trace.h"
#include "phones/simulated/simulated_phone.h"
#include "tests/full_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>

namespace noctara {

class ALiveNight : public testing::Test {
protected:
    using enum NamedPosture;

    /// Half past ten in the evening, UTC.
    const double start = Scenario().start.secondsSince1970;

    ALiveNight() { scenario.settings = fullSettings(); }

    ~ALiveNight() override {
        if (phone)
            endPhone();
    }

    /// Makes room for another phone.
    void endPhone() {
        phone->endHere();
        phone.reset();
    }

    /// SpringBoard has launched; the night stands at its start. Change `scenario` before.
    LiveNight& begin() {
        phone.emplace(scenario);
        phone->observe(traceWriter);
        report.emplace(
            scenario, [this] { return phone->now(); }, told, false, nullptr);
        phone->observe(*report);
        live.emplace(scenario, *phone, *report, told);
        phone->launch();
        return *live;
    }

    LiveNight& night() { return *live; }

    void playFor(double seconds) { live->playTo(live->now() + seconds); }

    const Lane& lane(LaneName name) {
        lanes = live->picture().lanes;
        return lanes[static_cast<std::size_t>(name)];
    }
    std::string value(LaneName name) { return lane(name).value; }

    std::string lastLine() {
        const auto story = live->picture().story;
        return story.empty() ? "" : story.back();
    }

    std::string trace() const { return traceLines.str(); }

    Scenario scenario;

private:
    std::ostringstream traceLines;
    TraceWriter traceWriter{traceLines};
    std::ostringstream told;
    std::optional<SimulatedPhone> phone;
    std::optional<NightReport> report;
    std::optional<LiveNight> live;
    Lanes lanes;
};

} // namespace noctara
