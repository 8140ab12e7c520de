#include "phones/replay/replayed_phone.h"

#include "host/host.h"
#include "phones/simulated/library_process.h"

namespace noctara {

ReplayedPhone::ReplayedPhone(const Scenario& scenario, TraceReader& lines) :
    player(std::in_place, lines, scenario.start, scenario.end),
    answers(*player),
    process(scenario.timezone, answers),
    services(scenario, answers),
    platform{
        .log = &process,
        .process = &process,
        .threads = &process,
        .clock = &process,
        .calendar = &process,
        .notifications = &process,
        .power = &process,
    } {
    services.fill(platform);
    startLibrary(platform);
}

ReplayedPhone::~ReplayedPhone() {
    // Ends the monitor thread.
    player.reset();
    endLibrary();
}

/// The effect of each event on the library. One overload for each kind of event. A missing overload
/// is a compile error.
struct ReplayedPhone::Effect {
    void operator()(const ChargerChange&) const {
        phone.player->onMainThread({{Operation::isOnAC}},
                                   [&process = phone.process] { process.acPowerChanged(); });
    }
    void operator()(const SettingsChange&) const { announceSettings(); }
    void operator()(const SettingsRemoval&) const { announceSettings(); }
    void operator()(const PowerMessage& message) const {
        // Started at once, because the answer to a message need not make any call.
        phone.player->startOnMainThread(
            {{Operation::IOAllowPowerChange, Operation::IOCancelPowerChange},
             "Noctara messageType"},
            [&process = phone.process, message] { process.deliverPowerMessage(message); });
    }
    void operator()(const MonitorStop&) const {
        if (NoctaraInstance)
            NoctaraInstance->stop();
    }

    void operator()(const PostureChange&) const {}
    void operator()(const AirplaneModeSwitch&) const {}
    void operator()(const WifiSwitch&) const {}
    void operator()(const BluetoothSwitch&) const {}
    void operator()(const BluetoothConnection&) const {}
    void operator()(const CellularDataSwitch&) const {}
    void operator()(const LocationSwitch&) const {}
    void operator()(const MaxRateChange&) const {}
    void operator()(const CallChange&) const {}
    void operator()(const ButtonPress&) const {}
    void operator()(const DiskChange&) const {}
    void operator()(const SettingsFileChange&) const {}
    void operator()(const TelephonyServerChange&) const {}
    void operator()(const ClockChange&) const {}

    void announceSettings() const {
        phone.player->onMainThread(
            {{Operation::fileExistsAtPath}, "Noctara Rechargement"}, [&process = phone.process] {
                process.deliverNotification("com.quorbit.Noctara.preferences-changed");
            });
    }

    ReplayedPhone& phone;
};

std::optional<std::string> ReplayedPhone::play() {
    player->onMainThread({{Operation::bundleIdentifier}}, [this] {
        NoctaraInitialize();
        process.applicationDidFinishLaunching();
    });
    return player->play([this](Date at, const Event& event) {
        answers.tell({at, event});
        std::visit(Effect{*this}, event);
    });
}

} // namespace noctara
