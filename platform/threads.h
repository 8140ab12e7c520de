/// Threads: a named one to start, and the way back to the host's main thread.
#pragma once

#include <functional>
#include <memory>

namespace noctara {

/// A started thread. Letting go of the object neither stops nor joins it.
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
    /// (`performSelectorOnMainThread:withObject:waitUntilDone:`); called there, runs it at once.
    /// `selector` names the work.
    virtual void performOnMainThread(const char* selector, const std::function<void()>& work) = 0;
};

} // namespace noctara
