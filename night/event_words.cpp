#include "night/event_words.h"

#include "input/printable.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

namespace noctara {

namespace {

const char* onOff(bool on) {
    return on ? "on" : "off";
}

std::string valueInWords(const PropertyList& value) {
    if (const auto* boolean = value.as<bool>())
        return *boolean ? "true" : "false";
    if (const auto* integer = value.as<std::int64_t>())
        return std::to_string(*integer);
    if (const auto* real = value.as<double>())
        return fmt::format("{}", *real);
    if (const auto* string = value.as<std::string>())
        return '"' + printable(*string) + '"';
    return "...";
}

std::string postureInWords(NamedPosture posture) {
    switch (posture) {
    case NamedPosture::ScreenDown:
        return "The phone is laid down, screen down.";
    case NamedPosture::ScreenUp:
        return "The phone is laid down, screen up.";
    case NamedPosture::InHand:
        return "The phone is taken into the hand.";
    case NamedPosture::InPocket:
        return "The phone is put into a pocket.";
    case NamedPosture::Moving:
        return "The phone is being moved.";
    case NamedPosture::None:
        break;
    }
    return "The accelerometer delivers nothing any more.";
}

/// One overload for each kind of event. A missing overload is a compile error.
struct Words {
    std::string operator()(const PostureChange& change) const {
        if (const auto* read = std::get_if<Acceleration>(&change.posture))
            return fmt::format("The phone is put so that it reads ({}, {}, {}) g.", read->x,
                               read->y, read->z);
        return postureInWords(std::get<NamedPosture>(change.posture));
    }
    std::string operator()(const ChargerChange& change) const {
        return change.plugged ? "The charger is plugged in." : "The charger is unplugged.";
    }
    std::string operator()(const SettingsChange& change) const {
        std::vector<std::string> changes;
        for (const auto& [key, setting] : change.changed)
            changes.push_back(fmt::format("{} = {}", printable(key), valueInWords(setting)));
        return changes.empty() ? "The settings screen announces a change."
                               : fmt::format("Settings are changed: {}.", fmt::join(changes, ", "));
    }
    std::string operator()(const SettingsRemoval& removal) const {
        std::vector<std::string> keys;
        for (const auto& key : removal.keys)
            keys.push_back(printable(key));
        return fmt::format("Settings are removed: {}.", fmt::join(keys, ", "));
    }
    std::string operator()(const AirplaneModeSwitch& change) const {
        return fmt::format("By hand: airplane mode {}.", onOff(change.on));
    }
    std::string operator()(const WifiSwitch& change) const {
        return fmt::format("By hand: Wi-Fi {}.", onOff(change.on));
    }
    std::string operator()(const BluetoothSwitch& change) const {
        return fmt::format("By hand: Bluetooth {}.", onOff(change.on));
    }
    std::string operator()(const BluetoothConnection& change) const {
        return change.connected ? "A Bluetooth device connects."
                                : "The Bluetooth device disconnects.";
    }
    std::string operator()(const CellularDataSwitch& change) const {
        return fmt::format("By hand: cellular data {}.", onOff(change.on));
    }
    std::string operator()(const LocationSwitch& change) const {
        return fmt::format("By hand: location services {}.", onOff(change.on));
    }
    std::string operator()(const MaxRateChange& change) const {
        return fmt::format("By hand: data rate up to {}.", wordOf(dataRateWords, change.rate));
    }
    std::string operator()(const CallChange& change) const {
        switch (change.state) {
        case CallState::none:
            return "The call is over.";
        case CallState::incoming:
            return "A call comes in.";
        case CallState::outgoing:
            return "A call is placed.";
        default:
            return "A call is under way.";
        }
    }
    std::string operator()(const ButtonPress&) const { return "A button is pressed."; }
    std::string operator()(const DiskChange& change) const {
        return change.state == DiskState::ok     ? "The disk can be written again."
               : change.state == DiskState::full ? "The disk is full."
                                                 : "The disk is read-only.";
    }
    std::string operator()(const SettingsFileChange& change) const {
        return change.fault == SettingsFileFault::missing ? "The settings file is deleted."
                                                          : "The settings file is damaged.";
    }
    std::string operator()(const TelephonyServerChange& change) const {
        return change.answers ? "The telephony server answers again."
                              : "The telephony server is gone.";
    }
    std::string operator()(const PowerMessage&) const { return ""; }
    std::string operator()(const ClockChange&) const { return "The clock is set."; }
    std::string operator()(const MonitorStop&) const { return "The monitor is told to stop."; }
};

} // namespace

std::string eventInWords(const Event& event) {
    return std::visit(Words(), event);
}

} // namespace noctara
