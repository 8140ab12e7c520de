/// A night on the simulated phone, with its trace and its story.
#pragma once

#include "host/host.h"
#include "night/night_report.h"
#include "night/trace_reader.h"
#include "phones/replay/replayed_phone.h"
#include "phones/simulated/simulated_phone.h"

#include <sstream>
#include <string>

namespace noctara {

struct ToldNight {
    std::string trace;
    std::string story; ///< With its summary.
};

inline ToldNight played(const Scenario& scenario) {
    SimulatedPhone phone(scenario);
    std::ostringstream trace;
    std::ostringstream story;
    TraceWriter writer(trace);
    NightReport report(
        scenario, [&] { return phone.now(); }, story, true, nullptr);
    phone.observe(writer);
    phone.observe(report);
    monitorObserver = &report;
    phone.launch();
    phone.playToTheEnd();
    report.endNight(std::nullopt);
    report.finish({}, SummaryForm::text, story);
    return {trace.str(), story.str()};
}

/// The story of a trace. Throws like ReplayedPhone::play.
inline std::string replayed(const Scenario& scenario, const std::string& trace) {
    std::istringstream lines(trace);
    TraceReader reader(lines, "trace");
    ReplayedPhone phone(scenario, reader);
    std::ostringstream story;
    NightReport report(
        scenario, [&] { return phone.now(); }, story, true, nullptr);
    phone.observe(report);
    monitorObserver = &report;
    const auto endedEarly = phone.play();
    report.endNight(endedEarly);
    report.finish({}, SummaryForm::text, story);
    return story.str();
}

} // namespace noctara
