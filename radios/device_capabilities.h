/// Named capabilities of the device, from the system's GraphicsServices library: the methods of the
/// category `UIDevice(Capabilities)`. The monitor does not use them.
#pragma once

#include "platform/platform.h"
#include "platform/property_list.h"

#include <optional>
#include <string>
#include <vector>

namespace noctara {

class DeviceCapabilities {
public:
    explicit DeviceCapabilities(const Platform& platform);

    bool supportsCapability(const std::string& name);

    /// The value of the capability. Absent if it has none.
    std::optional<PropertyList> fetchCapability(const std::string& name);

    /// The names of the known capabilities that the device has, in the order of the list.
    std::vector<std::string> capabilityArray();

    /// Prints a line about the device, and one for each known capability, to standard output.
    void scanCapabilities();

private:
    const Platform platform;
};

} // namespace noctara
