#include "phones/simulated/handed_over_thread.h"

#include <exception>
#include <semaphore>
#include <thread>
#include <utility>

namespace noctara {

class HandedOverThread::Stack {
public:
    explicit Stack(std::function<void()> work) : body(std::move(work)), thread([this] { run(); }) {}

    ~Stack() {
        unwinding = true;
        bodyMayRun.release();
        thread.join();
    }

    Stack(const Stack&) = delete;
    Stack& operator=(const Stack&) = delete;

    void resume() {
        if (hasEnded)
            return;
        bodyMayRun.release();
        callerMayRun.acquire();
        if (escaped)
            std::rethrow_exception(std::exchange(escaped, nullptr));
    }

    void park() {
        callerMayRun.release();
        bodyMayRun.acquire();
        if (unwinding)
            throw Unwinding{};
    }

    bool ended() const { return hasEnded; }

private:
    struct Unwinding {};

    void run() {
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

    std::function<void()> body;
    std::binary_semaphore bodyMayRun{0};
    std::binary_semaphore callerMayRun{0};
    bool unwinding = false;
    bool hasEnded = false;
    std::exception_ptr escaped;
    std::thread thread;
};

HandedOverThread::HandedOverThread(std::function<void()> body) :
    stack(std::make_unique<Stack>(std::move(body))) {}

HandedOverThread::~HandedOverThread() = default;

void HandedOverThread::resume() {
    stack->resume();
}

void HandedOverThread::park() {
    stack->park();
}

bool HandedOverThread::ended() const {
    return stack->ended();
}

} // namespace noctara
