/// Reads and switches the phone's radios. A getter asks the phone every time. A setter does nothing
/// if the radio has the wanted state already. After a change it posts a notification for other
/// programs and the system. Exceptions: `setAirplaneModeEnabled` always acts, and `set3GEnabled`
/// posts nothing.
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
    kindUnknown = -1, ///< The telephony server has not answered yet.
    kindNoPair = 0,   ///< Neither pair below.
    kind2G3G = 1,     ///< Both 2G and 3G.
    kind3G4G = 2,     ///< Both 3G and 4G.
};

class RadiosLib {
public:
    /// Finds out the device kind, if the telephony server answers, and whether the device can
    /// choose between two data rates.
    explicit RadiosLib(const Platform& platform);

    bool isAirplaneModeEnabled();
    /// Acts even if there is no difference. Posts the notification even without a telephony
    /// manager.
    void setAirplaneModeEnabled(bool enabled);

    bool isCallInProgress();
    bool isTethering();

    /// False if Wi-Fi is enabled but not powered.
    bool isWifiEnabled();
    void setWifiEnabled(bool enabled);
    /// The Wi-Fi manager's result for the message `selector`. Pass the selector of the caller's own
    /// method if it has another name.
    std::optional<PropertyList> wifiManagerQuery(const char* selector = "wifiManagerQuery");

    bool isBluetoothEnabled();
    bool isBluetoothConnected();
    /// Does nothing if it would switch Bluetooth off while a device is connected.
    void setBluetoothEnabled(bool enabled);

    bool isCellularDataEnabled();
    /// False during a call; nothing is changed then.
    bool setCellularDataEnabled(bool enabled);

    DataRate getCurrentMaxAllowedDataRate();
    /// Whether the faster rate of the pair is allowed: 3G, or 4G on a 3G/4G phone. True on a device
    /// that cannot choose.
    bool is3GEnabled();
    bool query3GEnabled(bool ignored);
    /// True, with nothing done, on a device that cannot choose. False during a call, or if the
    /// phone refuses.
    bool set3GEnabled(bool enabled);
    /// Whether a 3G/4G phone is switched down to 2G instead of 3G.
    void setDisable3GOn4GDevices(bool disable);

    bool isLocationEnabled();
    void setLocationEnabled(bool enabled);

    bool isPushEnabled();
    void setPushEnabled(bool enabled);

    /// The device kind. Asks the telephony server until it has answered once. `status` is ignored;
    /// every caller passes null.
    std::int32_t getDeviceKind(void* status);
    bool detectRadioCapabilities();
    bool supportsCapability(const std::string& name);

private:
    TelephonyManager* telephonyManager();

    const Platform platform;
    bool _is3GCapable = false;
    const bool supportsNew3GAPI = true; ///< Not read by the library.
    std::int32_t deviceKind = kindUnknown;
    bool disable3GOn4GDevices = false;
};

/// The function "MGGetBoolAnswer". Null until it has been found. Never cleared.
extern void* cachedMGGetBoolAnswer;

/// The callback of the telephony server for a connection that `getDeviceKind` opened. Exported.
extern "C" [[gnu::visibility("default")]] void callbackCTServerConnectionCreate();

} // namespace noctara
