/// A phone with one service replaced, for answers that the simulated phone never gives.
#pragma once

#include "platform/platform.h"

#include <type_traits>

namespace noctara {

/// The services of `phone`, but for `other` in the place of its own kind. Name the interface:
/// `withOther<WiFi>(phone, fake)`.
template <typename Service>
Platform withOther(const Platform& phone, std::type_identity_t<Service>& other) {
    const auto either = [&]<typename Own>(Own& own) -> Own& {
        if constexpr (std::is_same_v<Own, Service>)
            return other;
        else
            return own;
    };
    return {either(phone.log),           either(phone.process),   either(phone.threads),
            either(phone.clock),         either(phone.calendar),  either(phone.files),
            either(phone.notifications), either(phone.power),     either(phone.wakes),
            either(phone.charger),       either(phone.motion),    either(phone.sounds),
            either(phone.applications),  either(phone.telephony), either(phone.wifi),
            either(phone.bluetooth),     either(phone.location),  either(phone.cellular),
            either(phone.preferences),   either(phone.device),    either(phone.libraries),
            either(phone.capabilities)};
}

} // namespace noctara
