/// Compares a default night with the event loops of general simulators. They sleep as often and do
/// nothing else.
#include "bench/default_night.h"
#include "bench/peers/peers.h"
#include "phones/simulated/simulated_phone.h"

#include <benchmark/benchmark.h>

namespace noctara {

namespace {

class SleepCount final : public PhoneObserver {
public:
    void called(const Call& call) override {
        count +=
            call.operation == Operation::sleep && std::get<std::int64_t>(call.arguments[0]) != 0;
    }
    void happens(const Happening&) override {}

    std::int64_t count = 0;
};

std::int64_t sleepsOfANight() {
    SimulatedPhone phone(defaultNight());
    SleepCount sleeps;
    phone.observe(sleeps);
    phone.launch();
    phone.playToTheEnd();
    return sleeps.count;
}

/// The items are the sleeps.
template <typename Play>
void measure(benchmark::State& state, Play play) {
    const std::int64_t sleeps = sleepsOfANight();
    for (auto _ : state)
        play(sleeps);
    state.SetItemsProcessed(state.iterations() * sleeps);
}

void wholeNight(benchmark::State& state) {
    measure(state, [scenario = defaultNight()](std::int64_t) {
        SimulatedPhone phone(scenario);
        phone.launch();
        phone.playToTheEnd();
    });
}
BENCHMARK(wholeNight)->Name("peers/night")->Unit(benchmark::kMillisecond)->UseRealTime();

void bareEventsOfNs3(benchmark::State& state) {
    measure(state, runEventsOfNs3);
}
BENCHMARK(bareEventsOfNs3)->Name("peers/ns3")->Unit(benchmark::kMillisecond)->UseRealTime();

void bareSleepsOfSimGrid(benchmark::State& state) {
    measure(state, runSleepsOfSimGrid);
}
BENCHMARK(bareSleepsOfSimGrid)->Name("peers/simgrid")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

} // namespace noctara
