/// Plays a scenario on the simulated phone and on the stand-in phone, which loads the library. The
/// monitor has to do the same on both.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

/// The programs that play, with the arguments that stand before the scenario's name. Each is run as
/// `PROGRAM... SCENARIO --trace FILE`, and exits with 0, or with 1 when it found the night wrong.
struct Players {
    std::vector<std::string> simulated{NOCTARA_COMMAND, "night"};
    std::vector<std::string> injected{NOCTARA_SPRINGBOARD, "--filter", NOCTARA_OPEN_FILTER};
};

struct Agreement {
    /// Nothing when the two agree. Else what is wrong, where the files of the play are, and how to
    /// play them again.
    std::optional<std::string> difference;
    std::size_t lines = 0;       ///< Of the simulated phone's trace.
    std::size_t sleepStates = 0; ///< How often that phone went into the sleep state.
};

/// Plays the scenario through both, one after the other, and compares the traces. The traces and
/// what the programs print become files beside the scenario's, with its name; they stay.
Agreement playBoth(const std::filesystem::path& scenario, const Players& players = {});

/// Writes the random scenario of this seed into the folder, as a file that is named for it.
std::filesystem::path writeRandomScenario(std::uint64_t seed, const std::filesystem::path& folder);

} // namespace noctara
