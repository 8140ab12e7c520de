#include "platform/wake_scheduler.h"

#include "phones/springboard/private_functions.h"
#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

namespace noctara {

namespace {

class SpringBoardWakes final : public WakeScheduler {
public:
    void schedule(Date date, const std::string& identifier) override {
        @autoreleasepool {
            callIfPresent(CPScheduleWakeAtDateWithIdentifier, (CFDateRef)dateOf(date),
                          (CFStringRef)stringOf(identifier));
        }
    }

    void cancel(Date date, const std::string& identifier) override {
        @autoreleasepool {
            callIfPresent(CPCancelWakeAtDateWithIdentifier, (CFDateRef)dateOf(date),
                          (CFStringRef)stringOf(identifier));
        }
    }
};

} // namespace

WakeScheduler& springBoardWakes() {
    static auto& wakes = *new SpringBoardWakes;
    return wakes;
}

} // namespace noctara
