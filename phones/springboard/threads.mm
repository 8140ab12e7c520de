#include "phones/springboard/threads.h"

#include "phones/springboard/noctara_thread.h"

#include <objc/runtime.h>

namespace noctara {

namespace {

class SpringBoardThread final : public Thread {
public:
    explicit SpringBoardThread(NSThread* started) : thread(started) {}
    ~SpringBoardThread() override { [thread release]; }

private:
    NSThread* thread;
};

} // namespace

std::unique_ptr<Thread> SpringBoardThreads::start(const char* name, std::function<void()>) {
    @autoreleasepool {
        NSThread* thread = [[NSThread alloc] initWithTarget:monitor
                                                   selector:@selector(run)
                                                     object:nil];
        [thread setName:[NSString stringWithUTF8String:name]];
        [thread start];
        return std::make_unique<SpringBoardThread>(thread);
    }
}

void SpringBoardThreads::performOnMainThread(const char* selector, const std::function<void()>&) {
    @autoreleasepool {
        [monitor performSelectorOnMainThread:sel_registerName(selector)
                                  withObject:nil
                               waitUntilDone:YES];
    }
}

} // namespace noctara
