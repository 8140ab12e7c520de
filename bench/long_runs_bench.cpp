/// The time of several nights on one phone, and the memory in use at the end. Without a trace, the
/// memory does not depend on the number of nights.
#include "bench/default_night.h"
#include "night/trace.h"
#include "phones/simulated/simulated_phone.h"

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <sstream>

namespace noctara {

namespace {

double bytesInUse() {
    const auto heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

void playNights(benchmark::State& state, bool withTrace) {
    const Scenario scenario = nightsInARow(static_cast<int>(state.range(0)));
    double bytes = 0;
    for (auto _ : state) {
        const double before = bytesInUse();
        std::ostringstream lines;
        TraceWriter trace(lines);
        SimulatedPhone phone(scenario);
        if (withTrace)
            phone.observe(trace);
        phone.launch();
        phone.playToTheEnd();
        bytes = bytesInUse() - before;
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    // The phone has a copy of the events, which is not what is measured.
    bytes -= static_cast<double>(scenario.events.size() * sizeof(scenario.events[0]));
    state.counters["KiB"] = bytes / 1024;
}

void nightsWithoutTrace(benchmark::State& state) {
    playNights(state, false);
}
BENCHMARK(nightsWithoutTrace)
    ->Name("nights")
    ->Arg(1)
    ->Arg(30)
    ->Arg(365)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void nightsWithTrace(benchmark::State& state) {
    playNights(state, true);
}
BENCHMARK(nightsWithTrace)
    ->Name("nights/traced")
    ->Arg(1)
    ->Arg(30)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace

} // namespace noctara
