/// Starts named threads and runs work on the main thread of the host.
#pragma once

#include <functional>
#include <memory>

namespace noctara {

/// A started thread. Destroying the object neither stops nor joins the thread.
class Thread {
public:
    virtual ~Thread() = default;
};

class Threads {
public:
    virtual ~Threads() = default;

    /// Starts a thread that runs `body` once and then ends. Never null.
    virtual std::unique_ptr<Thread> start(const char* name, std::function<void()> body) = 0;

    virtual bool isMainThread() = 0;

    /// Runs `work` on the main thread and returns when it has finished
    /// (`performSelectorOnMainThread:withObject:waitUntilDone:`). On the main thread itself it runs
    /// `work` at once. `selector` is the name of the work.
    virtual void performOnMainThread(const char* selector, const std::function<void()>& work) = 0;
};

} // namespace noctara
