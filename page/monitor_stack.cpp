/// The monitor's stack on a page, which has no threads: the body runs in the caller's stack and
/// cannot be resumed after it has parked.
#include "phones/simulated/handed_over_thread.h"

#include <stdexcept>
#include <utility>

namespace noctara {

class HandedOverThread::Stack {
public:
    explicit Stack(std::function<void()> work) : body(std::move(work)) {}

    void resume() {
        if (hasEnded)
            return;
        if (hasParked)
            throw std::logic_error("without threads, a night can only be played to its end");
        try {
            body();
        } catch (const Unwinding&) {
            return;
        } catch (...) {
            hasEnded = true;
            throw;
        }
        hasEnded = true;
    }

    void park() {
        hasParked = true;
        throw Unwinding{};
    }

    bool ended() const { return hasEnded; }

private:
    struct Unwinding {};

    std::function<void()> body;
    bool hasParked = false;
    bool hasEnded = false;
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
