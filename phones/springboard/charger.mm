#include "platform/charger.h"

#include "phones/springboard/private_classes.h"
#include "phones/springboard/services.h"

namespace noctara {

namespace {

class SpringBoardCharger final : public Charger {
public:
    ObjectRef sharedController(ClassRef controllerClass) override {
        return [static_cast<Class>(controllerClass) sharedInstance];
    }

    bool isOnAC(ObjectRef controller) override {
        @autoreleasepool {
            return [static_cast<SBUIController*>(controller) isOnAC];
        }
    }
};

} // namespace

Charger& springBoardCharger() {
    static auto& charger = *new SpringBoardCharger;
    return charger;
}

} // namespace noctara
