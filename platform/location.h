/// Location services, system-wide (class methods of `CLLocationManager`).
#pragma once

namespace noctara {

class LocationManager {
public:
    virtual ~LocationManager() = default;

    virtual bool locationServicesEnabled() = 0;
    virtual void setLocationServicesEnabled(bool enabled) = 0;
};

} // namespace noctara
