#include "platform/host_process.h"

#include "phones/springboard/private_functions.h"
#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

#include <objc/runtime.h>

namespace noctara {

namespace {

class SpringBoardProcess final : public HostProcess {
public:
    std::string bundleIdentifier() override {
        @autoreleasepool {
            return textOf([[NSBundle mainBundle] bundleIdentifier]);
        }
    }

    ClassRef findClass(const char* name) override { return objc_getClass(name); }

    void hookMessage(ClassRef hooked, const char* selector, Implementation replacement,
                     Implementation& previous) override {
        MSHookMessageEx(static_cast<Class>(hooked), sel_registerName(selector),
                        reinterpret_cast<IMP>(replacement), reinterpret_cast<IMP*>(&previous));
    }
};

} // namespace

HostProcess& springBoardProcess() {
    static auto& process = *new SpringBoardProcess;
    return process;
}

} // namespace noctara
