/// The phone's radios: reads each and sets each. A getter asks the phone every time; a setter (but
/// for airplane mode) acts only on a difference, and then announces the change so that other
/// toggles and the system's own daemons notice.
#pragma once

#include "platform/cellular.h"
#include "platform/platform.h"
#include "platform/property_list.h"

#include <cstdint>
#include <optional>
#include <string>

namespace noctara {

class TelephonyManager;
class WiFiManager;

/// Which data rates the cellular radio offers.
enum DeviceKind : std::int32_t {
    kindUnknown = -1, ///< The telephony server has not been reached yet.
    kindNoPair = 0,   ///< Neither pair below.
    kind2G3G = 1,     ///< Both 2G and 3G.
    kind3G4G = 2,     ///< Both 3G and 4G.
};

class RadiosLib {
public:
    /// Settles the device kind, if the telephony server answers, and whether a choice of data rate
    /// is offered at all.
    explicit RadiosLib(const Platform& platform);

    bool isAirplaneModeEnabled();
    /// Sets it always, and announces it even without a telephony manager.
    void setAirplaneModeEnabled(bool enabled);

    bool isCallInProgress();
    bool isTethering();

    /// False also when Wi-Fi is enabled but has no power.
    bool isWifiEnabled();
    void setWifiEnabled(bool enabled);
    /// The Wi-Fi manager's answer to a message of this method's own name.
    std::optional<PropertyList> wifiManagerQuery();

    bool isBluetoothEnabled();
    bool isBluetoothConnected();
    /// Silently refuses to switch off while a device is connected.
    void setBluetoothEnabled(bool enabled);

    bool isCellularDataEnabled();
    /// False, with nothing changed, during a call.
    bool setCellularDataEnabled(bool enabled);

    DataRate getCurrentMaxAllowedDataRate();
    /// "3G" is the radio's fast rate: 4G on a 3G/4G phone. True where there is no choice of rate.
    bool is3GEnabled();
    bool query3GEnabled(bool ignored);
    /// False during a call, without a known pair of rates, or when the phone says so.
    bool set3GEnabled(bool enabled);
    /// Whether a 3G/4G phone goes down to 2G, by way of 3G, rather than to 3G.
    void setDisable3GOn4GDevices(bool disable);

    bool isLocationEnabled();
    void setLocationEnabled(bool enabled);

    bool isPushEnabled();
    void setPushEnabled(bool enabled);

    /// The device kind, asked of the telephony server until it first answers. `status` is ignored;
    /// every caller passes null.
    std::int32_t getDeviceKind(void* status);
    bool detectRadioCapabilities();
    bool supportsCapability(const std::string& name);

private:
    TelephonyManager* telephonyManager();

    const Platform platform;
    bool _is3GCapable = false;
    const bool supportsNew3GAPI = true; ///< Read by nothing here.
    std::int32_t deviceKind = kindUnknown;
    bool disable3GOn4GDevices = false;
};

/// Where "MGGetBoolAnswer" was found, for the life of the process; null until it was.
extern void* cachedMGGetBoolAnswer;

/// Called by the telephony server over a connection that `getDeviceKind` opened. Exported.
extern "C" [[gnu::visibility("default")]] void callbackCTServerConnectionCreate();

} // namespace noctara
