/// Tells the observers of a simulated phone what goes on, and knows which thread is at work.
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

    void call(std::string_view operation, std::initializer_list<CallValue> arguments = {}) const {
        if (!observers.empty())
            tell(operation, arguments, nullptr);
    }

    /// Records a call with its result, and hands the result back.
    template <typename Result>
    Result answer(std::string_view operation, std::initializer_list<CallValue> arguments,
                  Result result) const {
        if (!observers.empty()) {
            const CallValue value(result);
            tell(operation, arguments, &value);
        }
        return result;
    }
    template <typename Result>
    Result answer(std::string_view operation, Result result) const {
        return answer(operation, {}, result);
    }

    /// Records a call whose result needs another form than the one it is handed out in.
    void answered(std::string_view operation, std::initializer_list<CallValue> arguments,
                  const CallValue& result) const {
        if (!observers.empty())
            tell(operation, arguments, &result);
    }

    void happens(std::string_view action, const PropertyList& value) const {
        for (auto* observer : observers)
            observer->happens({clock.wall(), action, value});
    }

    bool onMainThread = true; ///< Which of the two threads is at work.

private:
    void tell(std::string_view operation, std::span<const CallValue> arguments,
              const CallValue* result) const {
        for (auto* observer : observers)
            observer->called({clock.wall(), onMainThread, operation, arguments, result});
    }

    const VirtualClock& clock;
    std::vector<PhoneObserver*> observers;
};

} // namespace noctara
