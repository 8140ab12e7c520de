#include "platform/location.h"

#include "platform/springboard/private_classes.h"
#include "platform/springboard/services.h"

namespace noctara {

namespace {

class SpringBoardLocation final : public LocationManager {
public:
    bool locationServicesEnabled() override { return [CLLocationManager locationServicesEnabled]; }

    void setLocationServicesEnabled(bool enabled) override {
        [CLLocationManager setLocationServicesEnabled:enabled];
    }
};

} // namespace

LocationManager& springBoardLocation() {
    static auto& location = *new SpringBoardLocation;
    return location;
}

} // namespace noctara
