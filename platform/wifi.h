/// The home screen's Wi-Fi manager (`SBWiFiManager`).
#pragma once

#include "platform/host_process.h"
#include "platform/property_list.h"

#include <optional>

namespace noctara {

class WiFiManager {
public:
    virtual ~WiFiManager() = default;

    virtual bool isPowered() = 0;
    virtual bool wiFiEnabled() = 0;
    virtual void setWiFiEnabled(bool enabled) = 0;

    /// Sends the message `selector`, which takes no arguments, and returns its result. Absent if it
    /// has none.
    virtual std::optional<PropertyList> perform(const char* selector) = 0;
};

class WiFi {
public:
    virtual ~WiFi() = default;

    /// `sharedInstance` of the class found by the name "SBWiFiManager". Null for a null class.
    virtual WiFiManager* sharedInstance(ClassRef managerClass) = 0;
};

} // namespace noctara
