/// The main loop and its two states: normal, and the sleep state (`lastStateWasPlane`). Three
/// readings in a row, all disagreeing with the state, change it.
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
    platform.sounds.create(airplaneModeSound, airplaneModeMP3);
    platform.sounds.create(offSound, offMP3);
    reloadPreferences();
    // Only here: an interval from a later reload is taken as it is.
    if (sleepTime < shortestScanInterval)
        sleepTime = shortestScanInterval;
    motionManager = platform.motion.makeMotionManager();
    lastStateWasPlane = isEnabled();
    switchingToAirplane = false;

    Countdown countdown;
    bool manualOverride = false;
    while (running) {
        if (enabled && disableOnManualChange && lastStateWasPlane != isAirplaneModeActive()) {
            enabled = false;
            manualOverride = true;
            if (!running)
                break;
        }

        bool monitorActive = true;
        if (!enabled) {
            if (manualOverride && disableOnManualChange && !isAirplaneModeActive()) {
                manualOverride = false;
                enabled = true;
            }
            debugLog("Noctara : NOT Running...");
        } else {
            monitorActive = detectionIsAllowed();
            if (monitorActive) {
                if (checkState())
                    takeSleepPositionReading(countdown);
                else
                    takeOtherReading(countdown);
            }
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
    platform.sounds.dispose(airplaneModeMP3);
    platform.sounds.dispose(offMP3);
}

/// Whether the time window and the charger allow a reading in this cycle. Both give way while the
/// phone is in the sleep state, so that it can be brought back.
bool NoctaraThread::detectionIsAllowed() {
    if (timeLimit) {
        const bool inside = isInTimeRange();
        debugLog("Noctara Using time interval : monitoring is %s because we are %s the interval",
                 inside ? "ENABLED" : "DISABLED", inside ? "INSIDE" : "OUTSIDE");
        if (!inside) {
            if (!lastStateWasPlane)
                return false;
            debugLog("Noctara Using time interval : we are OUTSIDE interval, but monitoring is "
                     "ENABLED because we are still in airplanemode");
        }
    }
    return !enabledOnChargeOnly || ACState || continueToMonitorAfterAC;
}

void NoctaraThread::takeSleepPositionReading(Countdown& countdown) {
    debugLog("Noctara : Mode avion");
    countdown.faceUpCount = 0;
    if (lastStateWasPlane)
        return;

    if (countdown.faceDownCount < 2) {
        if (playSound && countdown.faceDownCount == 0) {
            // Stays set when the countdown is abandoned, until the next completed transition.
            switchingToAirplane = true;
            playAudioOnMainThread(airplaneModeMP3);
        }
        ++countdown.faceDownCount;
        return;
    }

    if (vibrate)
        playAudioOnMainThread(vibrationSound);
    setState(true);
    countdown = {};
    lastStateWasPlane = true;
    switchingToAirplane = false;
}

void NoctaraThread::takeOtherReading(Countdown& countdown) {
    debugLog("Noctara : Mode normal");
    countdown.faceDownCount = 0;
    if (!lastStateWasPlane)
        return;

    if (countdown.faceUpCount < 2) {
        ++countdown.faceUpCount;
        return;
    }

    if (playSound)
        playAudioOnMainThread(offMP3);
    if (vibrate)
        playAudioOnMainThread(vibrationSound);
    setState(false);
    countdown = {};
    switchingToAirplane = false;
    lastStateWasPlane = false;
    continueToMonitorAfterAC = false;
}

} // namespace noctara
