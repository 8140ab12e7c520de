#include "phones/model/radios_model.h"

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

RadiosModel::RadiosModel(const Scenario& scenario, const Recorder& calls) :
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

TelephonyManager* RadiosModel::sharedTelephonyManager(ClassRef managerClass) {
    const bool exists = managerClass && hasTelephonyManager;
    return recorder.answer("sharedTelephonyManager", exists) ? this : nullptr;
}

bool RadiosModel::isInAirplaneMode() {
    return recorder.answer("isInAirplaneMode", airplane);
}

void RadiosModel::setIsInAirplaneMode(bool on) {
    recorder.call("setIsInAirplaneMode:", {on});
    airplaneFlag = on;
}

void RadiosModel::updateAirplaneMode() {
    recorder.call("updateAirplaneMode");
    switchAirplaneMode(airplaneFlag);
}

bool RadiosModel::inCall() {
    return recorder.answer("inCall", call == "in-call");
}

bool RadiosModel::outgoingCallExists() {
    return recorder.answer("outgoingCallExists", call == "outgoing");
}

bool RadiosModel::incomingCallExists() {
    return recorder.answer("incomingCallExists", call == "incoming");
}

bool RadiosModel::activeCallExists() {
    return recorder.answer("activeCallExists", call == "active");
}

bool RadiosModel::isNetworkTethering() {
    return recorder.answer("isNetworkTethering", tethering);
}

WiFiManager* RadiosModel::sharedInstance(ClassRef managerClass) {
    return managerClass ? this : nullptr;
}

bool RadiosModel::isPowered() {
    return recorder.answer("isPowered", wifiHasPower);
}

bool RadiosModel::wiFiEnabled() {
    return recorder.answer("wiFiEnabled", wifiIsEnabled);
}

void RadiosModel::setWiFiEnabled(bool on) {
    recorder.call("setWiFiEnabled:", {on});
    switchWifi(on);
}

std::optional<PropertyList> RadiosModel::perform(const char* selector) {
    recorder.answered(selector, {}, CallValue());
    return std::nullopt;
}

bool RadiosModel::enabled() {
    return recorder.answer("enabled", bluetoothIsEnabled);
}

bool RadiosModel::connected() {
    return recorder.answer("connected", bluetoothIsConnected);
}

void RadiosModel::setPowered(bool on) {
    recorder.call("setPowered:", {on});
    switchBluetooth(on);
}

void RadiosModel::setEnabled(bool on) {
    recorder.call("setEnabled:", {on});
    switchBluetooth(on);
}

bool RadiosModel::locationServicesEnabled() {
    return recorder.answer("locationServicesEnabled", location);
}

void RadiosModel::setLocationServicesEnabled(bool on) {
    recorder.call("setLocationServicesEnabled:", {on});
    location = on;
}

bool RadiosModel::dataPlanIsEnabled() {
    return recorder.answer("CTCellularDataPlanGetIsEnabled", cellularData);
}

bool RadiosModel::registrationDataIsEnabled() {
    return recorder.answer("CTRegistrationGetCellularDataIsEnabled", cellularData);
}

void RadiosModel::setDataPlanIsEnabled(bool on) {
    recorder.call("CTCellularDataPlanSetIsEnabled", {on});
    cellularData = on;
}

DataRate RadiosModel::currentMaxAllowedDataRate() {
    recorder.answered("CTRegistrationGetCurrentMaxAllowedDataRate", {}, maxRate);
    return rateOf(maxRate);
}

bool RadiosModel::setMaxAllowedDataRate(DataRate rate) {
    maxRate = nameOf(rate);
    return recorder.answer("CTRegistrationSetMaxAllowedDataRate", {maxRate}, true);
}

ServerConnectionRef RadiosModel::createServerConnection(ServerConnectionCallback callback) {
    if (!recorder.answer("_CTServerConnectionCreate", telephonyServerAnswers))
        return nullptr;
    serverCallback = callback;
    ++openConnections;
    return this;
}

void RadiosModel::releaseConnection(ServerConnectionRef) {
    --openConnections;
}

std::vector<DataRate> RadiosModel::supportedDataRates() {
    recorder.answered("CTRegistrationCopySupportedDataRates", {},
                      std::span<const std::string>(rates));
    std::vector<DataRate> supported;
    for (const auto& rate : rates)
        supported.push_back(rateOf(rate));
    return supported;
}

void RadiosModel::setAppValue(const char* key, const PropertyList& value, const char* domain) {
    // The file of the domain shows the radio itself, so there is nothing to keep.
    recorder.call("CFPreferencesSetAppValue", {key, &value, domain});
}

void RadiosModel::appSynchronize(const char* domain) {
    recorder.call("CFPreferencesAppSynchronize", {domain});
}

RadiosModel::States RadiosModel::states() const {
    return {airplane,
            wifiIsEnabled && wifiHasPower,
            bluetoothIsEnabled,
            bluetoothIsConnected,
            cellularData,
            maxRate,
            location};
}

void RadiosModel::switchAirplaneMode(bool on) {
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

void RadiosModel::switchWifi(bool on) {
    wifiIsEnabled = on;
    if (on)
        wifiHasPower = true;
}

void RadiosModel::switchBluetooth(bool on) {
    bluetoothIsEnabled = on;
    bluetoothIsConnected = bluetoothIsConnected && on;
    bluetoothComesBack = connectionComesBack = false;
}

void RadiosModel::connectBluetooth(bool connect) {
    bluetoothIsConnected = connect;
    connectionComesBack = false;
}

} // namespace noctara
