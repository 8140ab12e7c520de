/// The effect of each event on the phone.
#include "phones/model/phone_model.h"

namespace noctara {

/// One overload for each kind of event. A missing overload is a compile error.
struct PhoneModel::Effect {
    void operator()(const PostureChange& change) const { phone.motion.setPosture(change.posture); }

    void operator()(const ChargerChange& change) const {
        phone.wakeUp();
        phone.power.plug(change.plugged);
        phone.sendACPowerChanged();
    }

    void operator()(const SettingsChange& change) const {
        phone.announceSettings([&](Dictionary& file) {
            for (const auto& [key, value] : change.changed)
                file.set(key, value);
        });
    }

    void operator()(const SettingsRemoval& removal) const {
        phone.announceSettings([&](Dictionary& file) {
            for (const auto& key : removal.keys)
                file.remove(key);
        });
    }

    void operator()(const AirplaneModeSwitch& change) const {
        phone.radios.switchAirplaneMode(change.on);
        phone.power.noteActivity();
    }

    void operator()(const WifiSwitch& change) const {
        phone.radios.switchWifi(change.on);
        phone.power.noteActivity();
    }

    void operator()(const BluetoothSwitch& change) const {
        phone.radios.switchBluetooth(change.on);
        phone.power.noteActivity();
    }

    void operator()(const CellularDataSwitch& change) const {
        phone.radios.switchCellularData(change.on);
        phone.power.noteActivity();
    }

    void operator()(const LocationSwitch& change) const {
        phone.radios.switchLocation(change.on);
        phone.power.noteActivity();
    }

    void operator()(const MaxRateChange& change) const {
        phone.radios.chooseMaxRate(change.rate);
        phone.power.noteActivity();
    }

    // A Bluetooth connection is not user activity.
    void operator()(const BluetoothConnection& change) const {
        phone.radios.connectBluetooth(change.connected);
    }

    void operator()(const CallChange& change) const {
        if (change.state != CallState::none)
            phone.wakeUp();
        phone.radios.call = change.state;
    }

    void operator()(const ButtonPress&) const { phone.wakeUp(); }

    void operator()(const DiskChange& change) const { phone.files.disk = change.state; }

    void operator()(const SettingsFileChange& change) const {
        if (change.fault == SettingsFileFault::missing)
            phone.files.remove(settingsFilePath);
        else
            phone.files.damage(settingsFilePath);
    }

    void operator()(const TelephonyServerChange& change) const {
        phone.radios.telephonyServerAnswers = change.answers;
    }

    void operator()(const PowerMessage& message) const {
        phone.onMainThread(
            [&sender = phone.power, type = message.type] { sender.sendMessage(type); });
    }

    void operator()(const ClockChange& change) const { phone.clock.setWall(change.to); }

    void operator()(const MonitorStop&) const {
        phone.onMainThread([&stopped = phone] { stopped.stopMonitor(); });
    }

    PhoneModel& phone;
};

void PhoneModel::happens(const Event& event) {
    // A power message is recorded when it is sent, as are those that the phone sends itself.
    if (!std::holds_alternative<PowerMessage>(event))
        recorder.happens(event);
    std::visit(Effect{*this}, event);
}

/// Acts as the settings screen: writes the file if the edit changes it, and posts the notification.
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
