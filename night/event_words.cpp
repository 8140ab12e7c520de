#include "night/event_words.h"

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
        return '"' + *string + '"';
    return "...";
}

std::string postureInWords(const PropertyList& posture) {
    if (const auto* axes = posture.as<Array>())
        return fmt::format("The phone is put so that it reads ({}, {}, {}) g.",
                           valueInWords((*axes)[0]), valueInWords((*axes)[1]),
                           valueInWords((*axes)[2]));
    const auto& name = *posture.as<std::string>();
    if (name == "screen-down")
        return "The phone is laid down, screen down.";
    if (name == "screen-up")
        return "The phone is laid down, screen up.";
    if (name == "in-hand")
        return "The phone is taken into the hand.";
    if (name == "in-pocket")
        return "The phone is put into a pocket.";
    if (name == "moving")
        return "The phone is being moved.";
    return "The accelerometer delivers nothing any more.";
}

std::string callInWords(const std::string& call) {
    if (call == "none")
        return "The call is over.";
    if (call == "incoming")
        return "A call comes in.";
    if (call == "outgoing")
        return "A call is placed.";
    return "A call is under way.";
}

} // namespace

std::string happeningInWords(const Happening& happening) {
    const auto& action = happening.action;
    const auto& value = happening.value;
    const bool on = value.boolValue();
    if (action == "posture")
        return postureInWords(value);
    if (action == "charger")
        return on ? "The charger is plugged in." : "The charger is unplugged.";
    if (action == "button")
        return "A button is pressed.";
    if (action == "call")
        return callInWords(*value.as<std::string>());
    if (action == "airplane")
        return fmt::format("By hand: airplane mode {}.", onOff(on));
    if (action == "wifi")
        return fmt::format("By hand: Wi-Fi {}.", onOff(on));
    if (action == "bluetooth")
        return fmt::format("By hand: Bluetooth {}.", onOff(on));
    if (action == "bluetooth_connected")
        return on ? "A Bluetooth device connects." : "The Bluetooth device disconnects.";
    if (action == "cellular_data")
        return fmt::format("By hand: cellular data {}.", onOff(on));
    if (action == "location")
        return fmt::format("By hand: location services {}.", onOff(on));
    if (action == "max_rate")
        return fmt::format("By hand: data rate up to {}.", *value.as<std::string>());
    if (action == "settings") {
        std::vector<std::string> changes;
        for (const auto& [key, setting] : *value.as<Dictionary>())
            changes.push_back(fmt::format("{} = {}", key, valueInWords(setting)));
        return changes.empty() ? "The settings screen announces a change."
                               : fmt::format("Settings are changed: {}.", fmt::join(changes, ", "));
    }
    if (action == "remove_settings") {
        std::vector<std::string> keys;
        for (const auto& key : *value.as<Array>())
            keys.push_back(*key.as<std::string>());
        return fmt::format("Settings are removed: {}.", fmt::join(keys, ", "));
    }
    if (action == "settings_file")
        return *value.as<std::string>() == "missing" ? "The settings file is deleted."
                                                     : "The settings file is damaged.";
    if (action == "disk")
        return *value.as<std::string>() == "ok"     ? "The disk can be written again."
               : *value.as<std::string>() == "full" ? "The disk is full."
                                                    : "The disk is read-only.";
    if (action == "telephony_server")
        return on ? "The telephony server answers again." : "The telephony server is gone.";
    if (action == "clock")
        return "The clock is set.";
    return "The monitor is told to stop.";
}

} // namespace noctara
