/// Tells the observers of a simulated phone of calls and events, and stores which thread is
/// running.
#pragma once

#include "phones/model/phone_observer.h"
#include "phones/model/virtual_clock.h"

#include <initializer_list>
#include <vector>

namespace noctara {

class Recorder {
public:
    explicit Recorder(const VirtualClock& phoneClock) : clock(phoneClock) {}

    void add(PhoneObserver& observer) { observers.push_back(&observer); }

    void call(Operation operation, std::initializer_list<CallValue> arguments = {}) const {
        if (!observers.empty())
            tell(operation, arguments, nullptr);
    }

    /// Records a call with its result and returns the result.
    template <typename Result>
    Result answer(Operation operation, std::initializer_list<CallValue> arguments,
                  Result result) const {
        if (!observers.empty()) {
            const CallValue value(result);
            tell(operation, arguments, &value);
        }
        return result;
    }
    template <typename Result>
    Result answer(Operation operation, Result result) const {
        return answer(operation, {}, result);
    }

    /// Records a call whose result is recorded in another form than it is returned in.
    void answered(Operation operation, std::initializer_list<CallValue> arguments,
                  const CallValue& result) const {
        if (!observers.empty())
            tell(operation, arguments, &result);
    }

    void happens(const Event& event) const {
        for (auto* observer : observers)
            observer->happens({clock.wall(), event});
    }

    bool onMainThread = true; ///< Which of the two threads is running.

private:
    // Not inlined, so that calls without observers stay short.
    [[gnu::noinline]] void tell(Operation operation, std::span<const CallValue> arguments,
                                const CallValue* result) const {
        for (auto* observer : observers)
            observer->called({clock.wall(), onMainThread, operation, arguments, result});
    }

    const VirtualClock& clock;
    std::vector<PhoneObserver*> observers;
};

} // namespace noctara
