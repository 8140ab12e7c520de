#include "platform/location.h"

#include "phones/springboard/private_classes.h"
#include "phones/springboard/services.h"

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
