#import <Foundation/Foundation.h>

namespace {

[[gnu::noinline]] void releaseWhatThePoolHas() {
    [[NSDate date] release];
}

[[gnu::constructor]] void load() {
    @autoreleasepool {
        releaseWhatThePoolHas();
    }
}

} // namespace
