/// The decisions of the monitor. An observer is told of each decision when it is made, on the
/// thread that makes it: the monitor thread or, for changed settings, the main thread.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace noctara {

/// The settings as the monitor holds them. The names are those of the monitor's fields.
struct Settings {
    bool enabled;
    std::int32_t sleepTime; ///< Seconds to wait between two cycles.
    std::int32_t sensitivity;
    bool screenDown;
    bool timeLimit;
    std::int32_t startTime; ///< Whole hours of the local day.
    std::int32_t stopTime;
    bool enabledOnChargeOnly;
    bool airplaneSwitch;
    bool phoneSwitch;
    bool wifiSwitch;
    bool bluetoothSwitch;
    bool edgeSwitch;
    bool _3GSwitch;
    bool locationSwitch;
};

/// There was no settings file. The monitor tried to write one with the defaults.
struct SettingsFileMade {
    bool written;
};

/// The settings file cannot be read or is not a dictionary. It is not changed.
struct SettingsFileUnreadable {};

/// The settings file lacks a key. The monitor tried to write the default into the file.
struct SettingFilledIn {
    std::string key;
    bool written;
};

/// The settings have been loaded.
struct SettingsLoaded {
    Settings settings;
};

/// The main loop begins.
struct MonitoringBegins {
    bool inSleepState; ///< True if airplane mode is on at the start.
};

/// The monitor compared airplane mode with its own state.
struct AirplaneModeCompared {
    bool changedByHand; ///< They differ.
};

/// A cycle takes no reading.
struct NoReading {
    enum class Reason { monitoringIsOff, outsideWindow, notOnCharger };
    Reason reason;
};

/// A reading was taken.
struct Reading {
    enum class Source {
        accelerometer,
        nothing,     ///< The accelerometer delivered no sample.
        deviceMotion ///< Such a sample never counts as lying.
    };
    Source source;
    double angle;     ///< Radians from the positive z axis, 0 to pi. For deviceMotion: z, in g.
    double length;    ///< In g. 0 for deviceMotion.
    double tolerance; ///< Radians.
    bool screenDown;  ///< The wanted posture. False: screen up.
    bool lies;        ///< The phone lies still in the wanted posture.
};

/// The reading was compared with the state and counted.
struct ReadingCounted {
    int inARow;        ///< Readings in a row that disagree with the state, 0 to 3.
    bool inSleepState; ///< The state before the reading.
};

/// Three readings in a row have changed the state. The radios have been switched.
struct StateChanged {
    bool inSleepState;
};

using Decision = std::variant<SettingsFileMade, SettingsFileUnreadable, SettingFilledIn,
                              SettingsLoaded, MonitoringBegins, AirplaneModeCompared, NoReading,
                              Reading, ReadingCounted, StateChanged>;

class MonitorObserver {
public:
    virtual ~MonitorObserver() = default;

    virtual void decided(const Decision& decision) = 0;
};

} // namespace noctara
