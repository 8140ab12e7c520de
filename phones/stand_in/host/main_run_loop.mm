#include "phones/stand_in/host/main_run_loop.h"

#import <Foundation/Foundation.h>

@interface HostWork : NSObject {
@public
    const std::function<void()>* work;
    bool done;
}
@end

@implementation HostWork

- (void)perform {
    if (work)
        (*work)();
    done = true;
}

@end

namespace noctara::mainRunLoop {

void runOnce(double longestWait) {
    @autoreleasepool {
        [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                                 beforeDate:[NSDate dateWithTimeIntervalSinceNow:longestWait]];
    }
}

void wake() {
    @autoreleasepool {
        static HostWork* const nothing = [[HostWork alloc] init];
        [nothing performSelectorOnMainThread:@selector(perform) withObject:nil waitUntilDone:NO];
    }
}

void perform(const std::function<void()>& work) {
    @autoreleasepool {
        HostWork* toDo = [[[HostWork alloc] init] autorelease];
        toDo->work = &work;
        [toDo performSelectorOnMainThread:@selector(perform) withObject:nil waitUntilDone:NO];
        // Work that this thread has sent to itself needs no waiting.
        while (!toDo->done)
            runOnce(0);
    }
}

} // namespace noctara::mainRunLoop
