#include "night/morning_check.h"

#include "monitor/countdown.h"
#include "night/local_clock_text.h"

#include <fmt/format.h>

namespace noctara {

void MorningCheck::called(const Call& call) {
    const auto on = [&] { return std::get<bool>(call.arguments[0]); };
    switch (call.operation) {
    case Operation::setIsInAirplaneMode:
        airplaneFlag = on();
        break;
    case Operation::updateAirplaneMode:
        radios.switchAirplaneMode(airplaneFlag);
        break;
    case Operation::setWiFiEnabled:
        radios.switchWifi(on());
        break;
    case Operation::setPowered:
    case Operation::setEnabled:
        radios.switchBluetooth(on());
        break;
    case Operation::CTCellularDataPlanSetIsEnabled:
        radios.switchCellularData(on());
        break;
    case Operation::CTRegistrationSetMaxAllowedDataRate:
        radios.chooseMaxRate(valueOf(dataRateWords, std::get<std::string_view>(call.arguments[0]))
                                 .value_or(DataRate::kCTRegistrationDataRateUnknown));
        break;
    case Operation::setLocationServicesEnabled:
        radios.switchLocation(on());
        break;
    default:
        break;
    }
}

/// The effect of an event on the radios. A radio that is set by hand while the phone is quiet must
/// stay so.
struct MorningCheck::ByHand {
    void operator()(const AirplaneModeSwitch& change) const {
        check.airplaneFlag = change.on;
        check.radios.switchAirplaneMode(change.on);
        expect(&RadioStates::airplane, change.on);
    }
    void operator()(const WifiSwitch& change) const {
        check.radios.switchWifi(change.on);
        expect(&RadioStates::wifi, change.on);
    }
    void operator()(const BluetoothSwitch& change) const {
        check.radios.switchBluetooth(change.on);
        expect(&RadioStates::bluetooth, change.on);
    }
    void operator()(const CellularDataSwitch& change) const {
        check.radios.switchCellularData(change.on);
        expect(&RadioStates::cellularData, change.on);
    }
    void operator()(const MaxRateChange& change) const {
        check.radios.chooseMaxRate(change.rate);
        expect(&RadioStates::maxRate, change.rate);
    }
    void operator()(const LocationSwitch& change) const {
        check.radios.switchLocation(change.on);
        expect(&RadioStates::location, change.on);
    }
    void operator()(const BluetoothConnection& change) const {
        check.radios.connectBluetooth(change.connected);
    }
    void operator()(const PostureChange&) const {}
    void operator()(const ChargerChange&) const {}
    void operator()(const SettingsChange&) const {}
    void operator()(const SettingsRemoval&) const {}
    void operator()(const CallChange&) const {}
    void operator()(const ButtonPress&) const {}
    void operator()(const DiskChange&) const {}
    void operator()(const SettingsFileChange&) const {}
    void operator()(const TelephonyServerChange&) const {}
    void operator()(const PowerMessage&) const {}
    void operator()(const ClockChange&) const {}
    void operator()(const MonitorStop&) const {}

    template <typename Value>
    void expect(Value RadioStates::*radio, Value value) const {
        if (check.expected)
            *check.expected.*radio = value;
    }

    MorningCheck& check;
};

void MorningCheck::happens(const Happening& happening) {
    std::visit(ByHand{*this}, happening.event);
}

void MorningCheck::decided(Date at, const Decision& decision) {
    if (const auto* counted = std::get_if<ReadingCounted>(&decision)) {
        if (counted->inARow == Countdown::readingsForChange && !counted->inSleepState && !expected)
            expected = radios.states();
    } else if (const auto* changed = std::get_if<StateChanged>(&decision)) {
        if (expected && !changed->inSleepState) {
            compare(at);
            expected.reset();
        }
    }
}

void MorningCheck::compare(Date at) {
    const auto now = radios.states();
    const std::string when = timeText(zone, at);
    const auto compareSwitch = [&](const char* radio, bool before, bool after) {
        if (before != after)
            found.push_back(fmt::format("{} {} since {}, and was {} before", radio,
                                        after ? "on" : "off", when, before ? "on" : "off"));
    };
    compareSwitch("airplane mode is", expected->airplane, now.airplane);
    compareSwitch("Wi-Fi is", expected->wifi, now.wifi);
    compareSwitch("Bluetooth is", expected->bluetooth, now.bluetooth);
    compareSwitch("cellular data is", expected->cellularData, now.cellularData);
    compareSwitch("the switch of location services is", expected->location, now.location);
    if (expected->maxRate != now.maxRate)
        found.push_back(fmt::format("the data rate is {} since {}, and was {} before",
                                    wordOf(dataRateWords, now.maxRate), when,
                                    wordOf(dataRateWords, expected->maxRate)));
}

} // namespace noctara
