#import <Foundation/Foundation.h>

namespace {

[[gnu::constructor]] void makeAnObject() {
    [[[NSObject alloc] init] release];
    NSLog(@"made");
}

} // namespace
