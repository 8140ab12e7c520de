#include "command/night_command.h"

#include "command/monitor_observers.h"
#include "command/night_player.h"
#include "command/report_file.h"
#include "host/host.h"
#include "night/night_files.h"
#include "night/night_report.h"
#include "output/interruption.h"
#include "output/output_file.h"
#include "phones/simulated/simulated_phone.h"
#include "report/night_record.h"

#include <algorithm>

namespace noctara {

namespace {

void tellOfLateEvents(const Scenario& scenario, std::ostream& complaints) {
    const auto late = std::count_if(scenario.events.begin(), scenario.events.end(),
                                    [&](const auto& event) { return event.at > scenario.end; });
    if (late == 1)
        complaints << "1 event is after the end of the night and is not played\n";
    else if (late > 1)
        complaints << late << " events are after the end of the night and are not played\n";
}

std::unique_ptr<FileStore> fileStore(const NightOptions& options) {
    if (!options.root)
        return makeMemoryFileStore();
    auto store = makeDirectoryFileStore(*options.root);
    // An existing settings file is kept unless the user gives another one.
    if (options.settings || !options.set.empty())
        store->remove(settingsFilePath);
    return store;
}

int play(const NightOptions& options, std::ostream& out, std::ostream& complaints) {
    const NightInput input = readNightInput(options, complaints);
    std::optional<OutputFile> trace;
    if (options.trace)
        trace.emplace("--trace", *options.trace, filesOf(options));
    const auto page = makeReportFile(options.report, filesOf(options), options.trace);
    if (options.root)
        prepareRoot(*options.root);
    tellOfLateEvents(input.scenario, complaints);

    std::ostream nowhere(nullptr);
    std::ostream& story = options.json ? nowhere : out;
    auto phone = makePhone(input, fileStore(options));
    NightReport report(
        input.scenario, [&] { return phone->now(); }, story, options.log,
        trace ? &*trace : nullptr);
    NightRecord record(input.scenario, [&] { return phone->now(); });
    MonitorObservers observers{&report};
    phone->observe(report);
    if (page) {
        phone->observe(record);
        observers.add(record);
    }
    monitorObserver = &observers;
    if (input.motion) {
        const std::string name = options.motion->filename().string();
        report.story.tellOfRecording(name, input.motionBegins, input.motion->remarks);
        record.followsRecording(name, input.motionBegins, input.motion->remarks);
    }
    if (input.scenario.phone.bundle != springBoardBundle) {
        report.story.tellOfInertness();
        record.isInert();
    }
    std::optional<std::string> wrong;
    try {
        wrong = playNight(*phone);
    } catch (const Interruption&) {
        // The report says so.
    }
    record.endNight();
    report.endNight(wrong);
    phone.reset();
    const int exitCode = report.finish(wasInterrupted() ? Retry() : retryOf(input),
                                       options.json ? SummaryForm::json : SummaryForm::text, out);
    if (page && !wasInterrupted() &&
        !writeReport(*page, record.finish(*report.nightSummary()), complaints))
        return 1;
    return exitCode;
}

} // namespace

int playNight(const NightOptions& options, std::ostream& out, std::ostream& complaints) {
    // The lines of a trace must not be mixed with those of the story.
    const bool traceIsOutput = options.trace && OutputFile::isStandardOutput(*options.trace);
    return untilInterrupted(
        out, [&] { return play(options, traceIsOutput ? complaints : out, complaints); });
}

} // namespace noctara
