#include "platform/threads.h"

#include "phones/springboard/noctara_thread.h"
#include "phones/springboard/services.h"

#import <Foundation/Foundation.h>

#include <objc/runtime.h>
#include <utility>

/// The receiver on the main thread. Its method for the selector performs the work.
@interface NoctaraMainThreadWork : NSObject {
@public
    const std::function<void()>* work;
}
@end

@implementation NoctaraMainThreadWork
@end

namespace noctara {

namespace {

void doWork(id receiver, SEL) {
    (*static_cast<NoctaraMainThreadWork*>(receiver)->work)();
}

class SpringBoardThread final : public Thread {
public:
    explicit SpringBoardThread(NSThread* started) : thread(started) {}
    ~SpringBoardThread() override { [thread release]; }

private:
    NSThread* thread;
};

class SpringBoardThreads final : public Threads {
public:
    std::unique_ptr<Thread> start(const char* name, std::function<void()> body) override {
        @autoreleasepool {
            NoctaraInstance = [[NoctaraThread alloc] initWithBody:std::move(body)];
            NSThread* thread = [[NSThread alloc] initWithTarget:NoctaraInstance
                                                       selector:@selector(run)
                                                         object:nil];
            [thread setName:[NSString stringWithUTF8String:name]];
            [thread start];
            return std::make_unique<SpringBoardThread>(thread);
        }
    }

    bool isMainThread() override { return [NSThread isMainThread]; }

    void performOnMainThread(const char* selectorName, const std::function<void()>& work) override {
        @autoreleasepool {
            // The selector names the work in a backtrace of the main thread.
            const SEL selector = sel_registerName(selectorName);
            class_addMethod([NoctaraMainThreadWork class], selector, reinterpret_cast<IMP>(doWork),
                            "v@:");
            NoctaraMainThreadWork* receiver = [[[NoctaraMainThreadWork alloc] init] autorelease];
            receiver->work = &work;
            [receiver performSelectorOnMainThread:selector withObject:nil waitUntilDone:YES];
        }
    }
};

} // namespace

Threads& springBoardThreads() {
    static auto& threads = *new SpringBoardThreads;
    return threads;
}

} // namespace noctara
