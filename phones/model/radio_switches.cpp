#include "phones/model/radio_switches.h"

namespace noctara {

RadioSwitches::RadioSwitches(const Scenario::Radios& radios) :
    airplane(radios.airplane),
    wifiEnabled(radios.wifi),
    wifiPowered(radios.wifiPowered),
    bluetooth(radios.bluetooth),
    bluetoothConnected(radios.bluetoothConnected),
    cellularData(radios.cellularData),
    maxRate(radios.maxRate),
    location(radios.location) {}

RadioStates RadioSwitches::states() const {
    return {.airplane = airplane,
            .wifi = wifiEnabled && wifiPowered,
            .bluetooth = bluetooth,
            .bluetoothConnected = bluetoothConnected,
            .cellularData = cellularData,
            .maxRate = maxRate,
            .location = location};
}

void RadioSwitches::switchAirplaneMode(bool on) {
    if (on == airplane)
        return;
    airplane = on;
    if (on) {
        wifiPowerComesBack = wifiPowered;
        bluetoothComesBack = bluetooth;
        connectionComesBack = bluetoothConnected;
        wifiPowered = bluetooth = bluetoothConnected = false;
    } else {
        wifiPowered |= wifiPowerComesBack;
        bluetooth |= bluetoothComesBack;
        bluetoothConnected |= connectionComesBack;
        wifiPowerComesBack = bluetoothComesBack = connectionComesBack = false;
    }
}

void RadioSwitches::switchWifi(bool on) {
    wifiEnabled = on;
    if (on)
        wifiPowered = true;
}

void RadioSwitches::switchBluetooth(bool on) {
    bluetooth = on;
    bluetoothConnected = bluetoothConnected && on;
    bluetoothComesBack = connectionComesBack = false;
}

void RadioSwitches::connectBluetooth(bool connect) {
    bluetoothConnected = connect;
    connectionComesBack = false;
}

} // namespace noctara
