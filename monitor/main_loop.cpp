/// The main loop and its two states: normal, and the sleep state (`lastStateWasPlane`). Three
/// readings in a row that disagree with the state change it.
#include "monitor/countdown.h"
#include "monitor/decisions.h"
#include "monitor/noctara_thread.h"
#include "platform/system_sounds.h"

namespace noctara {

namespace {

constexpr const char* airplaneModeSound =
    "/Library/Application Support/Noctara/Noctara-airplanemode.mp3";
constexpr const char* offSound = "/Library/Application Support/Noctara/Noctara-off.mp3";

constexpr std::int32_t shortestScanInterval = 5;
constexpr std::int32_t countdownInterval = 1;

} // namespace

void NoctaraThread::run() {
    platform.sounds->create(airplaneModeSound, airplaneModeMP3);
    platform.sounds->create(offSound, offMP3);
    reloadPreferences();
    // Only the first load has this minimum. A later reload may set a shorter interval.
    if (sleepTime < shortestScanInterval)
        sleepTime = shortestScanInterval;
    report([this] { return SettingsLoaded{settings()}; });
    motionManager = platform.motion->makeMotionManager();
    lastStateWasPlane = isEnabled();
    switchingToAirplane = false;
    report([&] { return MonitoringBegins{lastStateWasPlane}; });

    Countdown countdown;
    bool manualOverride = false;
    while (running) {
        if (enabled && disableOnManualChange && lastStateWasPlane != compareAirplaneMode()) {
            enabled = false;
            manualOverride = true;
            if (!running)
                break;
        }

        bool monitorActive = true;
        if (!enabled) {
            report([] { return NoReading{NoReading::Reason::monitoringIsOff}; });
            if (manualOverride && disableOnManualChange && !compareAirplaneMode()) {
                manualOverride = false;
                enabled = true;
            }
            debugLog("Noctara : NOT Running...");
        } else {
            monitorActive = detectionIsAllowed();
            if (monitorActive)
                takeReading(countdown);
            debugLog("Noctara : Running...");
        }

        if (activeOnSleep)
            awakeApp();
        sleep(countdown.underWay() && monitorActive ? countdownInterval : std::int32_t{sleepTime});
        if (!enabled)
            sleep(sleepTime);
    }

    debugLog("Noctara : Thread is dying...");
    motionManager.reset();
    platform.sounds->dispose(airplaneModeMP3);
    platform.sounds->dispose(offMP3);
}

/// Whether the time window and the charger allow a reading in this cycle. In the sleep state the
/// window is ignored, and so is the charger once it has been unplugged in that state. Otherwise no
/// reading could end the sleep state.
bool NoctaraThread::detectionIsAllowed() {
    if (timeLimit) {
        const bool inside = isInTimeRange();
        debugLog("Noctara Using time interval : monitoring is %s because we are %s the interval",
                 inside ? "ENABLED" : "DISABLED", inside ? "INSIDE" : "OUTSIDE");
        if (!inside) {
            if (!lastStateWasPlane) {
                report([] { return NoReading{NoReading::Reason::outsideWindow}; });
                return false;
            }
            debugLog("Noctara Using time interval : we are OUTSIDE interval, but monitoring is "
                     "ENABLED because we are still in airplanemode");
        }
    }
    if (!enabledOnChargeOnly || ACState || continueToMonitorAfterAC)
        return true;
    report([] { return NoReading{NoReading::Reason::notOnCharger}; });
    return false;
}

void NoctaraThread::takeReading(Countdown& countdown) {
    const bool lies = checkState();
    debugLog(lies ? "Noctara : Mode avion" : "Noctara : Mode normal");
    const bool inSleepState = lastStateWasPlane;
    const bool isThird = countdown.add(lies, inSleepState);
    report([&] {
        return ReadingCounted{isThird ? Countdown::readingsForChange : countdown.count(),
                              inSleepState};
    });
    if (isThird && inSleepState) {
        leaveSleepState();
    } else if (isThird) {
        enterSleepState();
    } else if (!inSleepState && countdown.count() == 1 && playSound) {
        // If the countdown is abandoned, the flag stays set until the next change of state.
        switchingToAirplane = true;
        playAudioOnMainThread(airplaneModeMP3);
    }
}

void NoctaraThread::enterSleepState() {
    if (vibrate)
        playAudioOnMainThread(vibrationSound);
    setState(true);
    lastStateWasPlane = true;
    switchingToAirplane = false;
    report([] { return StateChanged{true}; });
}

void NoctaraThread::leaveSleepState() {
    if (playSound)
        playAudioOnMainThread(offMP3);
    if (vibrate)
        playAudioOnMainThread(vibrationSound);
    setState(false);
    switchingToAirplane = false;
    lastStateWasPlane = false;
    continueToMonitorAfterAC = false;
    report([] { return StateChanged{false}; });
}

/// Whether airplane mode is active. Also reports whether that differs from the state.
bool NoctaraThread::compareAirplaneMode() {
    const bool active = isAirplaneModeActive();
    report([&] { return AirplaneModeCompared{active != lastStateWasPlane}; });
    return active;
}

} // namespace noctara
