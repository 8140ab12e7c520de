/// Compares a reload of the settings from a real file with plain reads of the same file by libplist
/// and, if NOCTARA_PEERS is on, by GNUstep.
#ifdef NOCTARA_PEERS
#include "bench/peers/peers.h"
#endif
#include "input/temporary_folder.h"
#include "monitor/noctara_thread.h"
#include "phones/model/property_list_file.h"
#include "phones/simulated/simulated_phone.h"
#include "tests/full_settings.h"

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <fstream>
#include <iterator>
#include <string>

namespace noctara {

namespace {

std::string textOf(const std::filesystem::path& file) {
    std::ifstream bytes(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(bytes), {}};
}

/// The folder of a phone with a complete settings file.
struct PhoneFiles {
    PhoneFiles() {
        std::filesystem::create_directories(settings.parent_path());
        writePropertyListFile(settings, fullSettings(), Durability::buffered);
    }

    const TemporaryFolder root;
    const std::filesystem::path settings =
        root.path / std::filesystem::path(settingsFilePath).relative_path();
};

void reloadFromFile(benchmark::State& state) {
    const PhoneFiles files;
    SimulatedPhone phone(Scenario(), makeDirectoryFileStore(files.root.path));
    NoctaraThread monitor(phone.platform());
    for (auto _ : state)
        monitor.reloadPreferences();
}
BENCHMARK(reloadFromFile)->Name("reload/ours")->Unit(benchmark::kMicrosecond);

void parseWithLibplist(benchmark::State& state) {
    const PhoneFiles files;
    for (auto _ : state) {
        const std::string text = textOf(files.settings);
        plist_t list = nullptr;
        plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &list);
        benchmark::DoNotOptimize(list);
        plist_free(list);
    }
}
BENCHMARK(parseWithLibplist)->Name("reload/libplist")->Unit(benchmark::kMicrosecond);

#ifdef NOCTARA_PEERS
void readWithGnustep(benchmark::State& state) {
    const PhoneFiles files;
    for (auto _ : state)
        if (readWithFoundation(files.settings.c_str()) == 0)
            state.SkipWithError("the file cannot be read");
}
BENCHMARK(readWithGnustep)->Name("reload/gnustep")->Unit(benchmark::kMicrosecond);
#endif

} // namespace

} // namespace noctara
