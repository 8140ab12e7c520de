#include "platform/device.h"

#include "phones/springboard/services.h"

#import <CoreFoundation/CoreFoundation.h>
#import <UIKit/UIKit.h>

#include <sys/utsname.h>

namespace noctara {

namespace {

class SpringBoardDevice final : public Device {
public:
    std::string machine() override {
        utsname names = {};
        uname(&names);
        return names.machine;
    }

    std::int32_t userInterfaceIdiom() override {
        @autoreleasepool {
            return static_cast<std::int32_t>([[UIDevice currentDevice] userInterfaceIdiom]);
        }
    }

    double coreFoundationVersionNumber() override { return kCFCoreFoundationVersionNumber; }
};

} // namespace

Device& springBoardDevice() {
    static auto& device = *new SpringBoardDevice;
    return device;
}

} // namespace noctara
