#include "command/capabilities_command.h"

#include "phones/simulated/simulated_phone.h"
#include "radios/device_capabilities.h"

namespace noctara {

void reportCapabilities(const Scenario& scenario) {
    const SimulatedPhone phone(scenario);
    DeviceCapabilities(phone.platform()).scanCapabilities();
}

} // namespace noctara
