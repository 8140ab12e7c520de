/// The radios of a phone and how they affect each other. Airplane mode switches Wi-Fi power and
/// Bluetooth off, and its end restores them.
#pragma once

#include "phones/model/scenario.h"
#include "platform/cellular.h"

namespace noctara {

/// The radios as the user sees them.
struct RadioStates {
    bool airplane;
    bool wifi; ///< Enabled and powered.
    bool bluetooth;
    bool bluetoothConnected;
    bool cellularData;
    DataRate maxRate;
    bool location;

    friend bool operator==(const RadioStates&, const RadioStates&) = default;
};

class RadioSwitches {
public:
    explicit RadioSwitches(const Scenario::Radios& radios);

    RadioStates states() const;

    bool wifiIsEnabled() const { return wifiEnabled; }
    bool wifiIsPowered() const { return wifiPowered; }

    void switchAirplaneMode(bool on);
    void switchWifi(bool on);
    void switchBluetooth(bool on);
    void connectBluetooth(bool connect);
    void switchCellularData(bool on) { cellularData = on; }
    void chooseMaxRate(DataRate rate) { maxRate = rate; }
    void switchLocation(bool on) { location = on; }

private:
    bool airplane;
    bool wifiEnabled;
    bool wifiPowered;
    bool bluetooth;
    bool bluetoothConnected;
    bool cellularData;
    DataRate maxRate;
    bool location;

    // What the end of airplane mode switches on again. Switching Bluetooth in the meantime clears
    // its flags.
    bool wifiPowerComesBack = false;
    bool bluetoothComesBack = false;
    bool connectionComesBack = false;
};

} // namespace noctara
