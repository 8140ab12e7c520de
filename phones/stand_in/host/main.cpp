/// SpringBoard, the home screen of the stand-in phone. It loads the library as the loader of a
/// phone would, and plays a night. Exit codes: 0 fine, 1 the run found something wrong, 2 bad
/// input.
#include "input/bad_input.h"
#include "input/command_line.h"
#include "input/temporary_folder.h"
#include "night/chosen_scenario.h"
#include "night/night_files.h"
#include "night/story_process.h"
#include "night/trace.h"
#include "output/output_file.h"
#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/interruption.h"
#include "phones/stand_in/host/phone_in_real_time.h"
#include "phones/stand_in/host/phone_on_virtual_clock.h"
#include "phones/stand_in/host/springboard.h"
#include "phones/stand_in/host/usage.h"
#include "phones/stand_in/host/watched_foundation.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <unistd.h>

extern "C" [[gnu::weak]] void __lsan_do_leak_check();

namespace {

using namespace noctara;
namespace fs = std::filesystem;

fs::path executable() {
    return fs::read_symlink("/proc/self/exe");
}

/// The folder in which the build puts the library and the command. This program is in a folder of
/// it.
fs::path buildFolder() {
    return executable().parent_path().parent_path();
}

struct Options {
    std::optional<fs::path> scenario;
    ScenarioOverrides overrides;
    bool log = false;
    std::optional<fs::path> trace;
    std::optional<fs::path> root;
    fs::path library = buildFolder() / "Noctara.so";
    std::optional<fs::path> filter; ///< Absent: the one beside the library.
    bool realTime = false;
    double speed = 1;
    bool capabilities = false;
    bool usage = false;
};

/// Never destroyed, because the library's monitor uses it until the process ends.
InjectedPhone& makePhone(const Options& options, const Scenario& scenario, const fs::path& root) {
    if (options.realTime)
        return *new PhoneInRealTime(scenario, root, options.speed);
    return *new PhoneOnVirtualClock(scenario, root);
}

/// Without a configuration, Foundation keeps user defaults in the home folder of the user. It reads
/// the name of the configuration from the environment with which the process was started.
void startWithConfiguration(char** arguments) {
    const char* const variable = "GNUSTEP_CONFIG_FILE";
    const fs::path configuration = executable().parent_path() / "Resources/GNUstep.conf";
    const char* const named = std::getenv(variable);
    if (named && configuration == named)
        return;
    setenv(variable, configuration.c_str(), 1);
    execv(executable().c_str(), arguments);
    std::cerr << "SpringBoard: cannot start itself again: " << std::strerror(errno) << '\n';
    std::exit(foundWrong);
}

/// Ends the process without running destructors, because the monitor thread still runs. A sanitizer
/// that reports leaks at the end of a process does so first.
[[noreturn]] void endProcess(int exitCode) {
    if (__lsan_do_leak_check)
        __lsan_do_leak_check();
    _exit(exitCode);
}

void reportCapabilities() {
    if (!springBoard::scanCapabilities())
        throw BadInput("--capabilities: the device has no such report without the library");
}

/// Why the night ended early. Absent if it did not.
std::optional<std::string> playNight(InjectedPhone& phone) {
    try {
        springBoard::didFinishLaunching();
        if (!phone.playToTheEnd())
            return "it was interrupted";
    } catch (const MonitorSpins& spins) {
        return spins.what();
    }
    return std::nullopt;
}

int play(const Options& options) {
    const Scenario scenario = chosenScenario(options.scenario, options.overrides);
    std::optional<OutputFile> traceFile;
    if (options.trace)
        traceFile.emplace("--trace", *options.trace,
                          options.scenario ? std::vector<fs::path>{*options.scenario}
                                           : std::vector<fs::path>{});
    const fs::path filter =
        options.filter.value_or(fs::path(options.library).replace_extension(".plist"));
    const bool matches = injectedLibrary::matches(filter, scenario.phone.bundle);
    std::optional<TemporaryFolder> temporary;
    if (options.root)
        prepareRoot(*options.root);
    else
        temporary.emplace("springboard");
    // Start it before this process has other threads and handlers of signals.
    std::optional<StoryProcess> story;
    if (!options.capabilities)
        story.emplace(buildFolder() / "noctara",
                      storyArguments(options.scenario, options.overrides, options.log),
                      options.realTime);
    watchForInterruption();
    setUpFoundation(scenario.timezone.c_str());
    watchFoundation();

    InjectedPhone& phone =
        makePhone(options, scenario, temporary ? temporary->path : *options.root);
    std::optional<TraceWriter> trace;
    if (traceFile)
        phone.observe(trace.emplace(traceFile->stream()));
    if (story)
        phone.observe(*story);
    springBoard::begin();
    if (matches)
        injectedLibrary::inject(options.library);
    if (options.capabilities) {
        reportCapabilities();
        return 0;
    }

    const auto endedEarly = playNight(phone);
    int exitCode = story->finish(phone.clock.wall(), endedEarly);
    if (traceFile && !traceFile->keep()) {
        std::cout << "\nSomething is wrong: the trace " << traceFile->path().string()
                  << " could not be written whole.\n";
        exitCode = foundWrong;
    }
    if (options.usage)
        std::cout << '\n' << usageOfThisProcess();
    return exitCode;
}

} // namespace

int main(int count, char** arguments) {
    startWithConfiguration(arguments);
    Options options;
    CLI::App app{"SpringBoard of a stand-in phone. It loads Noctara's library, as the loader of a "
                 "phone would, and plays a night."};
    app.name("SpringBoard");
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
    app.add_option("--root", options.root,
                   "store the phone's files below this folder; a missing folder is created, and an "
                   "existing settings file is kept. Default: a temporary folder")
        ->type_name("FOLDER");
    auto* const realTime = app.add_flag(
        "--real-time", options.realTime,
        "let the threads run at the same time, and the clock with that of the machine, "
        "instead of moving the clock only while the monitor waits");
    app.add_option("--speed", options.speed,
                   "seconds that pass on the phone in one second of real time")
        ->type_name("NUMBER")
        ->check(CLI::Range(0.001, 100000.0))
        ->capture_default_str()
        ->needs(realTime);
    app.add_option("--start", options.overrides.start,
                   "local date and time to start at, such as 2014-03-01T22:30")
        ->type_name("TIME");
    app.add_option("--end", options.overrides.end,
                   "local date and time to end at, or a time such as 07:30")
        ->type_name("TIME");
    app.add_option("--library", options.library, "the library to load")
        ->type_name("FILE")
        ->check(CLI::ExistingFile);
    app.add_option("--filter", options.filter,
                   "the loader's filter; default: the property list beside the library")
        ->type_name("FILE")
        ->check(CLI::ExistingFile);
    app.add_flag("--capabilities", options.capabilities,
                 "print the capabilities that the device reports, and play no night");
    app.add_flag("--usage", options.usage, "print at the end what the process has used");

    endProcess(runCommandLine(app, count, arguments, [&] { return play(options); }));
}
