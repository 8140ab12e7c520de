#include "tests/phones/emulated/libraries/waiter.h"

@implementation Waiter
- (void)run {
    sleep(1);
}
@end

namespace {

[[gnu::constructor]] void load() {
    startWaiter();
}

} // namespace
