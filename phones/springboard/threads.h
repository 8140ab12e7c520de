/// The threads of a monitor that is an Objective-C object.
#pragma once

#include "platform/threads.h"

#import <Foundation/Foundation.h>

namespace noctara {

/// Sends the object the message `run` on the monitor thread, and on the main thread the message
/// that the work is named after. The functions that the core passes are not called: the methods of
/// the object do the same.
class SpringBoardThreads final : public Threads {
public:
    /// The object is not retained.
    explicit SpringBoardThreads(NSObject* monitorObject) : monitor(monitorObject) {}

    std::unique_ptr<Thread> start(const char* name, std::function<void()>) override;
    bool isMainThread() override { return [NSThread isMainThread]; }
    void performOnMainThread(const char* selector, const std::function<void()>&) override;

private:
    NSObject* const monitor;
};

} // namespace noctara
