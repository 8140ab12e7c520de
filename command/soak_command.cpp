#include "command/soak_command.h"

#include "input/bad_input.h"
#include "input/command_line.h"
#include "input/input_file.h"
#include "night/scenario_file.h"
#include "output/output_file.h"
#include "output/progress_line.h"
#include "soak/soak.h"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include <chrono>
#include <cmath>
#include <stdexcept>
#include <string>

namespace noctara {

namespace {

using RealClock = std::chrono::steady_clock;

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

void save(const std::string& scenario, const std::filesystem::path& place, std::ostream& out) {
    OutputFile file("--save", place, {});
    file.stream() << scenario;
    if (!file.keep())
        throw BadInput(fmt::format("--save: {} cannot be written; give another file",
                                   inQuotes(place.string())));
    fmt::print(out, "The shortest scenario that breaks it is in {}.\n", shownName(place));
}

/// Plays the night and prints how it fails. Writes the shortest scenario that fails like it to
/// `place`, if there is one. False if the night does not fail.
bool reportFailure(const Scenario& scenario, const std::string& name,
                   const std::optional<std::filesystem::path>& place, std::ostream& out) {
    const auto breach = playApart(scenario);
    if (!breach)
        return false;
    fmt::print(out, "{} fails. It breaks this invariant:\n    {}\n    {}.\n", name,
               breach->invariant, breach->what);
    out << std::flush;
    if (place)
        save(shortestFailure(scenario, *breach, name), *place, out);
    return true;
}

int checkScenario(const SoakOptions& options, std::ostream& out) {
    const std::string name = shownName(*options.scenario);
    if (reportFailure(readScenario(*options.scenario), name, options.save, out))
        return foundWrong;
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
        result = soak(
            {options.nights, options.seed, options.jobs},
            [](std::uint64_t seed, SoakCounts& counts) {
                return playWatched(randomNight(seed), counts);
            },
            [&](std::uint64_t played) { line.show(played, elapsed()); });
    }
    if (result.failed) {
        const std::uint64_t seed = *result.failed;
        const std::string name = fmt::format("The night of seed {}", seed);
        const auto place = options.save.value_or(fmt::format("noctara-soak-{}.toml", seed));
        if (!reportFailure(randomNight(seed), name, place, out))
            throw std::runtime_error(name + " does not fail when it is played again");
        return foundWrong;
    }
    const SoakCounts& counts = result.counts;
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
