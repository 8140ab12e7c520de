/// `noctara soak`: random nights, held to the invariants.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>

namespace noctara {

struct SoakOptions {
    /// Plays this one instead of random nights.
    std::optional<std::filesystem::path> scenario;

    std::uint64_t nights = 1000;
    std::uint64_t seed = 1;
    unsigned jobs = 1;

    /// Where a failing night is kept. Absent: in a file of the current folder that is named after
    /// the seed; a scenario of the user is not shortened.
    std::optional<std::filesystem::path> save;
};

/// Prints how many nights hold, and what was checked. Returns the exit code of the command.
/// `complaints` gets the progress if it is a terminal. Throws BadInput if a file cannot be used.
int soakNights(const SoakOptions& options, std::ostream& out);

} // namespace noctara
