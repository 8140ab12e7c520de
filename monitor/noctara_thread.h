/// The night monitor: one object with a thread that decides in each cycle whether the phone has
/// been put down for the night or picked up again.
///
/// The main loop is in main_loop.cpp; its parts are in the files beside it. SpringBoard's main
/// thread runs the constructor, `start`, `setACState`, the settings-changed handler, and the
/// functions that switch radios, applications and sounds. The monitor thread runs `run` and the
/// functions that it calls. It calls the main thread only synchronously.
#pragma once

#include "monitor/decisions.h"
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
class Countdown;
class TelephonyManager;

class NoctaraThread {
public:
    /// Sets the defaults, reads the charger state, creates the radio controller and registers for
    /// changes of the settings. Main thread. SpringBoard never destroys the object. The observer,
    /// which may be null, must outlive the monitor.
    explicit NoctaraThread(const Platform& platform, MonitorObserver* observer = nullptr);

    /// Starts the monitor thread. A second call does nothing.
    void start();

    /// The main loop ends at its next test of `running`.
    void stop() { running = false; }

    /// Handles a change of the charger.
    void setACState(bool onAC);

    /// Waits until the wall clock, in whole seconds, reads at least `seconds` more than at the
    /// call. 0 returns at once. A negative number is converted to unsigned and is a very long wait.
    /// No event ends the wait early.
    void sleep(std::int32_t seconds);

    /// The main loop. Runs on the monitor thread.
    void run();

    // Settings file.
    void reloadPreferences();
    void saveValueToFile(const std::string& path, const std::string& key, std::int32_t value);

    // Face-down detection.
    /// Takes one reading, which lasts a second. True if the phone lies still in the wanted posture.
    bool checkState();

    // Time window and wake-ups.
    bool isInTimeRange();
    void awakeApp();

    // Sleep state.
    /// Enters (true) or leaves the sleep state on the main thread, and waits until that is done.
    void setState(bool state);
    void setStateAirplaneMode();
    /// Stores the states of the radios at the start. Returns whether airplane mode is on.
    bool isEnabled();
    bool isAirplaneModeActive();
    void setLocationEnabled(bool enabled);
    void setBluetoothEnabled(bool enabled);
    bool is3GEnabled();
    bool hasCellularData();

    // Applications.
    void startStopApplications(bool start);
    /// Brings an application, or for null the home screen, to the front by launching its icon.
    /// False if it is already in front.
    bool activateApplication(Application* application);
    Application* topApplication();
    ObjectRef activateApp(ObjectRef object);

    // Cues.
    /// Starts a sound on the main thread and waits until it has started.
    void playAudioOnMainThread(SoundID sound);
    void playAudioAsync();

    // The state, which the host's callbacks and observers of the monitor read.

    std::unique_ptr<Thread> thread; ///< Null until `start`.
    std::unique_ptr<RadiosLib> radiosLib;

    SoundID airplaneModeMP3 = 0;         ///< Played when a countdown to the sleep state begins.
    SharedField<SoundID> currentSoundId; ///< The sound for `playAudioAsync`.
    SoundID offMP3 = 0;                  ///< Played when the sleep state is left.

    std::vector<std::string> applicationsToStart; ///< Guarded by `lock`.
    std::unique_ptr<MotionManager> motionManager; ///< Null except in the main loop.

    /// The phone is in the sleep state. Also set at the start if airplane mode is on.
    SharedField<bool> lastStateWasPlane;

    // The radios at the start. The ones that are switched one by one are stored again before each
    // sleep state. `defaultAirplane` keeps its value from the start.
    SharedField<bool> defaultWifi;
    SharedField<bool> defaultBT;
    SharedField<bool> defaultEdge; ///< Cellular data.
    SharedField<bool> default3G;
    SharedField<bool> defaultLocation;
    SharedField<bool> defaultAirplane;

    /// Readings go on without a charger, because it was unplugged in the sleep state.
    SharedField<bool> continueToMonitorAfterAC;
    /// The argument of the last `setState`. Before that, whether airplane mode was on at the start.
    SharedField<bool> currentState;
    SharedField<bool> running{true};
    SharedField<bool> recurseSafety; ///< A reload is in its nested call.

    // The settings. They have these defaults and change only if the file has a value.
    SharedField<std::int32_t> sensitivity{5};
    SharedField<bool> enabledOnChargeOnly;
    SharedField<bool> enabled;
    SharedField<std::int32_t> sleepTime; ///< Seconds to wait between two cycles.
    SharedField<bool> screenDown;        ///< The wanted posture. False: screen up.
    SharedField<bool> activeOnSleep;     ///< Schedule a wake-up in every cycle.
    SharedField<bool> disableOnManualChange;
    SharedField<bool> playSound;
    SharedField<bool> vibrate;
    SharedField<bool> timeLimit;             ///< Take readings only in the time window.
    SharedField<std::int32_t> startTime{21}; ///< Whole hours of the local day.
    SharedField<std::int32_t> stopTime{7};
    SharedField<bool> airplaneSwitch{true};
    SharedField<bool> wifiSwitch;
    SharedField<bool> bluetoothSwitch;
    SharedField<bool> _3GSwitch;
    SharedField<bool> edgeSwitch;
    SharedField<bool> phoneSwitch;
    SharedField<bool> locationSwitch;

    /// Idle sleep is refused. Set when a countdown to the sleep state begins with sounds on.
    /// Cleared by the next change of state.
    SharedField<bool> switchingToAirplane;
    SharedField<bool> ACState; ///< On external power.
    SharedField<bool> _DEBUG_{true};

    /// The charger or the settings have changed since the last wait. The monitor itself does not
    /// read it.
    SharedField<bool> eventOccurred;

private:
    /// Writes a line to the system log.
    [[gnu::format(printf, 2, 3)]] void log(const char* format, ...);

    /// As `log`, but only with debug on; otherwise the line is not formatted.
    [[gnu::format(printf, 2, 3)]] void debugLog(const char* format, ...);

    /// Passes the result of `make` to the observer. Without an observer `make` is not called.
    template <typename Make>
    void report(Make make) {
        if (observer)
            observer->decided(make());
    }

    // Steps of a cycle.
    bool compareAirplaneMode();
    bool detectionIsAllowed();
    void takeReading(Countdown& countdown);
    void enterSleepState();
    void leaveSleepState();

    // Steps of a reload.
    void loadSettingsFile();
    void rebuildApplicationsToStart(const Dictionary* settings);
    void takeOverSettings(const Dictionary* settings);
    Settings settings() const;
    void createSettingsFile();

    // Steps of a switch.
    void rememberRadios();
    void switchRadios(TelephonyManager& telephony);
    void setAirplaneMode(TelephonyManager& telephony);
    bool switches3G();
    bool wantedState(bool before, bool switchedOff);

    bool isToBeStarted(Application& application);

    const Platform platform;
    MonitorObserver* const observer;
    std::recursive_mutex lock;
    /// Counts the changes of `applicationsToStart`, so that a loop over it detects one. Guarded by
    /// `lock`.
    unsigned applicationListChanges = 0;
};

/// The registration token of the settings notification. The registration lasts until the process
/// ends.
extern int settingsNotificationToken;

} // namespace noctara
