/// The scenario that a command plays.
#pragma once

#include "night/scenario_file.h"

#include <filesystem>
#include <optional>

namespace noctara {

/// Reads the scenario file, or the built-in typical night if there is none. Throws BadInput.
Scenario chosenScenario(const std::optional<std::filesystem::path>& file,
                        const ScenarioOverrides& overrides);

} // namespace noctara
