/// Whoever watches a simulated phone: it is told of every call that the monitor makes, and of
/// everything that happens to the phone, in order.
#pragma once

#include "platform/motion.h"
#include "platform/property_list.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace noctara {

/// An argument or a result, borrowed for as long as the observer is being told. The empty
/// alternative is null.
using CallValue =
    std::variant<std::monostate, bool, std::int64_t, double, std::string_view, Date, Acceleration,
                 const PropertyList*, const Dictionary*, std::span<const std::string>>;

struct Call {
    Date at; ///< By the phone's wall clock.
    bool onMainThread;
    std::string_view operation; ///< The phone's own name, selectors with their colons.
    std::span<const CallValue> arguments;
    const CallValue* result; ///< Null when the operation has none.
};

struct Happening {
    Date at; ///< By the phone's wall clock.
    std::string_view action;
    const PropertyList& value;
};

class PhoneObserver {
public:
    virtual ~PhoneObserver() = default;

    /// A call has been made. One that causes others (a hop, a sleep) is told of before them.
    virtual void called(const Call& call) = 0;

    /// Something is happening to the phone; told of before anything that it causes.
    virtual void happens(const Happening& happening) = 0;
};

} // namespace noctara
