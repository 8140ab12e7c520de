#include "phones/model/radios_model.h"

namespace noctara {

RadiosModel::RadiosModel(const Scenario& scenario, const Recorder& calls) :
    call(scenario.radios.call),
    hasTelephonyManager(scenario.phone.telephonyManager),
    telephonyServerAnswers(scenario.phone.telephonyServer),
    recorder(calls),
    radios(scenario.radios),
    airplaneFlag(scenario.radios.airplane),
    rates(scenario.phone.rates),
    tethering(scenario.radios.tethering) {}

TelephonyManager* RadiosModel::sharedTelephonyManager(ClassRef managerClass) {
    const bool exists = managerClass && hasTelephonyManager;
    return recorder.answer(Operation::sharedTelephonyManager, exists) ? this : nullptr;
}

bool RadiosModel::isInAirplaneMode() {
    return recorder.answer(Operation::isInAirplaneMode, radios.states().airplane);
}

void RadiosModel::setIsInAirplaneMode(bool on) {
    recorder.call(Operation::setIsInAirplaneMode, {on});
    airplaneFlag = on;
}

void RadiosModel::updateAirplaneMode() {
    recorder.call(Operation::updateAirplaneMode);
    switchAirplaneMode(airplaneFlag);
}

bool RadiosModel::inCall() {
    return recorder.answer(Operation::inCall, call == CallState::inCall);
}

bool RadiosModel::outgoingCallExists() {
    return recorder.answer(Operation::outgoingCallExists, call == CallState::outgoing);
}

bool RadiosModel::incomingCallExists() {
    return recorder.answer(Operation::incomingCallExists, call == CallState::incoming);
}

bool RadiosModel::activeCallExists() {
    return recorder.answer(Operation::activeCallExists, call == CallState::active);
}

bool RadiosModel::isNetworkTethering() {
    return recorder.answer(Operation::isNetworkTethering, tethering);
}

WiFiManager* RadiosModel::sharedInstance(ClassRef managerClass) {
    return managerClass ? this : nullptr;
}

bool RadiosModel::isPowered() {
    return recorder.answer(Operation::isPowered, radios.wifiIsPowered());
}

bool RadiosModel::wiFiEnabled() {
    return recorder.answer(Operation::wiFiEnabled, radios.wifiIsEnabled());
}

void RadiosModel::setWiFiEnabled(bool on) {
    recorder.call(Operation::setWiFiEnabled, {on});
    switchWifi(on);
}

std::optional<PropertyList> RadiosModel::perform(const char* selector) {
    if (const auto operation = operationNamed(selector))
        recorder.answered(*operation, {}, CallValue());
    return std::nullopt;
}

bool RadiosModel::enabled() {
    return recorder.answer(Operation::enabled, radios.states().bluetooth);
}

bool RadiosModel::connected() {
    return recorder.answer(Operation::connected, radios.states().bluetoothConnected);
}

void RadiosModel::setPowered(bool on) {
    recorder.call(Operation::setPowered, {on});
    switchBluetooth(on);
}

void RadiosModel::setEnabled(bool on) {
    recorder.call(Operation::setEnabled, {on});
    switchBluetooth(on);
}

bool RadiosModel::locationServicesEnabled() {
    return recorder.answer(Operation::locationServicesEnabled, radios.states().location);
}

void RadiosModel::setLocationServicesEnabled(bool on) {
    recorder.call(Operation::setLocationServicesEnabled, {on});
    switchLocation(on);
}

bool RadiosModel::dataPlanIsEnabled() {
    return recorder.answer(Operation::CTCellularDataPlanGetIsEnabled, radios.states().cellularData);
}

bool RadiosModel::registrationDataIsEnabled() {
    return recorder.answer(Operation::CTRegistrationGetCellularDataIsEnabled,
                           radios.states().cellularData);
}

void RadiosModel::setDataPlanIsEnabled(bool on) {
    recorder.call(Operation::CTCellularDataPlanSetIsEnabled, {on});
    switchCellularData(on);
}

DataRate RadiosModel::currentMaxAllowedDataRate() {
    const DataRate rate = radios.states().maxRate;
    recorder.answered(Operation::CTRegistrationGetCurrentMaxAllowedDataRate, {},
                      wordOf(dataRateWords, rate));
    return rate;
}

bool RadiosModel::setMaxAllowedDataRate(DataRate rate) {
    chooseMaxRate(rate);
    return recorder.answer(Operation::CTRegistrationSetMaxAllowedDataRate,
                           {wordOf(dataRateWords, rate)}, true);
}

ServerConnectionRef RadiosModel::createServerConnection(ServerConnectionCallback callback) {
    if (!recorder.answer(Operation::CTServerConnectionCreate, telephonyServerAnswers))
        return nullptr;
    serverCallback = callback;
    ++openConnections;
    return this;
}

void RadiosModel::releaseConnection(ServerConnectionRef) {
    --openConnections;
}

std::vector<DataRate> RadiosModel::supportedDataRates() {
    std::vector<std::string> words;
    for (const DataRate rate : rates)
        words.emplace_back(wordOf(dataRateWords, rate));
    recorder.answered(Operation::CTRegistrationCopySupportedDataRates, {},
                      std::span<const std::string>(words));
    return rates;
}

void RadiosModel::setAppValue(const char* key, const PropertyList& value, const char* domain) {
    // The value is not stored, because the file of the domain reports the radio itself.
    recorder.call(Operation::CFPreferencesSetAppValue, {key, &value, domain});
}

void RadiosModel::appSynchronize(const char* domain) {
    recorder.call(Operation::CFPreferencesAppSynchronize, {domain});
}

void RadiosModel::switchAirplaneMode(bool on) {
    airplaneFlag = on;
    radios.switchAirplaneMode(on);
}

} // namespace noctara
