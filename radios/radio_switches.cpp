/// The switches of `RadiosLib`.
#include "platform/bluetooth.h"
#include "platform/files.h"
#include "platform/host_process.h"
#include "platform/location.h"
#include "platform/notifications.h"
#include "platform/preferences.h"
#include "platform/telephony.h"
#include "platform/wifi.h"
#include "radios/radios_lib.h"

namespace noctara {

namespace {

constexpr const char* pushPath =
    "/private/var/mobile/Library/Preferences/com.apple.persistentconnection-mcc.plist";

constexpr const char* refreshToggles = "com.sbsettings.refreshalltoggles";
constexpr const char* networkDomain = "com.apple.preferences.network";

} // namespace

TelephonyManager* RadiosLib::telephonyManager() {
    return platform.telephony->sharedTelephonyManager(
        platform.process->findClass("SBTelephonyManager"));
}

bool RadiosLib::isAirplaneModeEnabled() {
    auto* telephony = telephonyManager();
    return telephony && telephony->isInAirplaneMode();
}

void RadiosLib::setAirplaneModeEnabled(bool enabled) {
    if (auto* telephony = telephonyManager()) {
        telephony->setIsInAirplaneMode(enabled);
        telephony->updateAirplaneMode();
    }
    platform.notifications->post(refreshToggles);
}

bool RadiosLib::isCallInProgress() {
    auto* telephony = telephonyManager();
    return telephony && (telephony->inCall() || telephony->outgoingCallExists() ||
                         telephony->incomingCallExists() || telephony->activeCallExists());
}

bool RadiosLib::isTethering() {
    auto* telephony = telephonyManager();
    return telephony && telephony->isNetworkTethering();
}

bool RadiosLib::isWifiEnabled() {
    const ClassRef managerClass = platform.process->findClass("SBWiFiManager");
    auto* wifi = platform.wifi->sharedInstance(managerClass);
    if (!wifi || !wifi->isPowered())
        return false;
    wifi = platform.wifi->sharedInstance(managerClass);
    return wifi && wifi->wiFiEnabled();
}

void RadiosLib::setWifiEnabled(bool enabled) {
    if (isWifiEnabled() == enabled)
        return;
    if (auto* wifi = platform.wifi->sharedInstance(platform.process->findClass("SBWiFiManager")))
        wifi->setWiFiEnabled(enabled);
    platform.notifications->post(refreshToggles);
}

std::optional<PropertyList> RadiosLib::wifiManagerQuery(const char* selector) {
    auto* wifi = platform.wifi->sharedInstance(platform.process->findClass("SBWiFiManager"));
    return wifi ? wifi->perform(selector) : std::nullopt;
}

bool RadiosLib::isBluetoothEnabled() {
    return platform.bluetooth->enabled();
}

bool RadiosLib::isBluetoothConnected() {
    return platform.bluetooth->connected();
}

void RadiosLib::setBluetoothEnabled(bool enabled) {
    if (isBluetoothEnabled() == enabled)
        return;
    if (!enabled && platform.bluetooth->connected())
        return;
    platform.preferences->setAppValue("bluetooth-network", enabled, networkDomain);
    // `setPowered` switches Bluetooth on, but `setEnabled` is needed to switch it off.
    if (enabled)
        platform.bluetooth->setPowered(true);
    else
        platform.bluetooth->setEnabled(false);
    platform.preferences->appSynchronize(networkDomain);
    platform.notifications->post(refreshToggles);
}

bool RadiosLib::isCellularDataEnabled() {
    return platform.cellular->dataPlanIsEnabled();
}

bool RadiosLib::setCellularDataEnabled(bool enabled) {
    if (isCallInProgress())
        return false;
    if (isCellularDataEnabled() == enabled)
        return true;
    platform.cellular->setDataPlanIsEnabled(enabled);
    platform.notifications->post(refreshToggles);
    platform.notifications->postInProcess("PSCellDataChangedNotification",
                                          {{"DataEnabled", enabled}});
    return true;
}

DataRate RadiosLib::getCurrentMaxAllowedDataRate() {
    return platform.cellular->currentMaxAllowedDataRate();
}

bool RadiosLib::is3GEnabled() {
    if (!_is3GCapable)
        return true;
    const DataRate rate = getCurrentMaxAllowedDataRate();
    // Only a phone with a pair of rates offers a choice, and it keeps its kind: no call reaches the
    // kinds without a pair, here or in set3GEnabled.
    switch (getDeviceKind(nullptr)) {
    case kindNoPair:
        return true;
    case kind2G3G:
        return rate == DataRate::kCTRegistrationDataRate3G;
    case kind3G4G:
        return rate == DataRate::kCTRegistrationDataRate4G;
    default:
        return false;
    }
}

bool RadiosLib::query3GEnabled(bool) {
    return is3GEnabled();
}

bool RadiosLib::set3GEnabled(bool enabled) {
    using enum DataRate;
    if (!_is3GCapable)
        return true;
    if (isCallInProgress())
        return false;
    if (is3GEnabled() == enabled)
        return true;
    switch (getDeviceKind(nullptr)) {
    case kind2G3G:
        return platform.cellular->setMaxAllowedDataRate(enabled ? kCTRegistrationDataRate3G
                                                                : kCTRegistrationDataRate2G);
    case kind3G4G:
        if (!disable3GOn4GDevices)
            return platform.cellular->setMaxAllowedDataRate(enabled ? kCTRegistrationDataRate4G
                                                                    : kCTRegistrationDataRate3G);
        // The radio can change between 4G and 2G only via 3G.
        platform.cellular->setMaxAllowedDataRate(kCTRegistrationDataRate3G);
        return platform.cellular->setMaxAllowedDataRate(enabled ? kCTRegistrationDataRate4G
                                                                : kCTRegistrationDataRate2G);
    default:
        return false;
    }
}

void RadiosLib::setDisable3GOn4GDevices(bool disable) {
    disable3GOn4GDevices = disable;
}

bool RadiosLib::isLocationEnabled() {
    return platform.location->locationServicesEnabled();
}

void RadiosLib::setLocationEnabled(bool enabled) {
    if (isLocationEnabled() == enabled)
        return;
    platform.location->setLocationServicesEnabled(enabled);
    platform.notifications->post("com.apple.locationd/Prefs");
}

bool RadiosLib::isPushEnabled() {
    const auto file = platform.files->readDictionary(pushPath);
    const PropertyList* push = file ? file->find("PCEnablePush") : nullptr;
    return push && push->boolValue();
}

void RadiosLib::setPushEnabled(bool enabled) {
    if (isPushEnabled() == enabled)
        return;
    if (auto file = platform.files->readDictionary(pushPath)) {
        file->set("PCEnablePush", enabled);
        platform.files->writeDictionary(pushPath, *file);
    }
    platform.notifications->post("com.apple.persistentconnection-mcc/Prefs");
}

} // namespace noctara
