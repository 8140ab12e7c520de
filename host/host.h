/// The library's entry points, as the loader, SpringBoard and the system call them. The functions
/// with C linkage are exported (but for the launch hook), and nothing else is.
#pragma once

#include "monitor/noctara_thread.h"
#include "platform/host_process.h"
#include "platform/system_power.h"

#include <cstdint>

#define NOCTARA_EXPORT [[gnu::visibility("default")]]

#pragma GCC diagnostic push
#ifdef __clang__
#pragma GCC diagnostic ignored "-Wdollar-in-identifier-extension"
#endif

namespace noctara {

extern "C" {

/// The one monitor, a C++ object; null until SpringBoard has finished launching, and never cleared.
NOCTARA_EXPORT extern NoctaraThread* NoctaraInstance;

/// Run once when the library is loaded: hooks SpringBoard, and in any other process does nothing.
NOCTARA_EXPORT void NoctaraInitialize();

/// Whether the monitor writes its debug lines; false before there is one.
NOCTARA_EXPORT bool isDebug();

/// Replaces `-[SpringBoard applicationDidFinishLaunching:]`: creates and starts the monitor.
void $SpringBoard$applicationDidFinishLaunching$(ObjectRef self, SelectorRef selector,
                                                 ObjectRef application);

/// Replaces `-[SBUIController ACPowerChanged]`: passes the charger's state on to the monitor.
NOCTARA_EXPORT void replaced_SBUIController_ACPowerChanged(ObjectRef self, SelectorRef selector);

/// Registers for the system's power messages, on the run loop of the calling thread. A second call
/// does nothing.
NOCTARA_EXPORT void registerPowerListener();

/// Answers the system's power messages: refuses idle sleep during a countdown.
NOCTARA_EXPORT void MySleepCallBack(void* refcon, std::uint32_t service, std::uint32_t messageType,
                                    void* messageArgument);

} // extern "C"

/// The implementations that the two hooks replaced.
extern void (*orig_SpringBoard_applicationDidFinishLaunching)(ObjectRef, SelectorRef, ObjectRef);
extern void (*orig_SBUIController_ACPowerChanged)(ObjectRef, SelectorRef);

/// The connection to the root power domain; 0 until the registration has succeeded.
extern PowerConnection root_port;

/// The run loop that delivers the power messages.
extern RunLoopRef registeredRunLoop;

} // namespace noctara

#pragma GCC diagnostic pop
