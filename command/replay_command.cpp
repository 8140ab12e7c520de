#include "command/replay_command.h"

#include "command/monitor_observers.h"
#include "command/night_player.h"
#include "command/report_file.h"
#include "host/host.h"
#include "input/bad_input.h"
#include "input/printable.h"
#include "night/chosen_scenario.h"
#include "night/night_report.h"
#include "night/trace_reader.h"
#include "output/interruption.h"
#include "phones/replay/replayed_phone.h"
#include "report/night_record.h"

#include <fstream>
#include <iostream>

namespace noctara {

namespace {

/// Without a scenario the night begins and ends with the trace.
Scenario scenarioOf(const ReplayOptions& options, TraceReader& reader) {
    Scenario scenario = chosenScenario(options.scenario, options.overrides);
    if (!options.scenario && !options.overrides.start)
        if (const TraceLine* first = reader.peek())
            scenario.start = scenario.end = first->at;
    return scenario;
}

/// The files that the replay reads.
std::vector<std::filesystem::path> inputsOf(const ReplayOptions& options) {
    std::vector<std::filesystem::path> inputs{options.trace};
    if (options.scenario)
        inputs.push_back(*options.scenario);
    return inputs;
}

/// Whether the simulated phone plays the same night. It does not if the trace is of a night with a
/// recording, or of another scenario.
bool isSameNight(const NightFindings& traced, const Retry& retry) {
    const auto played = retry({});
    return played && played->figures == traced.figures;
}

int play(const ReplayOptions& options, std::ostream& out) {
    const bool fromStandardInput = options.trace == "-";
    const std::string name = fromStandardInput ? "standard input" : options.trace.string();
    std::ifstream file;
    if (!fromStandardInput) {
        file.open(options.trace);
        if (!file)
            throw BadInput(name + ": cannot be read; give a file that --trace has written");
    }
    TraceReader reader(fromStandardInput ? std::cin : file, name);
    const Scenario scenario = scenarioOf(options, reader);
    const auto page = makeReportFile(options.report, inputsOf(options));

    std::ostream nowhere(nullptr);
    std::ostream& story = options.json || options.quiet ? nowhere : out;
    std::optional<ReplayedPhone> phone(std::in_place, scenario, reader);
    NightReport report(
        scenario, [&] { return phone->now(); }, story, options.log, nullptr);
    NightRecord record(scenario, [&] { return phone->now(); });
    MonitorObservers observers{&report};
    phone->observe(report);
    if (page) {
        phone->observe(record);
        observers.add(record);
    }
    monitorObserver = &observers;
    if (scenario.phone.bundle != springBoardBundle) {
        report.story.tellOfInertness();
        record.isInert();
    }
    std::optional<std::string> wrong;
    try {
        if (const auto endedEarly = phone->play())
            wrong = "the night ended early: " + *endedEarly;
    } catch (const TraceAndRulesPart& parted) {
        // In real time the monitor may read a setting while it changes, and no line tells when.
        if (!phone->isInRealTime())
            wrong = parted.what();
        else
            story << "\nThe story ends early: " << printable(parted.what()) << ".\n";
    } catch (const Interruption&) {
        // The report says so.
    }
    record.endNight();
    report.endNight(wrong);
    phone.reset();
    const NightInput input{scenario, nullptr, {}};
    const Retry retry = retryOf(input);
    const bool canRetry =
        options.scenario && !wasInterrupted() && isSameNight(report.nightFindings(), retry);
    const int exitCode = report.finish(canRetry ? retry : Retry(),
                                       options.json ? SummaryForm::json : SummaryForm::text, out);
    if (page && !wasInterrupted() &&
        !writeReport(*page, record.finish(*report.nightSummary()), std::cerr))
        return 1;
    return exitCode;
}

} // namespace

int replay(const ReplayOptions& options, std::ostream& out) {
    return untilInterrupted(out, [&] { return play(options, out); });
}

} // namespace noctara
