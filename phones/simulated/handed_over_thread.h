/// A thread that never runs at the same time as the one that resumes it: control is handed to and
/// fro, so that the two are one line of execution with two stacks.
#pragma once

#include <exception>
#include <functional>
#include <semaphore>
#include <thread>

namespace noctara {

class HandedOverThread {
public:
    /// The thread runs `body` from the first `resume` on.
    explicit HandedOverThread(std::function<void()> body);

    /// Unwinds the body from where it is parked.
    ~HandedOverThread();

    HandedOverThread(const HandedOverThread&) = delete;
    HandedOverThread& operator=(const HandedOverThread&) = delete;

    /// Lets the body go on until it parks or ends. Rethrows what the body lets escape. Does nothing
    /// once the body has ended.
    void resume();

    /// Called by the body: hands control back until the next `resume`. Does not return, but
    /// unwinds the body, when the object is being destroyed.
    void park();

    bool ended() const { return hasEnded; }

private:
    struct Unwinding {};

    void run();

    std::function<void()> body;
    std::binary_semaphore bodyMayRun{0};
    std::binary_semaphore callerMayRun{0};
    bool unwinding = false;
    bool hasEnded = false;
    std::exception_ptr escaped;
    std::thread thread;
};

} // namespace noctara
