/// The monitor as an Objective-C object, for other code in SpringBoard to send messages to.
#pragma once

#import <Foundation/Foundation.h>

#include <functional>

/// The target of the monitor thread.
@interface NoctaraThread : NSObject {
@private
    const std::function<void()>* body;
}

- (id)initWithBody:(std::function<void()>)threadBody;

/// The body of the monitor thread.
- (void)run;

/// Lets the monitor's main loop end at its next test. Any thread.
- (void)stop;

@end

/// The object whose thread was started; null until SpringBoard has finished launching, and never
/// cleared. Written on the main thread. The library exports this symbol.
extern "C" [[gnu::visibility("default")]] NoctaraThread* NoctaraInstance;
