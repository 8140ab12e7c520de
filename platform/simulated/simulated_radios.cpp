#include "platform/simulated/simulated_radios.h"

namespace noctara {

namespace {

std::string nameOf(DataRate rate) {
    switch (rate) {
    case DataRate::kCTRegistrationDataRate2G:
        return "2G";
    case DataRate::kCTRegistrationDataRate3G:
        return "3G";
    case DataRate::kCTRegistrationDataRate4G:
        return "4G";
    default:
        return "unknown";
    }
}

DataRate rateOf(const std::string& name) {
    using enum DataRate;
    return name == "2G"   ? kCTRegistrationDataRate2G
           : name == "3G" ? kCTRegistrationDataRate3G
           : name == "4G" ? kCTRegistrationDataRate4G
                          : kCTRegistrationDataRateUnknown;
}

} // namespace

SimulatedRadios::SimulatedRadios(const Scenario& scenario, const Recorder& calls) :
    call(scenario.radios.call),
    hasTelephonyManager(scenario.phone.telephonyManager),
    telephonyServerAnswers(scenario.phone.telephonyServer),
    recorder(calls),
    airplane(scenario.radios.airplane),
    airplaneFlag(scenario.radios.airplane),
    wifiIsEnabled(scenario.radios.wifi),
    wifiHasPower(scenario.radios.wifiPowered),
    bluetoothIsEnabled(scenario.radios.bluetooth),
    bluetoothIsConnected(scenario.radios.bluetoothConnected),
    cellularData(scenario.radios.cellularData),
    maxRate(scenario.radios.maxRate),
    rates(scenario.phone.rates),
    location(scenario.radios.location),
    tethering(scenario.radios.tethering) {}

TelephonyManager* SimulatedRadios::sharedTelephonyManager(ClassRef managerClass) {
    const bool exists = managerClass && hasTelephonyManager;
    return recorder.answer("sharedTelephonyManager", exists) ? this : nullptr;
}

bool SimulatedRadios::isInAirplaneMode() {
    return recorder.answer("isInAirplaneMode", airplane);
}

void SimulatedRadios::setIsInAirplaneMode(bool on) {
    recorder.call("setIsInAirplaneMode:", {on});
    airplaneFlag = on;
}

void SimulatedRadios::updateAirplaneMode() {
    recorder.call("updateAirplaneMode");
    switchAirplaneMode(airplaneFlag);
}

bool SimulatedRadios::inCall() {
    return recorder.answer("inCall", call == "in-call");
}

bool SimulatedRadios::outgoingCallExists() {
    return recorder.answer("outgoingCallExists", call == "outgoing");
}

bool SimulatedRadios::incomingCallExists() {
    return recorder.answer("incomingCallExists", call == "incoming");
}

bool SimulatedRadios::activeCallExists() {
    return recorder.answer("activeCallExists", call == "active");
}

bool SimulatedRadios::isNetworkTethering() {
    return recorder.answer("isNetworkTethering", tethering);
}

WiFiManager* SimulatedRadios::sharedInstance(ClassRef managerClass) {
    return managerClass ? this : nullptr;
}

bool SimulatedRadios::isPowered() {
    return recorder.answer("isPowered", wifiHasPower);
}

bool SimulatedRadios::wiFiEnabled() {
    return recorder.answer("wiFiEnabled", wifiIsEnabled);
}

void SimulatedRadios::setWiFiEnabled(bool on) {
    recorder.call("setWiFiEnabled:", {on});
    switchWifi(on);
}

std::optional<PropertyList> SimulatedRadios::perform(const char* selector) {
    recorder.answered(selector, {}, CallValue());
    return std::nullopt;
}

bool SimulatedRadios::enabled() {
    return recorder.answer("enabled", bluetoothIsEnabled);
}

bool SimulatedRadios::connected() {
    return recorder.answer("connected", bluetoothIsConnected);
}

void SimulatedRadios::setPowered(bool on) {
    recorder.call("setPowered:", {on});
    switchBluetooth(on);
}

void SimulatedRadios::setEnabled(bool on) {
    recorder.call("setEnabled:", {on});
    switchBluetooth(on);
}

bool SimulatedRadios::locationServicesEnabled() {
    return recorder.answer("locationServicesEnabled", location);
}

void SimulatedRadios::setLocationServicesEnabled(bool on) {
    recorder.call("setLocationServicesEnabled:", {on});
    location = on;
}

bool SimulatedRadios::dataPlanIsEnabled() {
    return recorder.answer("CTCellularDataPlanGetIsEnabled", cellularData);
}

bool SimulatedRadios::registrationDataIsEnabled() {
    return recorder.answer("CTRegistrationGetCellularDataIsEnabled", cellularData);
}

void SimulatedRadios::setDataPlanIsEnabled(bool on) {
    recorder.call("CTCellularDataPlanSetIsEnabled", {on});
    cellularData = on;
}

DataRate SimulatedRadios::currentMaxAllowedDataRate() {
    recorder.answered("CTRegistrationGetCurrentMaxAllowedDataRate", {}, maxRate);
    return rateOf(maxRate);
}

bool SimulatedRadios::setMaxAllowedDataRate(DataRate rate) {
    maxRate = nameOf(rate);
    return recorder.answer("CTRegistrationSetMaxAllowedDataRate", {maxRate}, true);
}

ServerConnectionRef SimulatedRadios::createServerConnection(ServerConnectionCallback callback) {
    if (!recorder.answer("_CTServerConnectionCreate", telephonyServerAnswers))
        return nullptr;
    serverCallback = callback;
    ++openConnections;
    return this;
}

void SimulatedRadios::releaseConnection(ServerConnectionRef) {
    --openConnections;
}

std::vector<DataRate> SimulatedRadios::supportedDataRates() {
    recorder.answered("CTRegistrationCopySupportedDataRates", {},
                      std::span<const std::string>(rates));
    std::vector<DataRate> supported;
    for (const auto& rate : rates)
        supported.push_back(rateOf(rate));
    return supported;
}

void SimulatedRadios::setAppValue(const char* key, const PropertyList& value, const char* domain) {
    // The file of the domain shows the radio itself, so there is nothing to keep.
    recorder.call("CFPreferencesSetAppValue", {key, &value, domain});
}

void SimulatedRadios::appSynchronize(const char* domain) {
    recorder.call("CFPreferencesAppSynchronize", {domain});
}

SimulatedRadios::States SimulatedRadios::states() const {
    return {airplane,
            wifiIsEnabled && wifiHasPower,
            bluetoothIsEnabled,
            bluetoothIsConnected,
            cellularData,
            maxRate,
            location};
}

void SimulatedRadios::switchAirplaneMode(bool on) {
    airplaneFlag = on;
    if (on == airplane)
        return;
    airplane = on;
    if (on) {
        wifiPowerComesBack = wifiHasPower;
        bluetoothComesBack = bluetoothIsEnabled;
        connectionComesBack = bluetoothIsConnected;
        wifiHasPower = bluetoothIsEnabled = bluetoothIsConnected = false;
    } else {
        wifiHasPower |= wifiPowerComesBack;
        bluetoothIsEnabled |= bluetoothComesBack;
        bluetoothIsConnected |= connectionComesBack;
        wifiPowerComesBack = bluetoothComesBack = connectionComesBack = false;
    }
}

void SimulatedRadios::switchWifi(bool on) {
    wifiIsEnabled = on;
    if (on)
        wifiHasPower = true;
}

void SimulatedRadios::switchBluetooth(bool on) {
    bluetoothIsEnabled = on;
    bluetoothIsConnected = bluetoothIsConnected && on;
    bluetoothComesBack = connectionComesBack = false;
}

void SimulatedRadios::connectBluetooth(bool connect) {
    bluetoothIsConnected = connect;
    connectionComesBack = false;
}

} // namespace noctara
