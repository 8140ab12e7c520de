/// The time of a night and of its parts, with files in memory and without observers. Real time is
/// measured, because the monitor thread and the main thread take turns.
#include "bench/default_night.h"
#include "monitor/noctara_thread.h"
#include "phones/simulated/simulated_phone.h"
#include "tests/full_settings.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace noctara {

namespace {

Dictionary busySettings(bool debug) {
    return fullSettings(
        {{"TimeLimit", true}, {"Debug", debug}, {"launch-app-com.example.alarm", true}});
}

void playNights(benchmark::State& state, const Scenario& scenario) {
    for (auto _ : state) {
        SimulatedPhone phone(scenario);
        phone.launch();
        phone.playToTheEnd();
    }
}

/// 9.5 hours on a new phone, with the defaults, which the monitor writes itself.
void nightWithDefaults(benchmark::State& state) {
    playNights(state, defaultNight());
}
BENCHMARK(nightWithDefaults)->Unit(benchmark::kMillisecond)->UseRealTime();

/// The same with the time window on: the monitor uses the calendar in every cycle.
void nightWithTimeWindow(benchmark::State& state) {
    playNights(state, nightOf(busySettings(false)));
}
BENCHMARK(nightWithTimeWindow)->Unit(benchmark::kMillisecond)->UseRealTime();

/// A thousand cycles with reading, wake-up and wait.
void cycles(benchmark::State& state, bool debug) {
    constexpr int cyclesInARun = 1000;
    for (auto _ : state) {
        state.PauseTiming();
        auto phone = std::make_unique<SimulatedPhone>(nightOf(busySettings(debug)));
        phone->launch();
        phone->playReadings(1);
        state.ResumeTiming();
        phone->playReadings(cyclesInARun);
        state.PauseTiming();
        phone.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * cyclesInARun);
}
BENCHMARK_CAPTURE(cycles, debugOff, false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(cycles, debugOn, true)->Unit(benchmark::kMillisecond)->UseRealTime();

/// A monitor whose methods are called one by one.
struct AMonitor {
    explicit AMonitor(const Scenario& scenario) : phone(scenario), monitor(phone.platform()) {
        monitor.motionManager = phone.platform().motion->makeMotionManager();
        monitor.reloadPreferences();
    }

    SimulatedPhone phone;
    NoctaraThread monitor;
};

void reloadPreferences(benchmark::State& state) {
    AMonitor one(nightOf(busySettings(false)));
    for (auto _ : state)
        one.monitor.reloadPreferences();
}
BENCHMARK(reloadPreferences);

void checkState(benchmark::State& state) {
    AMonitor one(nightOf(busySettings(false)));
    for (auto _ : state)
        benchmark::DoNotOptimize(one.monitor.checkState());
}
BENCHMARK(checkState);

void isInTimeRange(benchmark::State& state) {
    AMonitor one(nightOf(busySettings(false)));
    for (auto _ : state)
        benchmark::DoNotOptimize(one.monitor.isInTimeRange());
}
BENCHMARK(isInTimeRange);

} // namespace

} // namespace noctara
