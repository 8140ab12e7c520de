/// Plays a scenario on the simulated phone, on the stand-in phone and on the emulated phone. The
/// last two load the library. The monitor has to do the same on all of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

/// A program that plays, with the arguments that precede the name of the scenario. It is run as
/// `PROGRAM... SCENARIO --trace FILE`. It exits with 0, or with 1 if something is wrong with the
/// night.
struct Player {
    std::string name;
    std::vector<std::string> command;
    /// With this option and the number of a line of the trace, the program prints from which place
    /// in the library that call came. Empty if it cannot tell.
    std::string placeOption = {};
};

/// The first is compared with each of the others.
using Players = std::vector<Player>;

inline const Players allPhones{
    {"simulated", {NOCTARA_COMMAND, "night"}},
    {"stand-in", {NOCTARA_SPRINGBOARD, "--filter", NOCTARA_OPEN_FILTER}},
    {"emulated", {NOCTARA_EMULATED_SPRINGBOARD}, "--place-of-line"},
};

struct Agreement {
    /// Absent if all agree. Otherwise what is wrong, where the files of the play are, and how to
    /// play them again.
    std::optional<std::string> difference;
    std::size_t lines = 0;       ///< In the trace of the first.
    std::size_t sleepStates = 0; ///< How often the first went into the sleep state.
};

/// Plays the scenario with each program, one after the other, and compares the traces. The traces
/// and the outputs of the programs become files beside the scenario, with its name; they stay.
Agreement playOnAll(const std::filesystem::path& scenario, const Players& players = allPhones);

/// Writes the random scenario of this seed into the folder, as a file that is named for it.
std::filesystem::path writeRandomScenario(std::uint64_t seed, const std::filesystem::path& folder);

} // namespace noctara
