/// The scenario that a command is to play.
#pragma once

#include "night/scenario_file.h"

#include <filesystem>
#include <optional>

namespace noctara {

/// The scenario that is named, or the built-in typical night. Throws BadInput.
Scenario chosenScenario(const std::optional<std::filesystem::path>& file,
                        const ScenarioOverrides& overrides);

} // namespace noctara
