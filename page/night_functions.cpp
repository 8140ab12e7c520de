/// The functions of script_functions.h that play nights.
#include "command/monitor_observers.h"
#include "command/night_player.h"
#include "host/host.h"
#include "night/night_report.h"
#include "night/scenario_file.h"
#include "night/trace.h"
#include "page/script_functions.h"
#include "report/night_record.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>
#include <string>

namespace noctara {

namespace {

NightInput inputOf(const Json& question) {
    return {parseScenario(question.at("scenario").get<std::string>(), "the scenario"), nullptr, {}};
}

} // namespace

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
    report.finish(question.value("advice", true) ? retryOf(input) : Retry(), SummaryForm::text,
                  nowhere);
    return record.finish(*report.nightSummary());
}

Json traceOf(const Json& question) {
    const NightInput input = inputOf(question);
    std::ostringstream lines;
    TraceWriter trace(lines);
    const auto phone = makePhone(input);
    phone->observe(trace);
    playNight(*phone);
    return lines.str();
}

} // namespace noctara
