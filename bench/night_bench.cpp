/// What a night costs, and its parts, with the files in memory and nobody watching. The monitor has
/// a thread of its own that takes turns with the main one, so real time is what counts.
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

Scenario nightOf(std::optional<Dictionary> settings) {
    Scenario scenario;
    scenario.timezone = "Europe/Paris";
    scenario.settings = std::move(settings);
    scenario.events = {{{scenario.start.secondsSince1970 + 3600}, "posture", "screen-down"},
                       {{scenario.start.secondsSince1970 + 30000}, "posture", "in-hand"}};
    return scenario;
}

void playNights(benchmark::State& state, const Scenario& scenario) {
    for (auto _ : state) {
        SimulatedPhone phone(scenario);
        phone.launch();
        phone.playToTheEnd();
    }
}

/// 9.5 hours on a phone fresh from the shop: the defaults, written by the monitor itself.
void defaultNight(benchmark::State& state) {
    playNights(state, nightOf(std::nullopt));
}
BENCHMARK(defaultNight)->Unit(benchmark::kMillisecond)->UseRealTime();

/// The same with the time window on, which asks the calendar in every cycle.
void nightWithTimeWindow(benchmark::State& state) {
    playNights(state, nightOf(busySettings(false)));
}
BENCHMARK(nightWithTimeWindow)->Unit(benchmark::kMillisecond)->UseRealTime();

/// A cycle with its reading, its wake-up and its wait, as part of a run of a thousand.
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
        monitor.motionManager = phone.platform().motion.makeMotionManager();
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
