/// The monitor on a page, which has no threads: it runs in the caller's stack, and cannot be
/// resumed after it has parked.
#include "phones/simulated/handed_over_thread.h"

#include <stdexcept>
#include <utility>

namespace noctara {

namespace {

class CallersStack final : public HandedOverThread {
public:
    explicit CallersStack(std::function<void()> work) : body(std::move(work)) {}

    void resume() override {
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

    /// Unwinds the body at once, because nothing can resume it.
    void park() override {
        hasParked = true;
        throw Unwinding{};
    }

    bool ended() const override { return hasEnded; }

private:
    struct Unwinding {};

    std::function<void()> body;
    bool hasParked = false;
    bool hasEnded = false;
};

} // namespace

std::unique_ptr<HandedOverThread> makeHandedOverThread(std::function<void()> body) {
    return std::make_unique<CallersStack>(std::move(body));
}

} // namespace noctara
