/// A coroutine. It never runs at the same time as the code that resumes it.
#pragma once

#include <functional>
#include <memory>

namespace noctara {

class HandedOverThread {
public:
    HandedOverThread() = default;
    HandedOverThread(const HandedOverThread&) = delete;
    HandedOverThread& operator=(const HandedOverThread&) = delete;

    /// If the body is parked, unwinds its stack.
    virtual ~HandedOverThread() = default;

    /// Runs the body until it parks or ends. Rethrows an exception that leaves the body. Does
    /// nothing once the body has ended.
    virtual void resume() = 0;

    /// Called by the body: returns control to the caller of `resume` until the next `resume`.
    /// Throws, to unwind the body, if the object is being destroyed.
    virtual void park() = 0;

    virtual bool ended() const = 0;
};

/// `body` starts at the first `resume`. It runs in a thread of its own. On a web page it runs in
/// the thread of the caller.
std::unique_ptr<HandedOverThread> makeHandedOverThread(std::function<void()> body);

} // namespace noctara
