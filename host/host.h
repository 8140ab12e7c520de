/// The library's entry points, as the loader, SpringBoard and the system call them. Of what is
/// declared here, the library exports the functions with C linkage, the launch hook excepted.
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

/// The one monitor; null until SpringBoard has finished launching, and never cleared there.
extern NoctaraThread* NoctaraInstance;

extern "C" {

/// The loader calls it once, when it loads the library. Hooks SpringBoard's methods. Does nothing
/// in any other process.
NOCTARA_EXPORT void NoctaraInitialize();

/// Whether the monitor writes debug lines. False while there is no monitor.
NOCTARA_EXPORT bool isDebug();

/// Replaces `-[SpringBoard applicationDidFinishLaunching:]`: creates and starts the monitor.
void $SpringBoard$applicationDidFinishLaunching$(ObjectRef self, SelectorRef selector,
                                                 ObjectRef application);

/// Replaces `-[SBUIController ACPowerChanged]`: passes the charger's state on to the monitor.
NOCTARA_EXPORT void replaced_SBUIController_ACPowerChanged(ObjectRef self, SelectorRef selector);

/// Registers for the system's power messages, on the run loop of the calling thread. Does nothing
/// once a registration has succeeded.
NOCTARA_EXPORT void registerPowerListener();

/// Answers the system's power messages. Refuses idle sleep while `switchingToAirplane` is set.
NOCTARA_EXPORT void MySleepCallBack(void* refcon, std::uint32_t service, std::uint32_t messageType,
                                    void* messageArgument);

} // extern "C"

/// The observer of the monitor's decisions, or null. The provider of the phone sets it before
/// SpringBoard has launched. It stays null in SpringBoard itself.
inline MonitorObserver* monitorObserver = nullptr;

/// Creates the one monitor when SpringBoard has launched. Null if there is no memory for it. The
/// provider of the phone may set another function before that.
extern NoctaraThread* (*makeMonitor)();

/// The implementations that the two hooks replaced.
extern void (*orig_SpringBoard_applicationDidFinishLaunching)(ObjectRef, SelectorRef, ObjectRef);
extern void (*orig_SBUIController_ACPowerChanged)(ObjectRef, SelectorRef);

/// The connection to the root power domain; 0 until the registration has succeeded.
extern PowerConnection root_port;

/// The run loop of the thread that registered for the power messages. Null before the first
/// attempt, and set even if that failed.
extern RunLoopRef registeredRunLoop;

} // namespace noctara

#pragma GCC diagnostic pop
