#include "command/capabilities_command.h"

#include "night/chosen_scenario.h"
#include "phones/simulated/simulated_phone.h"
#include "radios/device_capabilities.h"

namespace noctara {

int reportCapabilities(const std::optional<std::filesystem::path>& scenario) {
    const SimulatedPhone phone(chosenScenario(scenario, {}));
    DeviceCapabilities(phone.platform()).scanCapabilities();
    return 0;
}

} // namespace noctara
