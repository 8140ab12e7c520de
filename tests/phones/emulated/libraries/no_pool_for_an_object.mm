#include "tests/phones/emulated/libraries/waiter.h"

@implementation Waiter
- (void)run {
    [NSDate date];
    @autoreleasepool {
        sleep(1);
    }
}
@end

namespace {

[[gnu::constructor]] void load() {
    startWaiter();
}

} // namespace
