/// Nights, for the page's script.
#include "command/monitor_observers.h"
#include "command/night_player.h"
#include "host/host.h"
#include "night/night_report.h"
#include "night/scenario_file.h"
#include "night/trace.h"
#include "page/script_functions.h"
#include "report/night_record.h"

#include <ostream>
#include <sstream>
#include <string>

namespace noctara {

namespace {

NightInput inputOf(const Json& question) {
    return {parseScenario(question.at("scenario").get<std::string>(), "the scenario"), nullptr, {}};
}

/// {"scenario": TEXT}: the data of the report page.
Json nightOf(const Json& question) {
    const NightInput input = inputOf(question);
    auto phone = makePhone(input);
    const auto now = [&made = *phone] { return made.now(); };
    std::ostream nowhere(nullptr);
    NightReport report(input.scenario, now, nowhere, false, nullptr);
    NightRecord record(input.scenario, now);
    MonitorObservers observers{&report, &record};
    phone->observe(report);
    phone->observe(record);
    monitorObserver = &observers;
    if (input.scenario.phone.bundle != springBoardBundle)
        record.isInert();
    const auto wrong = playNight(*phone);
    record.endNight();
    report.endNight(wrong);
    phone.reset();
    report.finish(retryOf(input), SummaryForm::text, nowhere);
    return record.finish(*report.nightSummary());
}

/// {"scenario": TEXT}: the text of the trace.
Json traceOf(const Json& question) {
    const NightInput input = inputOf(question);
    std::ostringstream lines;
    TraceWriter trace(lines);
    const auto phone = makePhone(input);
    phone->observe(trace);
    playNight(*phone);
    return lines.str();
}

} // namespace

} // namespace noctara

extern "C" {

EMSCRIPTEN_KEEPALIVE char* night(const char* question) {
    return noctara::answered(question, noctara::nightOf);
}

EMSCRIPTEN_KEEPALIVE char* traceOfNight(const char* question) {
    return noctara::answered(question, noctara::traceOf);
}

} // extern "C"
