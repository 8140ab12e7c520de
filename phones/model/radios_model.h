/// The services of the simulated phone that read and switch its radios.
#pragma once

#include "phones/model/radio_switches.h"
#include "phones/model/recorder.h"
#include "phones/model/scenario.h"
#include "platform/bluetooth.h"
#include "platform/cellular.h"
#include "platform/location.h"
#include "platform/preferences.h"
#include "platform/telephony.h"
#include "platform/wifi.h"

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

    RadioStates states() const { return radios.states(); }

    /// Switch radios by hand. These are not calls of the monitor.
    void switchAirplaneMode(bool on);
    void switchWifi(bool on) { radios.switchWifi(on); }
    void switchBluetooth(bool on) { radios.switchBluetooth(on); }
    void connectBluetooth(bool connect) { radios.connectBluetooth(connect); }
    void switchCellularData(bool on) { radios.switchCellularData(on); }
    void chooseMaxRate(DataRate rate) { radios.chooseMaxRate(rate); }
    void switchLocation(bool on) { radios.switchLocation(on); }

    CallState call;
    bool hasTelephonyManager;
    bool telephonyServerAnswers;

    /// The callback of the latest connection.
    ServerConnectionCallback serverCallback = nullptr;
    int openConnections = 0;

private:
    const Recorder& recorder;

    RadioSwitches radios;
    bool airplaneFlag; ///< The value for the next `updateAirplaneMode`.
    std::vector<DataRate> rates;
    bool tethering;
};

} // namespace noctara
