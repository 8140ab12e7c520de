#include "command/night_command.h"

#include "command/monitor_observers.h"
#include "command/night_player.h"
#include "command/report_file.h"
#include "host/host.h"
#include "input/bad_input.h"
#include "input/command_line.h"
#include "input/input_file.h"
#include "live/live_night.h"
#include "live/terminal.h"
#include "live/watch_night.h"
#include "night/night_files.h"
#include "night/night_report.h"
#include "output/interruption.h"
#include "output/output_file.h"
#include "phones/simulated/simulated_phone.h"
#include "report/night_record.h"

#include <algorithm>
#include <fmt/format.h>
#include <functional>
#include <memory>
#include <sstream>
#include <utility>

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

/// A live night has the terminal to itself.
void requireTerminalForLive(const NightOptions& options) {
    requireTerminal("--live");
    if (options.trace &&
        (OutputFile::isStandardOutput(*options.trace) || isTerminal(*options.trace)))
        throw BadInput(fmt::format("--trace: {} is a terminal, which --live fills; give a file",
                                   inQuotes(options.trace->string())));
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

/// A night that is about to begin. The report goes on observing the phone.
struct BegunNight {
    const NightInput& input;
    std::unique_ptr<SimulatedPhone> phone;
    NightReport& report;
    NightRecord& record;
};

/// Reads the inputs, begins the report, lets `play` end it, and writes the page. Nothing is written
/// before all inputs have been found good.
int begin(const NightOptions& options, std::ostream& story, std::ostream& complaints,
          const std::function<int(BegunNight)>& play) {
    const NightInput input = readNightInput(options, complaints);
    std::optional<OutputFile> trace;
    if (options.trace)
        trace.emplace("--trace", *options.trace, filesOf(options));
    const auto page = makeReportFile(options.report, filesOf(options), options.trace);
    if (options.root)
        prepareRoot(*options.root);
    tellOfLateEvents(input.scenario, complaints);

    auto phone = makePhone(input, fileStore(options));
    SimulatedPhone& made = *phone;
    NightReport report(
        input.scenario, [&made] { return made.now(); }, story, options.log,
        trace ? &*trace : nullptr);
    NightRecord record(input.scenario, [&made] { return made.now(); });
    MonitorObservers observers{&report};
    phone->observe(report);
    if (page) {
        phone->observe(record);
        observers.add(record);
    }
    monitorObserver = &observers;
    if (input.motion) {
        const std::string name = shownName(options.motion->filename());
        report.followsRecording(name, input.motionBegins, input.motion->remarks);
        record.followsRecording(name, input.motionBegins, input.motion->remarks);
    }
    if (input.scenario.phone.bundle != springBoardBundle) {
        report.story.tellOfInertness();
        record.isInert();
    }
    const int exitCode = play({input, std::move(phone), report, record});
    if (page && !wasInterrupted() &&
        !writeReport(*page, record.finish(*report.nightSummary()), complaints))
        return foundWrong;
    return exitCode;
}

int playWhole(const NightOptions& options, std::ostream& out, std::ostream& complaints) {
    std::ostream nowhere(nullptr);
    return begin(
        options, options.json || options.quiet ? nowhere : out, complaints, [&](BegunNight night) {
            std::optional<std::string> wrong;
            try {
                wrong = playNight(*night.phone);
            } catch (const Interruption&) {
                // The report says so.
            }
            night.record.endNight();
            night.report.endNight(wrong);
            night.phone.reset();
            return night.report.finish(wasInterrupted() ? Retry() : retryOf(night.input),
                                       options.json ? SummaryForm::json : SummaryForm::text, out);
        });
}

int playLive(const NightOptions& options, std::ostream& out, std::ostream& complaints) {
    requireTerminalForLive(options);
    std::ostringstream story; // It is shown while the night is played, but not printed.
    return begin(options, story, complaints, [&](BegunNight night) {
        LiveNight live(night.input.scenario, *night.phone, night.report, story);
        const WatchedNight watched = watchNight(live, options.speed);
        night.record.endNight();
        night.report.endNight(watched.wrong);
        const NightInput asPlayed{live.asPlayed(), night.input.motion, night.input.motionBegins};
        night.phone.reset();
        const int exitCode = night.report.finish(retryOf(asPlayed), SummaryForm::text, out);
        return watched.signal ? 128 + *watched.signal : exitCode;
    });
}

} // namespace

int playNight(const NightOptions& options, std::ostream& out, std::ostream& complaints) {
    if (options.live)
        return playLive(options, out, complaints);
    // The lines of a trace must not be mixed with those of the story.
    const bool traceIsOutput = options.trace && OutputFile::isStandardOutput(*options.trace);
    return untilInterrupted(
        out, [&] { return playWhole(options, traceIsOutput ? complaints : out, complaints); });
}

} // namespace noctara
