#include "command/commands.h"
#include "command/soak_command.h"
#include "input/completion.h"
#include "soak/soak.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <memory>
#include <thread>

namespace noctara {

namespace {

constexpr std::uint64_t mostNights = 1'000'000'000;
constexpr std::uint64_t largestSeed = mostNights * mostNights;

} // namespace

void addSoakCommand(CLI::App& app, Action& action) {
    const auto options = std::make_shared<SoakOptions>();
    options->jobs = std::clamp(std::thread::hardware_concurrency(), 1U, SoakPlan::mostJobs);
    auto& command = *app.add_subcommand(
        "soak", "Plays random nights and checks that what must hold in every night does");
    completedByFiles(command
                         .add_option("SCENARIO", options->scenario,
                                     "a scenario file to check instead of random nights")
                         ->type_name(""),
                     ".toml");
    auto* const nights = command
                             .add_option("--nights", options->nights,
                                         "how many random nights to play; default: 1000")
                             ->type_name("N")
                             ->check(CLI::Range(std::uint64_t{1}, mostNights));
    auto* const seed =
        command
            .add_option("--seed", options->seed,
                        "the seed of the first night; each of the others has the next one; "
                        "default: 1")
            ->type_name("SEED")
            ->check(CLI::Range(std::uint64_t{0}, largestSeed));
    auto* const jobs = command
                           .add_option("--jobs", options->jobs,
                                       "how many nights to play at a time; default: one for each "
                                       "core")
                           ->type_name("N")
                           ->check(CLI::Range(1U, SoakPlan::mostJobs));
    command
        .add_option(
            "--save", options->save,
            "the scenario file that is written if a night fails, with the shortest scenario "
            "that still fails; default: noctara-soak-SEED.toml")
        ->type_name("FILE");
    for (auto* random : {nights, seed, jobs})
        random->excludes("SCENARIO");
    command.callback(
        [&action, options] { action = [options] { return soakNights(*options, std::cout); }; });
}

} // namespace noctara
