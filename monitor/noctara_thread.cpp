/// The monitor object: construction, start, notifications and waiting.
#include "monitor/noctara_thread.h"

#include "platform/charger.h"
#include "platform/clock.h"
#include "platform/host_process.h"
#include "platform/notifications.h"

namespace noctara {

int settingsNotificationToken = 0;

NoctaraThread::NoctaraThread(const Platform& phone, MonitorObserver* told) :
    platform(phone), observer(told) {
    if (ClassRef controllerClass = platform.process->findClass("SBUIController"))
        ACState = platform.charger->isOnAC(platform.charger->sharedController(controllerClass));
    else
        log("Noctara : Class SBUIController not found");

    radiosLib = std::make_unique<RadiosLib>(platform);
    radiosLib->setDisable3GOn4GDevices(true);

    settingsNotificationToken = platform.notifications->registerOnMainQueue(
        "com.quorbit.Noctara.preferences-changed", [this] {
            eventOccurred = true;
            reloadPreferences();
            report([this] { return SettingsLoaded{settings()}; });
        });
}

void NoctaraThread::start() {
    if (thread) {
        debugLog("Noctara : NoctaraThread already started");
        return;
    }
    thread = platform.threads->start("NoctaraThread", [this] { run(); });
    debugLog("Noctara : NoctaraThread start");
}

void NoctaraThread::setACState(bool onAC) {
    ACState = onAC;
    continueToMonitorAfterAC = !onAC && lastStateWasPlane;
    eventOccurred = true;
}

void NoctaraThread::sleep(std::int32_t seconds) {
    const std::int64_t start = platform.clock->time();
    const std::int64_t wanted = static_cast<std::uint32_t>(seconds);
    // A wait of 0 s ends at once even if the clock is set back after the first reading.
    while (wanted > 0 && platform.clock->time() - start < wanted)
        platform.clock->sleep(1);
    eventOccurred = false;
}

} // namespace noctara
