/// Enters and leaves the sleep state. Applications come first, then either airplane mode or the
/// chosen radios. The monitor stores which of these radios were on, and on waking switches on only
/// those.
#include "monitor/noctara_thread.h"
#include "platform/cellular.h"
#include "platform/files.h"
#include "platform/host_process.h"
#include "platform/notifications.h"
#include "platform/telephony.h"

namespace noctara {

namespace {

const char* stateWord(bool enabled) {
    return enabled ? "ENABLED" : "disabled";
}

bool truthUnder(const char* key, const std::optional<Dictionary>& file) {
    const PropertyList* value = file ? file->find(key) : nullptr;
    return value && value->boolValue();
}

} // namespace

void NoctaraThread::setState(bool state) {
    currentState = state;
    platform.threads->performOnMainThread("setStateAirplaneMode",
                                          [this] { setStateAirplaneMode(); });
    platform.notifications->post("com.apple.radios");
}

void NoctaraThread::setStateAirplaneMode() {
    if (!platform.threads->isMainThread()) {
        debugLog("Noctara : cannot change airplane mode if not in main thread");
        return;
    }
    debugLog("Noctara : About to change airplane mode to %s", stateWord(currentState));
    startStopApplications(currentState);

    if (auto* telephony = platform.telephony->sharedTelephonyManager(
            platform.process->findClass("SBTelephonyManager"))) {
        if (_DEBUG_)
            debugLog("Noctara : airPlaneMode : %s", stateWord(telephony->isInAirplaneMode()));
        if (airplaneSwitch) {
            setAirplaneMode(*telephony);
        } else {
            if (currentState)
                rememberRadios();
            switchRadios(*telephony);
        }
    } else {
        debugLog("Noctara : SBTelephonyManager is NULL");
    }
    platform.notifications->post("com.sbsettings.refreshalltoggles");
}

void NoctaraThread::setAirplaneMode(TelephonyManager& telephony) {
    telephony.setIsInAirplaneMode(currentState);
    telephony.updateAirplaneMode();
}

void NoctaraThread::rememberRadios() {
    if (phoneSwitch || wifiSwitch)
        defaultWifi = radiosLib->isWifiEnabled();
    if (phoneSwitch || bluetoothSwitch)
        defaultBT = radiosLib->isBluetoothEnabled();
    if (switches3G()) {
        default3G = radiosLib->is3GEnabled();
        // With `edgeSwitch` this is not reached: waking then restores the state at the start.
        defaultEdge = radiosLib->isCellularDataEnabled();
    }
    if (phoneSwitch || locationSwitch)
        defaultLocation = radiosLib->isLocationEnabled();
}

void NoctaraThread::switchRadios(TelephonyManager& telephony) {
    if (phoneSwitch)
        setAirplaneMode(telephony);
    if (phoneSwitch || wifiSwitch)
        radiosLib->setWifiEnabled(wantedState(defaultWifi, wifiSwitch));
    if (phoneSwitch || bluetoothSwitch)
        setBluetoothEnabled(wantedState(defaultBT, bluetoothSwitch));
    if (switches3G())
        radiosLib->set3GEnabled(!currentState && default3G);
    if (!phoneSwitch && edgeSwitch && hasCellularData())
        radiosLib->setCellularDataEnabled(!currentState && defaultEdge);
    if (phoneSwitch || locationSwitch)
        setLocationEnabled(wantedState(defaultLocation, locationSwitch));
}

/// Whether 3G is switched by itself. Not if airplane mode or cellular data is switched.
bool NoctaraThread::switches3G() {
    return !phoneSwitch && !edgeSwitch && _3GSwitch && hasCellularData();
}

/// The state that a radio must get. A radio that was off before stays off. In the sleep state a
/// radio is off if it is `switchedOff`. Otherwise airplane mode has switched it off as well, so it
/// is switched on again.
bool NoctaraThread::wantedState(bool before, bool switchedOff) {
    return before && !(switchedOff && currentState);
}

bool NoctaraThread::isEnabled() {
    const bool airplane = truthUnder(
        "AirplaneMode", platform.files->readDictionary(
                            "/var/preferences/SystemConfiguration/com.apple.radios.plist"));
    const auto network = platform.files->readDictionary(
        "/private/var/mobile/Library/Preferences/com.apple.preferences.network.plist");
    defaultWifi = truthUnder("wifi-network", network);
    defaultBT = truthUnder("bluetooth-network", network);
    defaultEdge = platform.cellular->registrationDataIsEnabled();
    default3G = is3GEnabled();
    defaultLocation = truthUnder("LocationServicesEnabled",
                                 platform.files->readDictionary(
                                     "/var/mobile/Library/Preferences/com.apple.locationd.plist"));

    debugLog("Noctara : Wifi is %s", stateWord(defaultWifi));
    debugLog("Noctara : BT is %s", stateWord(defaultBT));
    debugLog("Noctara : Edge (data) is %s", stateWord(defaultEdge));
    debugLog("Noctara : 3G is %s", stateWord(default3G));
    debugLog("Noctara : AirPlaine is %s", stateWord(airplane));
    debugLog("Noctara : Phone is %s", stateWord(!airplane));
    debugLog("Noctara : Location is %s", stateWord(defaultLocation));
    currentState = airplane;
    defaultAirplane = airplane;
    return airplane;
}

bool NoctaraThread::isAirplaneModeActive() {
    if (!defaultAirplane)
        return lastStateWasPlane;
    auto* telephony = platform.telephony->sharedTelephonyManager(
        platform.process->findClass("SBTelephonyManager"));
    if (!telephony) {
        debugLog("Noctara : SBTelephonyManager is NULL");
        return false;
    }
    const bool airplane = telephony->isInAirplaneMode();
    debugLog("Noctara : airPlaneMode : %s", stateWord(airplane));
    return airplane;
}

void NoctaraThread::setLocationEnabled(bool on) {
    radiosLib->setLocationEnabled(on);
}

void NoctaraThread::setBluetoothEnabled(bool on) {
    radiosLib->setBluetoothEnabled(on);
}

bool NoctaraThread::is3GEnabled() {
    return radiosLib->is3GEnabled();
}

bool NoctaraThread::hasCellularData() {
    return true;
}

} // namespace noctara
