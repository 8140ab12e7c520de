/// SpringBoard, the home screen of the stand-in phone: loads the library as the phone's loader
/// would, and plays a night to it. Exit codes: 0 fine, 1 the run found something wrong, 2 bad
/// input.
#include "input/bad_input.h"
#include "night/chosen_scenario.h"
#include "night/night_report.h"
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

constexpr int foundWrong = 1;
constexpr int badInput = 2;

struct Options {
    std::optional<fs::path> scenario;
    ScenarioOverrides overrides;
    bool log = false;
    std::optional<fs::path> trace;
    std::optional<fs::path> root;
    fs::path library =
        fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "Noctara.so";
    std::optional<fs::path> filter; ///< Absent: the one beside the library.
    bool realTime = false;
    double speed = 1;
    bool capabilities = false;
    bool usage = false;
};

/// A folder for the phone's files: the one that is named, or one that goes with the process.
class Root {
public:
    explicit Root(const std::optional<fs::path>& named) : isTemporary(!named) {
        if (named) {
            prepareRoot(*named);
            folder = *named;
            return;
        }
        // In memory where this machine has a place for such files, unless it is told another: the
        // monitor has the list of wake-ups written anew in every cycle.
        const fs::path memory = "/dev/shm";
        const bool hasMemory = !std::getenv("TMPDIR") && access(memory.c_str(), W_OK) == 0;
        const fs::path place = hasMemory ? memory : fs::temp_directory_path();
        std::string made = (place / "springboard-XXXXXX").string();
        if (!mkdtemp(made.data()))
            throw BadInput(made + ": cannot be made; a TMPDIR with room would do");
        folder = made;
    }

    ~Root() {
        std::error_code ignored;
        if (isTemporary)
            fs::remove_all(folder, ignored);
    }

    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    fs::path folder;

private:
    bool isTemporary;
};

/// Never destroyed: the library's monitor lives on it as long as the process.
InjectedPhone& makePhone(const Options& options, const Scenario& scenario, const fs::path& root) {
    if (options.realTime)
        return *new PhoneInRealTime(scenario, root, options.speed);
    return *new PhoneOnVirtualClock(scenario, root);
}

/// Foundation would keep user defaults in the home folder of whoever plays. It looks for its
/// configuration in the environment that the process was started with.
void startWithConfiguration(char** arguments) {
    const char* const variable = "GNUSTEP_CONFIG_FILE";
    const fs::path executable = fs::read_symlink("/proc/self/exe");
    const fs::path configuration = executable.parent_path() / "Resources/GNUstep.conf";
    const char* const named = std::getenv(variable);
    if (named && configuration == named)
        return;
    setenv(variable, configuration.c_str(), 1);
    execv(executable.c_str(), arguments);
    std::cerr << "SpringBoard: cannot start itself again: " << std::strerror(errno) << '\n';
    std::exit(foundWrong);
}

/// Nobody tidies up: the monitor thread is still there. A sanitizer that looks for leaks at the end
/// of a process looks now.
[[noreturn]] void endProcess(int exitCode) {
    if (__lsan_do_leak_check)
        __lsan_do_leak_check();
    _exit(exitCode);
}

int play(const Options& options) {
    const Scenario scenario = chosenScenario(options.scenario, options.overrides);
    std::optional<TraceFile> trace;
    if (options.trace)
        trace.emplace(*options.trace, options.scenario ? std::vector<fs::path>{*options.scenario}
                                                       : std::vector<fs::path>{});
    const fs::path filter =
        options.filter.value_or(fs::path(options.library).replace_extension(".plist"));
    const bool matches = injectedLibrary::matches(filter, scenario.phone.bundle);
    watchForInterruption();
    const Root root(options.root);
    if (options.realTime)
        std::cout << std::unitbuf;
    setUpFoundation(scenario.timezone.c_str());
    watchFoundation();

    InjectedPhone& phone = makePhone(options, scenario, root.folder);
    adoptThePhonesClock();
    NightReport report(phone, std::cout, options.log, trace ? &*trace : nullptr);
    springBoard::begin();
    if (matches)
        injectedLibrary::inject(options.library);
    else
        report.story.tellOfInertness(scenario.phone.bundle);

    if (options.capabilities) {
        if (springBoard::scanCapabilities())
            return 0;
        throw BadInput("--capabilities: the device has no such report without the library");
    }

    std::optional<std::string> endedEarly;
    try {
        springBoard::didFinishLaunching();
        if (!phone.playToTheEnd())
            endedEarly = "it was interrupted";
    } catch (const MonitorSpins& spins) {
        endedEarly = spins.what();
    }
    const int exitCode = report.finish(endedEarly);
    if (options.usage)
        std::cout << '\n' << usageOfThisProcess();
    return exitCode;
}

} // namespace

int main(int count, char** arguments) {
    startWithConfiguration(arguments);
    Options options;
    CLI::App app{"SpringBoard of a stand-in phone: loads Noctara's library, as the phone's loader "
                 "would, and plays a night to it on the simulated phone."};
    app.name("SpringBoard");
    app.footer("Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.");
    app.add_option("SCENARIO", options.scenario,
                   "scenario file (see docs/scenarios.md); without one, a typical night")
        ->type_name("");
    app.add_flag("--log", options.log, "tell the lines of the system log as well");
    app.add_option("--trace", options.trace,
                   "write every call that the library makes of the phone to this file, as JSON "
                   "Lines (see docs/trace.md)")
        ->type_name("FILE");
    app.add_option("--root", options.root,
                   "keep the phone's files below this folder, made if it is missing; a settings "
                   "file that is there is kept. Default: a folder that goes with the process")
        ->type_name("FOLDER");
    auto* const realTime =
        app.add_flag("--real-time", options.realTime,
                     "let the threads run at once and the clock by itself, instead of moving the "
                     "clock when the monitor waits");
    app.add_option("--speed", options.speed,
                   "seconds that pass on the phone in a second of real time")
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
                 "print the device's report of its capabilities instead");
    app.add_flag("--usage", options.usage, "tell at the end what the process has used");

    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0)
            return app.exit(error);
        std::cerr << "SpringBoard: " << error.what() << " (--help tells what there is)\n";
        return badInput;
    }

    try {
        const int exitCode = play(options);
        if (std::cout.flush())
            endProcess(exitCode);
        std::cerr << "SpringBoard: the output could not be written whole\n";
    } catch (const BadInput& error) {
        std::cerr << "SpringBoard: " << error.what() << '\n';
        return badInput;
    } catch (const injectedLibrary::CannotInject& error) {
        std::cerr << "SpringBoard: " << error.what() << '\n';
        return badInput;
    } catch (const std::exception& error) {
        std::cerr << "SpringBoard: " << error.what() << '\n';
    }
    endProcess(foundWrong);
}
