/// SpringBoard of the emulated phone: loads the library for the phone itself, and plays a night to
/// it. Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.
#include "input/bad_input.h"
#include "input/command_line.h"
#include "night/chosen_scenario.h"
#include "night/story_process.h"
#include "night/trace.h"
#include "output/output_file.h"
#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/process.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <iostream>
#include <random>
#include <sys/resource.h>

namespace {

using namespace noctara;
using namespace noctara::emulated;
namespace fs = std::filesystem;

/// Where the build puts the library and the command; this program lies in a folder of it.
fs::path buildFolder() {
    return fs::read_symlink("/proc/self/exe").parent_path().parent_path();
}

/// A phone loads a library at another address each time.
Address randomSlide() {
    constexpr Address page = 0x4000;
    std::random_device random;
    return page * (1 + random() % 0x10000);
}

struct Options {
    std::optional<fs::path> scenario;
    ScenarioOverrides overrides;
    bool log = false;
    std::optional<fs::path> trace;
    Loading loading{buildFolder() / "ios/Noctara.dylib", randomSlide(), {}};
    bool usage = false;
    std::optional<std::size_t> line; ///< Of the trace, whose place in the library is wanted.
};

/// Prints from which place in the library the call of one line of the trace came.
class PlaceOfLine final : public PhoneObserver {
public:
    PlaceOfLine(std::size_t wantedLine, EmulatedPhone& ofPhone) :
        wanted(wantedLine), phone(ofPhone) {}

    void called(const noctara::Call& call) override {
        if (++line != wanted)
            return;
        const Process& process = phone.emulatedProcess();
        std::cout << "Line " << line << " was written "
                  << process.whereabouts(call.onMainThread ? *process.main : *process.monitor)
                  << '\n';
    }
    void happens(const Happening&) override { ++line; }

private:
    const std::size_t wanted;
    EmulatedPhone& phone;
    std::size_t line = 0;
};

/// Plays the night. Returns why it ended early, if it did.
std::optional<std::string> playNight(EmulatedPhone& phone) {
    try {
        if (!phone.playNight())
            return "the library did what no phone survives";
    } catch (const MonitorSpins& spins) {
        return spins.what();
    }
    return std::nullopt;
}

std::string usageOf(const Process& process) {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const std::uint64_t instructions = process.main->instructions + process.monitor->instructions;
    return fmt::format("instructions of the library {}, processor time {:.1f} s, memory {} MiB\n",
                       instructions,
                       static_cast<double>(used.ru_utime.tv_sec) +
                           static_cast<double>(used.ru_utime.tv_usec) / 1e6,
                       used.ru_maxrss / 1024);
}

std::unique_ptr<EmulatedPhone> makePhone(const Options& options, const Scenario& scenario) {
    try {
        return std::make_unique<EmulatedPhone>(scenario, makeMemoryFileStore(), options.loading);
    } catch (const BadLibrary& error) {
        throw BadInput(options.loading.library.string() +
                       ": a phone does not load it: " + error.what());
    }
}

int play(const Options& options) {
    const Scenario scenario = chosenScenario(options.scenario, options.overrides);
    std::optional<OutputFile> traceFile;
    if (options.trace)
        traceFile.emplace("--trace", *options.trace,
                          options.scenario ? std::vector<fs::path>{*options.scenario}
                                           : std::vector<fs::path>{});
    const auto phone = makePhone(options, scenario);
    Process& process = phone->emulatedProcess();
    if (options.usage) {
        process.main->countInstructions();
        process.monitor->countInstructions();
    }
    StoryProcess story(buildFolder() / "noctara",
                       storyArguments(options.scenario, options.overrides, options.log), false);
    std::optional<TraceWriter> trace;
    if (traceFile)
        phone->observe(trace.emplace(traceFile->stream()));
    phone->observe(story);
    std::optional<PlaceOfLine> place;
    if (options.line)
        phone->observe(place.emplace(*options.line, *phone));

    const auto endedEarly = playNight(*phone);
    int exitCode = story.finish(phone->clock.wall(), endedEarly);
    if (traceFile && !traceFile->keep()) {
        std::cout << "\nSomething is wrong: the trace " << traceFile->path().string()
                  << " could not be written whole.\n";
        exitCode = foundWrong;
    }
    for (const auto& finding : process.findings) {
        std::cout << "\nSomething is wrong: " << finding << ".\n";
        exitCode = foundWrong;
    }
    if (!process.findings.empty())
        std::cout << fmt::format(
            "\nThe library was at {0:#x}. To load it there again: --slide {0:#x}\n", process.slide);
    if (options.usage)
        std::cout << '\n' << usageOf(process);
    return exitCode;
}

} // namespace

int main(int count, char** arguments) {
    Options options;
    CLI::App app{"SpringBoard of an emulated phone. It runs Noctara's library for the phone itself "
                 "in an emulated processor, and plays a night."};
    app.name("EmulatedSpringBoard");
    app.footer("Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.");
    app.add_option("SCENARIO", options.scenario,
                   "scenario file (see docs/scenarios.md); without one, a typical night")
        ->type_name("");
    app.add_flag("--log", options.log, "print the lines of the system log as well");
    app.add_option(
           "--trace", options.trace,
           "write every call of the library and every event to this file, as JSON Lines (see "
           "docs/trace.md)")
        ->type_name("FILE");
    app.add_option("--start", options.overrides.start,
                   "local date and time to start at, such as 2014-03-01T22:30")
        ->type_name("TIME");
    app.add_option("--end", options.overrides.end,
                   "local date and time to end at, or a time such as 07:30")
        ->type_name("TIME");
    app.add_option("--library", options.loading.library, "the library to load")
        ->type_name("FILE")
        ->check(CLI::ExistingFile);
    app.add_option("--slide", options.loading.slide,
                   "load the library at this address, a multiple of 16 KiB; default: a random one")
        ->type_name("ADDRESS")
        ->check([](const std::string& text) {
            Address slide = 0;
            const bool fits = CLI::detail::lexical_cast(text, slide) && slide % 0x4000 == 0 &&
                              slide > 0 && slide < 0x8000'0000;
            return fits ? std::string() : "a multiple of 0x4000 between 0x4000 and 0x7fffc000";
        });
    app.add_option("--without", options.loading.without,
                   "be a system that lacks this symbol, class or library")
        ->type_name("NAME")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app.add_option("--place-of-line", options.line,
                   "print from which place in the library the call of this line of the trace comes")
        ->type_name("NUMBER");
    app.add_flag("--usage", options.usage, "count the instructions and report them at the end");

    return runCommandLine(app, count, arguments, [&] { return play(options); });
}
