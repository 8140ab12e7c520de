#import <Foundation/Foundation.h>

#include <unistd.h>

@interface Waiter : NSObject
- (void)run;
@end

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
    @autoreleasepool {
        NSThread* thread = [[[NSThread alloc] initWithTarget:[[[Waiter alloc] init] autorelease]
                                                    selector:@selector(run)
                                                      object:nil] autorelease];
        [thread start];
    }
}

} // namespace
