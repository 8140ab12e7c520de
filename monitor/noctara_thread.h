/// The night monitor: one object, and a thread of its own that decides cycle by cycle whether the
/// phone has been put down for the night or picked up again.
///
/// The main loop (main_loop.cpp) reads top to bottom; each of its concerns has a file of its own
/// beside it. SpringBoard's main thread runs `init`, `start`, `setACState`, the settings-changed
/// handler and everything that touches radios, applications and sounds; the monitor thread runs
/// `run` and what it calls, and reaches the main thread only by hops that it waits for.
#pragma once

#include "monitor/shared_field.h"
#include "platform/host_process.h"
#include "platform/motion.h"
#include "platform/platform.h"
#include "platform/property_list.h"
#include "platform/system_sounds.h"
#include "platform/threads.h"
#include "radios/radios_lib.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace noctara {

class Application;
class TelephonyManager;

class NoctaraThread {
public:
    /// Sets the defaults, reads the charger, creates the radio controller and listens for changes
    /// of the settings. Main thread. The object is never destroyed before the process ends.
    explicit NoctaraThread(const Platform& platform);

    /// Starts the monitor thread; a second call does nothing.
    void start();

    /// Lets the main loop end at its next test.
    void stop() { running = false; }

    /// Takes in a change of the charger.
    void setACState(bool onAC);

    /// Waits until the whole-second wall clock reads at least `seconds` more than at the call. The
    /// count is taken as unsigned: a negative one is a very long wait. No event ends it early.
    void sleep(std::int32_t seconds);

    /// The main loop, body of the monitor thread.
    void run();

    // Settings file.
    void reloadPreferences();
    void saveValueToFile(const std::string& path, const std::string& key, std::int32_t value);

    // Face-down detection.
    /// Takes one reading, which takes a second: does the phone lie still in the wanted posture?
    bool checkState();

    // Time window and wake-ups.
    bool isInTimeRange();
    void awakeApp();

    // Sleep state.
    /// Enters (true) or leaves the sleep state, on the main thread, and waits for it.
    void setState(bool state);
    void setStateAirplaneMode();
    /// Takes the start-up snapshot of the radios. The result is airplane mode.
    bool isEnabled();
    bool isAirplaneModeActive();
    void setLocationEnabled(bool enabled);
    void setBluetoothEnabled(bool enabled);
    bool is3GEnabled();
    bool hasCellularData();

    // Applications.
    void startStopApplications(bool start);
    /// Brings an application, or with null the home screen, to the front by launching its icon.
    /// False when it is there already.
    bool activateApplication(Application* application);
    Application* topApplication();
    ObjectRef activateApp(ObjectRef object);

    // Cues.
    /// Starts a sound on the main thread and waits until it has started.
    void playAudioOnMainThread(SoundID sound);
    void playAudioAsync();

    // The state, open to the host's callbacks and to whoever watches the monitor.

    std::unique_ptr<Thread> thread; ///< Null until `start`.
    std::unique_ptr<RadiosLib> radiosLib;

    SoundID airplaneModeMP3 = 0;         ///< Played when a countdown to the sleep state begins.
    SharedField<SoundID> currentSoundId; ///< What the main thread is to play next.
    SoundID offMP3 = 0;                  ///< Played when the sleep state is left.

    std::vector<std::string> applicationsToStart; ///< Guarded by `lock`.
    std::unique_ptr<MotionManager> motionManager; ///< Null while `run` is not running.

    /// The monitor has put the phone into the sleep state and not yet brought it back.
    SharedField<bool> lastStateWasPlane;

    // The radios as they were before the sleep state; `defaultAirplane` is that of the start.
    SharedField<bool> defaultWifi;
    SharedField<bool> defaultBT;
    SharedField<bool> defaultEdge; ///< Cellular data.
    SharedField<bool> default3G;
    SharedField<bool> defaultLocation;
    SharedField<bool> defaultAirplane;

    /// Keep detecting although the charger is gone: the phone is still in the sleep state.
    SharedField<bool> continueToMonitorAfterAC;
    SharedField<bool> currentState; ///< The last state asked of `setState`.
    SharedField<bool> running{true};
    SharedField<bool> recurseSafety; ///< A reload is inside its one nested call.

    // The settings. They start as below and change only where the file has a value.
    SharedField<std::int32_t> sensitivity{5};
    SharedField<bool> enabledOnChargeOnly;
    SharedField<bool> enabled;
    SharedField<std::int32_t> sleepTime; ///< Seconds between two readings.
    SharedField<bool> screenDown;        ///< The wanted posture; false: screen up.
    SharedField<bool> activeOnSleep;     ///< Keep a wake-up scheduled.
    SharedField<bool> disableOnManualChange;
    SharedField<bool> playSound;
    SharedField<bool> vibrate;
    SharedField<bool> timeLimit;             ///< Only inside the nightly window.
    SharedField<std::int32_t> startTime{21}; ///< Whole hours of the local day.
    SharedField<std::int32_t> stopTime{7};
    SharedField<bool> airplaneSwitch{true};
    SharedField<bool> wifiSwitch;
    SharedField<bool> bluetoothSwitch;
    SharedField<bool> _3GSwitch;
    SharedField<bool> edgeSwitch;
    SharedField<bool> phoneSwitch;
    SharedField<bool> locationSwitch;

    /// A countdown to the sleep state is under way: idle sleep is refused meanwhile.
    SharedField<bool> switchingToAirplane;
    SharedField<bool> ACState; ///< On external power.
    SharedField<bool> _DEBUG_{true};

    /// Something happened outside since the last wait. Kept for whoever watches; nothing here reads
    /// it.
    SharedField<bool> eventOccurred;

private:
    /// Writes a line to the system log.
    [[gnu::format(printf, 2, 3)]] void log(const char* format, ...);

    /// The same, but only with debug on; otherwise the line is not even formatted.
    [[gnu::format(printf, 2, 3)]] void debugLog(const char* format, ...);

    /// Readings in a row that speak for the other state, 0 to 2 of them.
    struct Countdown {
        int faceDownCount = 0; ///< Sleep-position readings while not in the sleep state.
        int faceUpCount = 0;   ///< Other readings while in the sleep state.

        bool underWay() const { return faceDownCount != 0 || faceUpCount != 0; }
    };

    // Steps of a cycle.
    bool detectionIsAllowed();
    void takeSleepPositionReading(Countdown& countdown);
    void takeOtherReading(Countdown& countdown);

    // Steps of a reload.
    void rebuildApplicationsToStart(const Dictionary* settings);
    void takeOverSettings(const Dictionary* settings);
    void createSettingsFile();

    // Steps of a switch.
    void rememberRadios();
    void switchRadios(TelephonyManager& telephony);
    void setAirplaneMode(TelephonyManager& telephony);
    bool switches3G();
    bool wantedState(bool before, bool switchedOff);

    bool isToBeStarted(Application& application);

    const Platform platform;
    std::recursive_mutex lock;
    /// Counts the changes of `applicationsToStart`, so that a walk notices one. Guarded by `lock`.
    unsigned applicationListChanges = 0;
};

/// The token under which the settings notification is registered, for the life of the process.
extern int settingsNotificationToken;

} // namespace noctara
