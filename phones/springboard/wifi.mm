#include "platform/wifi.h"

#include "phones/springboard/private_classes.h"
#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

#include <objc/runtime.h>

namespace noctara {

namespace {

class SpringBoardWiFi final : public WiFi, private WiFiManager {
public:
    WiFiManager* sharedInstance(ClassRef managerClass) override {
        manager = (SBWiFiManager*)[static_cast<Class>(managerClass) sharedInstance];
        return manager ? this : nullptr;
    }

private:
    bool isPowered() override { return [manager isPowered]; }
    bool wiFiEnabled() override { return [manager wiFiEnabled]; }
    void setWiFiEnabled(bool enabled) override { [manager setWiFiEnabled:enabled]; }

    std::optional<PropertyList> perform(const char* selector) override {
        @autoreleasepool {
            id answer = [manager performSelector:sel_registerName(selector)];
            return answer ? std::optional(valueOf(answer)) : std::nullopt;
        }
    }

    SBWiFiManager* manager = nil;
};

} // namespace

WiFi& springBoardWiFi() {
    static auto& wifi = *new SpringBoardWiFi;
    return wifi;
}

} // namespace noctara
