#include "platform/clock.h"

#include "phones/springboard/services.h"

#import <Foundation/Foundation.h>

#include <ctime>
#include <unistd.h>

namespace noctara {

namespace {

class SpringBoardClock final : public Clock {
public:
    std::int64_t time() override { return std::time(nullptr); }

    Date now() override {
        @autoreleasepool {
            return {[[NSDate date] timeIntervalSince1970]};
        }
    }

    void sleep(unsigned seconds) override { ::sleep(seconds); }
};

} // namespace

Clock& springBoardClock() {
    static auto& clock = *new SpringBoardClock;
    return clock;
}

} // namespace noctara
