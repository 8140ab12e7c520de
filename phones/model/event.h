/// The events: what happens to a phone from outside. Each kind of event has a type; `Event` is any
/// of them.
#pragma once

#include "phones/model/words.h"
#include "platform/motion.h"
#include "platform/property_list.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace noctara {

enum class NamedPosture {
    ScreenDown,
    ScreenUp,
    InHand,
    InPocket,
    Moving,
    None, ///< The accelerometer delivers nothing.
};

inline constexpr std::array postureWords{
    Word{NamedPosture::ScreenDown, "screen-down"}, Word{NamedPosture::ScreenUp, "screen-up"},
    Word{NamedPosture::InHand, "in-hand"},         Word{NamedPosture::InPocket, "in-pocket"},
    Word{NamedPosture::Moving, "moving"},          Word{NamedPosture::None, "none"},
};

/// A posture by name, or as the sample that the accelerometer measures in it.
using Posture = std::variant<NamedPosture, Acceleration>;

/// Which of the telephony manager's four queries about calls returns true.
enum class CallState { none, inCall, outgoing, incoming, active };

inline constexpr std::array callStateWords{
    Word{CallState::none, "none"},         Word{CallState::inCall, "in-call"},
    Word{CallState::outgoing, "outgoing"}, Word{CallState::incoming, "incoming"},
    Word{CallState::active, "active"},
};

enum class DiskState { ok, full, readOnly };

inline constexpr std::array diskStateWords{
    Word{DiskState::ok, "ok"},
    Word{DiskState::full, "full"},
    Word{DiskState::readOnly, "read-only"},
};

enum class SettingsFileFault { missing, damaged };

inline constexpr std::array settingsFileFaultWords{
    Word{SettingsFileFault::missing, "missing"},
    Word{SettingsFileFault::damaged, "damaged"},
};

// The events. `name` is the key of the event in a scenario file, and its name in a trace.

struct PostureChange {
    static constexpr std::string_view name = "posture";
    Posture posture;
};

struct ChargerChange {
    static constexpr std::string_view name = "charger";
    bool plugged;
};

/// The settings screen writes these values into the settings file and posts the notification.
struct SettingsChange {
    static constexpr std::string_view name = "settings";
    Dictionary changed;
};

/// The settings screen removes these keys from the settings file and posts the notification.
struct SettingsRemoval {
    static constexpr std::string_view name = "remove_settings";
    std::vector<std::string> keys;
};

// Switches that the user sets by hand.

struct AirplaneModeSwitch {
    static constexpr std::string_view name = "airplane";
    bool on;
};

struct WifiSwitch {
    static constexpr std::string_view name = "wifi";
    bool on;
};

struct BluetoothSwitch {
    static constexpr std::string_view name = "bluetooth";
    bool on;
};

struct CellularDataSwitch {
    static constexpr std::string_view name = "cellular_data";
    bool on;
};

struct LocationSwitch {
    static constexpr std::string_view name = "location";
    bool on;
};

struct MaxRateChange {
    static constexpr std::string_view name = "max_rate";
    DataRate rate;
};

/// A Bluetooth device connects or disconnects. This is not user activity.
struct BluetoothConnection {
    static constexpr std::string_view name = "bluetooth_connected";
    bool connected;
};

struct CallChange {
    static constexpr std::string_view name = "call";
    CallState state;
};

struct ButtonPress {
    static constexpr std::string_view name = "button";
};

struct DiskChange {
    static constexpr std::string_view name = "disk";
    DiskState state;
};

struct SettingsFileChange {
    static constexpr std::string_view name = "settings_file";
    SettingsFileFault fault;
};

struct TelephonyServerChange {
    static constexpr std::string_view name = "telephony_server";
    bool answers;
};

/// A message of the system's power management, sent by the scenario or by the phone itself.
struct PowerMessage {
    static constexpr std::string_view name = "power_message";
    std::uint32_t type;
    std::int64_t notification = 0; ///< Identifies the message in its answer. Set when it is sent.
};

/// The wall clock is set.
struct ClockChange {
    static constexpr std::string_view name = "clock";
    Date to;
};

/// The monitor is told to stop.
struct MonitorStop {
    static constexpr std::string_view name = "stop";
};

using Event =
    std::variant<PostureChange, ChargerChange, SettingsChange, SettingsRemoval, AirplaneModeSwitch,
                 WifiSwitch, BluetoothSwitch, BluetoothConnection, CellularDataSwitch,
                 LocationSwitch, CallChange, MaxRateChange, ButtonPress, DiskChange,
                 SettingsFileChange, TelephonyServerChange, PowerMessage, ClockChange, MonitorStop>;

inline std::string_view nameOf(const Event& event) {
    return std::visit([](const auto& kind) { return kind.name; }, event);
}

} // namespace noctara
