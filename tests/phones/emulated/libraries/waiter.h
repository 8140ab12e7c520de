/// An object whose thread waits. A library that includes this file implements its method.
#pragma once

#import <Foundation/Foundation.h>

#include <unistd.h>

@interface Waiter : NSObject
- (void)run;
@end

/// Starts a thread that runs a new waiter.
inline void startWaiter() {
    @autoreleasepool {
        NSThread* thread = [[[NSThread alloc] initWithTarget:[[[Waiter alloc] init] autorelease]
                                                    selector:@selector(run)
                                                      object:nil] autorelease];
        [thread start];
    }
}
