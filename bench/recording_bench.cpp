/// The time to judge a recording of 200 000 readings, which is an eighth of an hour at a rate of
/// 400 a second.
#include "command/detect_command.h"
#include "input/temporary_folder.h"

#include <benchmark/benchmark.h>

#include <fstream>
#include <sstream>

namespace noctara {

namespace {

void detectRecording(benchmark::State& state) {
    constexpr int readings = 200'000;
    const TemporaryFolder folder;
    DetectOptions options;
    options.file = folder.path / "recording.csv";
    std::ofstream lines(options.file);
    lines << "time;x;y;z\n";
    for (int i = 0; i < readings; ++i)
        lines << i * 0.0025 << ";-0,1" << i % 7 << "849;0,14704;9,7" << i % 9 << "805\n";
    lines.close();
    for (auto _ : state) {
        std::ostringstream out;
        std::ostringstream complaints;
        detect(options, out, complaints);
        benchmark::DoNotOptimize(out);
    }
    state.SetItemsProcessed(state.iterations() * readings);
}
BENCHMARK(detectRecording)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace noctara
