/// A coroutine, with a thread for its stack where there are threads. It never runs at the same time
/// as the thread that resumes it.
#pragma once

#include <functional>
#include <memory>

namespace noctara {

class HandedOverThread {
public:
    /// `body` starts at the first `resume`.
    explicit HandedOverThread(std::function<void()> body);

    /// If the body is parked, unwinds its stack. Then joins the thread.
    ~HandedOverThread();

    HandedOverThread(const HandedOverThread&) = delete;
    HandedOverThread& operator=(const HandedOverThread&) = delete;

    /// Runs the body until it parks or ends. Rethrows an exception that leaves the body. Does
    /// nothing once the body has ended.
    void resume();

    /// Called by the body: returns control to the caller of `resume` until the next `resume`.
    /// Throws, to unwind the body, if the object is being destroyed.
    void park();

    bool ended() const;

private:
    class Stack;
    std::unique_ptr<Stack> stack;
};

} // namespace noctara
