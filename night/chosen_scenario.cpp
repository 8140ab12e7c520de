#include "night/chosen_scenario.h"

#include "night/typical_night.h"

namespace noctara {

Scenario chosenScenario(const std::optional<std::filesystem::path>& file,
                        const ScenarioOverrides& overrides) {
    return file ? readScenario(*file, overrides)
                : parseScenario(typicalNight, "the typical night", overrides);
}

} // namespace noctara
