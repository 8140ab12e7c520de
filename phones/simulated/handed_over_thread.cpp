#include "phones/simulated/handed_over_thread.h"

#include <exception>
#include <semaphore>
#include <thread>
#include <utility>

namespace noctara {

namespace {

class OwnThread final : public HandedOverThread {
public:
    explicit OwnThread(std::function<void()> work) :
        body(std::move(work)), thread([this] { run(); }) {}

    ~OwnThread() override {
        unwinding = true;
        bodyMayRun.release();
        thread.join();
    }

    void resume() override {
        if (hasEnded)
            return;
        bodyMayRun.release();
        callerMayRun.acquire();
        if (escaped)
            std::rethrow_exception(std::exchange(escaped, nullptr));
    }

    void park() override {
        callerMayRun.release();
        bodyMayRun.acquire();
        if (unwinding)
            throw Unwinding{};
    }

    bool ended() const override { return hasEnded; }

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

} // namespace

std::unique_ptr<HandedOverThread> makeHandedOverThread(std::function<void()> body) {
    return std::make_unique<OwnThread>(std::move(body));
}

} // namespace noctara
