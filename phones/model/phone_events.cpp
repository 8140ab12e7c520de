/// What can happen to the phone.
#include "phones/model/phone_model.h"

namespace noctara {

namespace {

const std::string& text(const PropertyList& value) {
    return *value.as<std::string>();
}

DiskState diskState(const std::string& name) {
    return name == "full"        ? DiskState::full
           : name == "read-only" ? DiskState::readOnly
                                 : DiskState::ok;
}

} // namespace

void PhoneModel::happens(const std::string& action, const PropertyList& value) {
    if (action == "power_message") {
        // The message is told of as it is sent, like those that the phone sends by itself.
        const auto type = static_cast<std::uint32_t>(*value.as<std::int64_t>());
        onMainThread([this, type] { power.sendMessage(type); });
        return;
    }

    recorder.happens(action, value);
    const bool on = value.boolValue();
    if (action == "posture") {
        motion.setPosture(value);
    } else if (action == "button") {
        wakeUp();
    } else if (action == "charger") {
        wakeUp();
        power.plug(on);
        sendACPowerChanged();
    } else if (action == "call") {
        if (text(value) != "none")
            wakeUp();
        radios.call = text(value);
    } else if (action == "settings") {
        announceSettings([&](Dictionary& file) {
            for (const auto& [key, setting] : *value.as<Dictionary>())
                file.set(key, setting);
        });
    } else if (action == "remove_settings") {
        announceSettings([&](Dictionary& file) {
            for (const auto& key : *value.as<Array>())
                file.remove(text(key));
        });
    } else if (action == "settings_file") {
        if (text(value) == "missing")
            files.remove(settingsFilePath);
        else
            files.damage(settingsFilePath);
    } else if (action == "disk") {
        files.disk = diskState(text(value));
    } else if (action == "telephony_server") {
        radios.telephonyServerAnswers = on;
    } else if (action == "clock") {
        clock.setWall(*value.as<Date>());
    } else if (action == "stop") {
        onMainThread([this] { stopMonitor(); });
    } else {
        switchByHand(action, value);
    }
}

void PhoneModel::switchByHand(const std::string& action, const PropertyList& value) {
    const bool on = value.boolValue();
    if (action == "airplane")
        radios.switchAirplaneMode(on);
    else if (action == "wifi")
        radios.switchWifi(on);
    else if (action == "bluetooth")
        radios.switchBluetooth(on);
    else if (action == "bluetooth_connected")
        radios.connectBluetooth(on);
    else if (action == "cellular_data")
        radios.switchCellularData(on);
    else if (action == "location")
        radios.switchLocation(on);
    else if (action == "max_rate")
        radios.chooseMaxRate(text(value));
    else
        throw std::invalid_argument("nothing called \"" + action + "\" can happen to a phone");
    // A device that connects is no hand on the phone.
    if (action != "bluetooth_connected")
        power.noteActivity();
}

/// The settings screen writes its file, if there is anything to write, and announces it.
void PhoneModel::announceSettings(const std::function<void(Dictionary&)>& edit) {
    power.noteActivity();
    editFile(settingsFilePath, edit);
    onMainThread([this] { process.deliver("com.quorbit.Noctara.preferences-changed"); });
}

void PhoneModel::editFile(const std::string& path, const std::function<void(Dictionary&)>& edit) {
    auto file = files.content(path);
    auto* found = file.value ? file.value->as<Dictionary>() : nullptr;
    Dictionary edited = found ? *found : Dictionary();
    const Dictionary before = edited;
    edit(edited);
    if (edited != before)
        files.writeByOthers(path, edited);
}

} // namespace noctara
