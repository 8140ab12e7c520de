/// `scripts/agree`: plays random scenarios on all phones and reports whether the traces agree.
#include "input/command_line.h"
#include "input/temporary_folder.h"
#include "tests/agreement/agreement.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace noctara {

namespace {

namespace fs = std::filesystem;

/// The number of disagreements after which no more scenarios are played.
constexpr std::uint64_t mostDisagreements = 5;

/// The number of plays after which a line reports the progress.
constexpr std::uint64_t playsPerReport = 50;

class Agreements {
public:
    Agreements(std::uint64_t number, std::uint64_t first) : count(number), firstSeed(first) {}

    /// True when all agree.
    bool play() {
        std::vector<std::thread> threads;
        for (unsigned left = std::max(2U, std::thread::hardware_concurrency()); left > 0; --left)
            threads.emplace_back([this] { playNext(); });
        for (auto& thread : threads)
            thread.join();
        report();
        if (disagreed != 0)
            temporary.keep();
        return disagreed == 0;
    }

private:
    void playNext() {
        for (std::uint64_t next = begun++; next < count && disagreed < mostDisagreements;
             next = begun++)
            playOne(firstSeed + next);
    }

    void playOne(std::uint64_t seed) {
        const fs::path own = folder / std::to_string(seed);
        Agreement agreement;
        try {
            fs::create_directory(own);
            agreement = playOnAll(writeRandomScenario(seed, own));
            if (!agreement.difference)
                fs::remove_all(own);
        } catch (const std::exception& error) {
            agreement.difference = std::string(error.what()) + '\n';
        }
        note(seed, agreement);
    }

    void note(std::uint64_t seed, const Agreement& agreement) {
        const std::lock_guard guard(lock);
        lines += agreement.lines;
        sleepStates += agreement.sleepStates;
        if (agreement.difference) {
            ++disagreed;
            std::cout << "Seed " << seed << ": " << *agreement.difference
                      << "To play it again: scripts/agree 1 " << seed << "\n\n"
                      << std::flush;
        }
        if (++played % playsPerReport == 0 && played < count)
            std::cout << played << " of " << count << " played\n" << std::flush;
    }

    void report() const {
        std::cout << played - disagreed << " of " << played << " random scenarios agree (seeds "
                  << firstSeed << " to " << firstSeed + count - 1 << "): " << lines
                  << " lines compared, " << sleepStates << " times quiet\n";
        if (played < count)
            std::cout << "The other " << count - played << " were not played: the first "
                      << "disagreements tell enough.\n";
    }

    const std::uint64_t count;
    const std::uint64_t firstSeed;
    TemporaryFolder temporary{"noctara-agreement"};
    const fs::path folder = temporary.path;
    std::atomic<std::uint64_t> begun = 0;
    std::atomic<std::uint64_t> disagreed = 0;

    std::mutex lock; ///< Guards what follows, and the output.
    std::uint64_t played = 0;
    std::size_t lines = 0;
    std::size_t sleepStates = 0;
};

} // namespace

} // namespace noctara

int main(int argumentCount, char** arguments) {
    using namespace noctara;
    constexpr std::uint64_t most = 1'000'000'000;
    constexpr std::uint64_t largestSeed = most * most;
    std::uint64_t count = 200;
    std::uint64_t firstSeed = 1;
    CLI::App app{"Plays random scenarios on the simulated phone, and with the library on the "
                 "stand-in phone and on the emulated phone, and compares the traces."};
    app.name("agree");
    app.add_option("N", count, "how many scenarios")
        ->check(CLI::Range(std::uint64_t{1}, most))
        ->capture_default_str();
    app.add_option("FIRST-SEED", firstSeed, "seed of the first; the others have the next ones")
        ->check(CLI::Range(std::uint64_t{0}, largestSeed))
        ->capture_default_str();
    app.footer("Exit codes: 0 all agree, 1 some do not, 2 bad input.");
    return runCommandLine(app, argumentCount, arguments,
                          [&] { return Agreements(count, firstSeed).play() ? 0 : foundWrong; });
}
