#include "phones/simulated/library_process.h"

#include "host/host.h"

namespace noctara {

void startLibrary(const Platform& platform) {
    processPlatform = &platform;
}

void endLibrary() {
    delete NoctaraInstance;
    NoctaraInstance = nullptr;
    orig_SpringBoard_applicationDidFinishLaunching = nullptr;
    orig_SBUIController_ACPowerChanged = nullptr;
    root_port = 0;
    registeredRunLoop = nullptr;
    cachedMGGetBoolAnswer = nullptr;
    settingsNotificationToken = 0;
    monitorObserver = nullptr;
    processPlatform = nullptr;
}

} // namespace noctara
