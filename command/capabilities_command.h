/// `noctara capabilities`: lists the capabilities of the scenario's phone.
#pragma once

#include <filesystem>
#include <optional>

namespace noctara {

/// Prints the capabilities of the scenario's phone to standard output; without a scenario, of the
/// phone of the typical night. Returns the exit code of the command.
int reportCapabilities(const std::optional<std::filesystem::path>& scenario);

} // namespace noctara
