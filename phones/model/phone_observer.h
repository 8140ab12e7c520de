/// An observer of a phone. It is told of every call of the monitor and every event, in order.
#pragma once

#include "phones/model/event.h"
#include "phones/model/operation.h"
#include "platform/motion.h"
#include "platform/property_list.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace noctara {

/// An argument or a result. Its pointers and views are valid only while the observer is being told.
/// std::monostate is null.
using CallValue =
    std::variant<std::monostate, bool, std::int64_t, double, std::string_view, Date, Acceleration,
                 const PropertyList*, const Dictionary*, std::span<const std::string>>;

struct Call {
    Date at; ///< On the phone's wall clock.
    bool onMainThread;
    Operation operation;
    std::span<const CallValue> arguments;
    const CallValue* result; ///< Null if the operation has no result.
};

struct Happening {
    Date at; ///< On the phone's wall clock.
    const Event& event;
};

class PhoneObserver {
public:
    virtual ~PhoneObserver() = default;

    /// The monitor has made a call. A call that causes others, such as work on the main thread,
    /// comes before them.
    virtual void called(const Call& call) = 0;

    /// An event happens. It comes before the calls and events that it causes.
    virtual void happens(const Happening& happening) = 0;
};

} // namespace noctara
