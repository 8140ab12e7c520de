/// Answers the system's power messages, on the main thread. The answer depends on a flag that the
/// monitor thread sets.
#include "host/host.h"
#include "platform/system_log.h"

#include <cstdio>

namespace noctara {

PowerConnection root_port = 0;
RunLoopRef registeredRunLoop = nullptr;

namespace {

void debugLog(const char* text) {
    if (isDebug())
        processPlatform->log->write(text);
}

} // namespace

void registerPowerListener() {
    if (root_port != 0) {
        debugLog("Noctara already registered to power events!");
        return;
    }
    SystemPower& power = *processPlatform->power;
    NotificationPortRef port = nullptr;
    root_port = power.registerForSystemPower(MySleepCallBack, port);
    debugLog(root_port != 0 ? "Noctara IORegisterForSystemPower done"
                            : "Noctara IORegisterForSystemPower failed");
    registeredRunLoop = power.currentRunLoop();
    // A failed registration sets no port.
    if (port)
        power.addSource(registeredRunLoop, port);
}

void MySleepCallBack(void*, std::uint32_t, std::uint32_t messageType, void* messageArgument) {
    const auto notification = reinterpret_cast<std::intptr_t>(messageArgument);
    if (isDebug()) {
        char line[96];
        std::snprintf(line, sizeof line, "Noctara messageType %08lx, arg %08lx",
                      static_cast<unsigned long>(messageType),
                      static_cast<unsigned long>(notification));
        processPlatform->log->write(line);
    }
    SystemPower& power = *processPlatform->power;
    switch (messageType) {
    case kIOMessageSystemWillSleep:
        power.allowPowerChange(root_port, notification);
        break;
    case kIOMessageCanSystemSleep:
        if (NoctaraInstance && NoctaraInstance->switchingToAirplane) {
            debugLog("Noctara canceling power change while waiting for airplaine");
            power.cancelPowerChange(root_port, notification);
        } else {
            power.allowPowerChange(root_port, notification);
        }
        break;
    default:
        break;
    }
}

} // namespace noctara
