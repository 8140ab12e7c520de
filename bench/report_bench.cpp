/// A night with all that `noctara night --report` does: the story, the summary and the page.
#include "bench/default_night.h"
#include "command/monitor_observers.h"
#include "host/host.h"
#include "night/night_report.h"
#include "phones/simulated/simulated_phone.h"
#include "report/night_record.h"
#include "report/report_page.h"

#include <benchmark/benchmark.h>

#include <sstream>

namespace noctara {

namespace {

std::string pageOf(const Scenario& scenario) {
    std::ostringstream story;
    std::ostringstream page;
    SimulatedPhone phone(scenario);
    const auto now = [&phone] { return phone.now(); };
    NightReport report(scenario, now, story, false, nullptr);
    NightRecord record(scenario, now);
    MonitorObservers observers{&report};
    observers.add(record);
    phone.observe(report);
    phone.observe(record);
    monitorObserver = &observers;
    phone.launch();
    phone.playToTheEnd();
    record.endNight();
    report.endNight({});
    report.finish(Retry(), SummaryForm::text, story);
    monitorObserver = nullptr;
    writeReportPage(page, record.finish(*report.nightSummary()));
    return page.str();
}

/// The argument of the benchmark is the number of nights.
void writeReports(benchmark::State& state) {
    const Scenario scenario = nightsInARow(static_cast<int>(state.range(0)));
    std::size_t size = 0;
    for (auto _ : state)
        size = pageOf(scenario).size();
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["KiB"] = static_cast<double>(size) / 1024;
}
BENCHMARK(writeReports)
    ->Name("report")
    ->Arg(1)
    ->Arg(30)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace

} // namespace noctara
