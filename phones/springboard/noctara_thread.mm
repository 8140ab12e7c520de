#include "phones/springboard/noctara_thread.h"

#include "host/host.h"

#include <utility>

NoctaraThread* NoctaraInstance = nil;

@implementation NoctaraThread

- (id)initWithBody:(std::function<void()>)threadBody {
    self = [super init];
    if (self)
        body = new std::function<void()>(std::move(threadBody));
    return self;
}

- (void)run {
    @autoreleasepool {
        (*body)();
    }
}

- (void)stop {
    noctara::NoctaraInstance->stop();
}

@end
