#include "tests/phones/emulated/libraries/waiter.h"

@implementation Waiter
- (void)run {
    @autoreleasepool {
        [NSDate date];
        sleep(1);
    }
}
@end

namespace {

[[gnu::constructor]] void load() {
    startWaiter();
}

} // namespace
