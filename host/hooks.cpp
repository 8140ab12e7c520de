/// The load-time routine and the two hooks through which SpringBoard calls the library. All of them
/// run on the main thread.
#include "host/host.h"
#include "platform/charger.h"
#include "platform/system_log.h"

#include <new>

#pragma GCC diagnostic push
#ifdef __clang__
#pragma GCC diagnostic ignored "-Wdollar-in-identifier-extension"
#endif

namespace noctara {

NoctaraThread* NoctaraInstance = nullptr;

void (*orig_SpringBoard_applicationDidFinishLaunching)(ObjectRef, SelectorRef, ObjectRef) = nullptr;
void (*orig_SBUIController_ACPowerChanged)(ObjectRef, SelectorRef) = nullptr;

namespace {

template <typename Function>
void hook(const char* className, const char* selector, Function* replacement, Function*& original) {
    HostProcess& process = *processPlatform->process;
    // Pass the variable itself, so that it is set before the hooked method can be called.
    process.hookMessage(process.findClass(className), selector,
                        reinterpret_cast<Implementation>(replacement),
                        reinterpret_cast<Implementation&>(original));
}

NoctaraThread* makePlainMonitor() {
    return new (std::nothrow) NoctaraThread(*processPlatform, monitorObserver);
}

} // namespace

NoctaraThread* (*makeMonitor)() = makePlainMonitor;

void NoctaraInitialize() {
    if (!processPlatform || processPlatform->process->bundleIdentifier() != "com.apple.springboard")
        return;
    hook("SpringBoard",
         "applicationDidFinishLaunching:", $SpringBoard$applicationDidFinishLaunching$,
         orig_SpringBoard_applicationDidFinishLaunching);
    hook("SBUIController", "ACPowerChanged", replaced_SBUIController_ACPowerChanged,
         orig_SBUIController_ACPowerChanged);
}

bool isDebug() {
    return NoctaraInstance && NoctaraInstance->_DEBUG_;
}

void $SpringBoard$applicationDidFinishLaunching$(ObjectRef self, SelectorRef selector,
                                                 ObjectRef application) {
    orig_SpringBoard_applicationDidFinishLaunching(self, selector, application);
    processPlatform->log->write("Noctara hooked SpringBoard !");
    NoctaraInstance = makeMonitor();
    if (isDebug())
        processPlatform->log->write("Noctara thread started !");
    registerPowerListener();
    if (NoctaraInstance)
        NoctaraInstance->start();
}

void replaced_SBUIController_ACPowerChanged(ObjectRef self, SelectorRef selector) {
    orig_SBUIController_ACPowerChanged(self, selector);
    if (!NoctaraInstance)
        return;
    const bool onAC = processPlatform->charger->isOnAC(self);
    NoctaraInstance->setACState(onAC);
    if (isDebug())
        processPlatform->log->write(onAC ? "Noctara ACPowerChanged to CHARGING"
                                         : "Noctara ACPowerChanged to ON BATTERY");
}

} // namespace noctara

#pragma GCC diagnostic pop
