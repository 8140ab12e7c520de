#include "command/soak_command.h"

#include "input/bad_input.h"
#include "input/command_line.h"
#include "input/file_reading.h"
#include "input/input_file.h"
#include "night/scenario_times.h"
#include "output/output_file.h"
#include "soak/progress_line.h"
#include "soak/soak.h"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include <chrono>
#include <cmath>
#include <string>

namespace noctara {

namespace {

using RealClock = std::chrono::steady_clock;

constexpr std::size_t mostMebibytes = 1;

std::string durationText(double seconds) {
    if (seconds < 60)
        return fmt::format("{:.1f} s", seconds);
    const auto whole = std::llround(seconds);
    return fmt::format("{} min {} s", whole / 60, whole % 60);
}

void printCounts(const SoakCounts& counts, std::ostream& out) {
    const auto table = [&](const auto& sentences, const auto& numbers) {
        for (std::size_t i = 0; i < sentences.size(); ++i)
            fmt::print(out, "{:>13}  {}\n", numbers[i], sentences[i]);
    };
    out << "\n       checks  invariant\n";
    table(invariantSentences(), counts.checks);
    out << "\n        times  a radio was not as before, because\n";
    table(excuseSentences(), counts.excuses);
}

/// Prints what is wrong and keeps the night in the file, if there is to be one.
int report(const FailingNight& night, const std::optional<std::filesystem::path>& save,
           std::ostream& out) {
    fmt::print(out, "It breaks this invariant:\n    {}\n    {}.\n", night.breach.invariant,
               night.breach.what);
    if (!save)
        return foundWrong;
    OutputFile file("--save", *save, {});
    file.stream() << night.scenario;
    if (!file.keep())
        throw BadInput(fmt::format("--save: {} cannot be written; give another file",
                                   inQuotes(save->string())));
    fmt::print(out, "The shortest scenario that breaks it is in {}.\n", shownName(*save));
    return foundWrong;
}

int checkScenario(const SoakOptions& options, std::ostream& out) {
    const std::string name = shownName(*options.scenario);
    std::string text;
    try {
        text = readFile(*options.scenario, mostMebibytes);
    } catch (const UnreadableFile& error) {
        throw BadInput(fmt::format("{}: {}; give the name of a scenario file", name, error.what()));
    }
    const auto failure = options.save ? shortestFailure(text, name) : failureOf(text, name);
    if (failure) {
        out << name << " fails. ";
        return report(*failure, options.save, out);
    }
    out << "Every invariant holds in " << name << ".\n";
    return 0;
}

} // namespace

int soakNights(const SoakOptions& options, std::ostream& out) {
    if (options.scenario)
        return checkScenario(options, out);

    const auto begin = RealClock::now();
    const auto elapsed = [&] {
        return std::chrono::duration<double>(RealClock::now() - begin).count();
    };
    SoakResult result;
    {
        ProgressLine line(options.nights);
        result = soak({options.nights, options.seed, options.jobs},
                      [&](std::uint64_t played) { line.show(played, elapsed()); });
    }
    const SoakCounts& counts = result.counts;
    if (result.failed) {
        fmt::print(out, "The night of seed {} fails. ", *result.failed);
        out << std::flush;
        const std::string name = fmt::format("Random night of seed {}", *result.failed);
        const auto failure = shortestFailure(randomNightText(*result.failed), name);
        if (!failure)
            throw std::runtime_error(name + " does not fail when it is played again");
        const std::filesystem::path usual = fmt::format("noctara-soak-{}.toml", *result.failed);
        return report(*failure, options.save.value_or(usual), out);
    }
    fmt::print(out,
               "{} random nights (seeds {} to {}): every invariant holds.\n"
               "{:.1f} hours a night, {} times quiet. {}, {:.0f} nights a second.\n",
               counts.nights, options.seed, options.seed + options.nights - 1,
               static_cast<double>(counts.seconds) / 3600 / static_cast<double>(counts.nights),
               counts.timesQuiet, durationText(elapsed()),
               static_cast<double>(counts.nights) / elapsed());
    printCounts(counts, out);
    return 0;
}

} // namespace noctara
