#import <Foundation/Foundation.h>

namespace {

[[gnu::constructor]] void releaseTwice() {
    NSThread* thread = [[NSThread alloc] init];
    [thread release];
    [thread release];
}

} // namespace
