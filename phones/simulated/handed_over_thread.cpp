#include "phones/simulated/handed_over_thread.h"

#include <utility>

namespace noctara {

HandedOverThread::HandedOverThread(std::function<void()> work) :
    body(std::move(work)), thread([this] { run(); }) {}

HandedOverThread::~HandedOverThread() {
    unwinding = true;
    bodyMayRun.release();
    thread.join();
}

void HandedOverThread::resume() {
    if (hasEnded)
        return;
    bodyMayRun.release();
    callerMayRun.acquire();
    if (escaped)
        std::rethrow_exception(std::exchange(escaped, nullptr));
}

void HandedOverThread::park() {
    callerMayRun.release();
    bodyMayRun.acquire();
    if (unwinding)
        throw Unwinding{};
}

void HandedOverThread::run() {
    bodyMayRun.acquire();
    if (!unwinding) {
        try {
            body();
        } catch (const Unwinding&) {
        } catch (...) {
            escaped = std::current_exception();
        }
    }
    hasEnded = true;
    callerMayRun.release();
}

} // namespace noctara
