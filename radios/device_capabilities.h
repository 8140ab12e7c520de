/// Named capabilities of the device, as the system's graphics-services library tells them: the
/// methods of the category `UIDevice(Capabilities)`. Offered to others; nothing here calls them.
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

    /// The capability's value; absent when it has none.
    std::optional<PropertyList> fetchCapability(const std::string& name);

    /// The names of the known capabilities that the device has, in the order of the list.
    std::vector<std::string> capabilityArray();

    /// Prints a line on the device and one for every known capability on standard output.
    void scanCapabilities();

private:
    const Platform platform;
};

} // namespace noctara
