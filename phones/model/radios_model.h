/// The radios of the simulated phone, which react to one another: airplane mode takes the power
/// from Wi-Fi and Bluetooth, and gives it back.
#pragma once

#include "phones/model/recorder.h"
#include "phones/model/scenario.h"
#include "platform/bluetooth.h"
#include "platform/cellular.h"
#include "platform/location.h"
#include "platform/preferences.h"
#include "platform/telephony.h"
#include "platform/wifi.h"

#include <string>
#include <vector>

namespace noctara {

class RadiosModel final : public Telephony,
                          public TelephonyManager,
                          public WiFi,
                          public WiFiManager,
                          public BluetoothManager,
                          public LocationManager,
                          public CellularRadio,
                          public Preferences {
public:
    RadiosModel(const Scenario& scenario, const Recorder& calls);

    TelephonyManager* sharedTelephonyManager(ClassRef managerClass) override;
    bool isInAirplaneMode() override;
    void setIsInAirplaneMode(bool airplane) override;
    void updateAirplaneMode() override;
    bool inCall() override;
    bool outgoingCallExists() override;
    bool incomingCallExists() override;
    bool activeCallExists() override;
    bool isNetworkTethering() override;

    WiFiManager* sharedInstance(ClassRef managerClass) override;
    bool isPowered() override;
    bool wiFiEnabled() override;
    void setWiFiEnabled(bool enabled) override;
    std::optional<PropertyList> perform(const char* selector) override;

    bool enabled() override;
    bool connected() override;
    void setPowered(bool powered) override;
    void setEnabled(bool enabled) override;

    bool locationServicesEnabled() override;
    void setLocationServicesEnabled(bool enabled) override;

    bool dataPlanIsEnabled() override;
    bool registrationDataIsEnabled() override;
    void setDataPlanIsEnabled(bool enabled) override;
    DataRate currentMaxAllowedDataRate() override;
    bool setMaxAllowedDataRate(DataRate rate) override;
    ServerConnectionRef createServerConnection(ServerConnectionCallback callback) override;
    void releaseConnection(ServerConnectionRef connection) override;
    std::vector<DataRate> supportedDataRates() override;

    void setAppValue(const char* key, const PropertyList& value, const char* domain) override;
    void appSynchronize(const char* domain) override;

    /// The radios as they stand, for whoever looks at the phone.
    struct States {
        bool airplane;
        bool wifi; ///< Enabled and powered.
        bool bluetooth;
        bool bluetoothConnected;
        bool cellularData;
        std::string maxRate; ///< "2G", "3G" or "4G".
        bool location;

        friend bool operator==(const States&, const States&) = default;
    };
    States states() const;

    // A hand on the switches: no calls of the monitor's.
    void switchAirplaneMode(bool airplane);
    void switchWifi(bool on);
    void switchBluetooth(bool on);
    void connectBluetooth(bool connect);
    void switchCellularData(bool on) { cellularData = on; }
    void chooseMaxRate(const std::string& rate) { maxRate = rate; }
    void switchLocation(bool on) { location = on; }

    std::string call; ///< none, in-call, outgoing, incoming or active.
    bool hasTelephonyManager;
    bool telephonyServerAnswers;

    /// Of the latest connection, for the telephony server to call.
    ServerConnectionCallback serverCallback = nullptr;
    int openConnections = 0;

private:
    const Recorder& recorder;

    bool airplane;
    bool airplaneFlag; ///< What the next `updateAirplaneMode` puts into effect.
    bool wifiIsEnabled;
    bool wifiHasPower;
    bool bluetoothIsEnabled;
    bool bluetoothIsConnected;
    bool cellularData;
    std::string maxRate;
    std::vector<std::string> rates;
    bool location;
    bool tethering;

    /// What the end of airplane mode brings back; nothing for a radio that was set meanwhile.
    bool wifiPowerComesBack = false;
    bool bluetoothComesBack = false;
    bool connectionComesBack = false;
};

} // namespace noctara
