/// The system's power management (IOKit): messages about system sleep, and the answers to them.
#pragma once

#include <cstdint>

namespace noctara {

/// Idle sleep is about to begin. The receiver can allow or cancel it.
inline constexpr std::uint32_t kIOMessageCanSystemSleep = 0xE0000270;
/// The system goes to sleep. The receiver can only allow it.
inline constexpr std::uint32_t kIOMessageSystemWillSleep = 0xE0000280;
/// The system has woken up.
inline constexpr std::uint32_t kIOMessageSystemHasPoweredOn = 0xE0000300;

/// A connection to the root power domain. 0 means no connection.
using PowerConnection = std::uint32_t;

/// A run loop, and a port whose notifications a run loop can deliver. Owned by the system.
using RunLoopRef = void*;
using NotificationPortRef = void*;

/// `service` is an object handle. `messageArgument` identifies the message in the answer.
using PowerCallback = void (*)(void* refcon, std::uint32_t service, std::uint32_t messageType,
                               void* messageArgument);

class SystemPower {
public:
    virtual ~SystemPower() = default;

    /// Registers for the power messages (`IORegisterForSystemPower`, with a null refcon). Returns 0
    /// on failure and then leaves `port` unchanged.
    virtual PowerConnection registerForSystemPower(PowerCallback callback,
                                                   NotificationPortRef& port) = 0;

    /// The calling thread's run loop (`CFRunLoopGetCurrent`).
    virtual RunLoopRef currentRunLoop() = 0;

    /// Makes `runLoop` deliver the messages of `port`, in the common modes. No message reaches the
    /// callback before that.
    virtual void addSource(RunLoopRef runLoop, NotificationPortRef port) = 0;

    /// The answers to one message (`IOAllowPowerChange`, `IOCancelPowerChange`). `notification` is
    /// the message's argument.
    virtual void allowPowerChange(PowerConnection connection, std::intptr_t notification) = 0;
    virtual void cancelPowerChange(PowerConnection connection, std::intptr_t notification) = 0;
};

} // namespace noctara
