/// The simulated phone's radios, which react to one another and to switches set by hand.
#include "phones/model/radios_model.h"

#include "platform/wifi.h"
#include "tests/a_night.h"

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using States = RadioStates;
using enum DataRate;

class TheSimulatedRadios : public ANight {
protected:
    RadiosModel& radios() { return phone().radios; }
    States states() { return radios().states(); }

    /// Switches airplane mode as the monitor does.
    void setAirplaneMode(bool on) {
        radios().setIsInAirplaneMode(on);
        radios().updateAirplaneMode();
    }

    bool inFile(const std::string& path, const char* key) {
        const auto file = phone().platform().files->readDictionary(path);
        const auto* value = file ? file->find(key) : nullptr;
        if (!value || !value->as<bool>())
            throw std::runtime_error("no truth under " + std::string(key) + " in " + path);
        return *value->as<bool>();
    }
};

TEST_F(TheSimulatedRadios, start_as_the_scenario_says) {
    scenario.radios = {.airplane = false,
                       .wifi = true,
                       .wifiPowered = false,
                       .bluetooth = true,
                       .bluetoothConnected = true,
                       .cellularData = false,
                       .maxRate = kCTRegistrationDataRate2G,
                       .location = false,
                       .push = true,
                       .tethering = true,
                       .call = CallState::active};
    switchOn();
    EXPECT_EQ(states(),
              (States{false, false, true, true, false, kCTRegistrationDataRate2G, false}));
    EXPECT_FALSE(radios().isPowered());
    EXPECT_TRUE(radios().wiFiEnabled());
    EXPECT_TRUE(radios().isNetworkTethering());
    EXPECT_TRUE(radios().activeCallExists());
}

TEST_F(TheSimulatedRadios, leave_the_airplane_flag_without_effect_until_it_is_updated) {
    switchOn();
    radios().setIsInAirplaneMode(true);
    EXPECT_FALSE(states().airplane);
    EXPECT_TRUE(states().wifi);

    radios().updateAirplaneMode();
    EXPECT_TRUE(states().airplane);
    EXPECT_TRUE(radios().isInAirplaneMode());
}

TEST_F(TheSimulatedRadios, lose_wifis_power_and_bluetooth_in_airplane_mode_and_get_them_back) {
    scenario.radios.bluetoothConnected = true;
    switchOn();
    const States before = states();

    setAirplaneMode(true);
    EXPECT_EQ(states(), (States{true, false, false, false, true, kCTRegistrationDataRate3G, true}));
    EXPECT_FALSE(radios().isPowered());
    EXPECT_TRUE(radios().wiFiEnabled());
    EXPECT_FALSE(radios().enabled());
    EXPECT_FALSE(radios().connected());

    setAirplaneMode(false);
    EXPECT_EQ(states(), before);
}

TEST_F(TheSimulatedRadios, that_were_off_before_airplane_mode_are_off_after_it) {
    scenario.radios.wifi = false;
    scenario.radios.bluetooth = false;
    switchOn();
    const States before = states();
    setAirplaneMode(true);
    setAirplaneMode(false);
    EXPECT_EQ(states(), before);
    EXPECT_FALSE(states().wifi);
    EXPECT_FALSE(states().bluetooth);
}

TEST_F(TheSimulatedRadios, without_power_before_airplane_mode_have_none_after_it) {
    scenario.radios.wifiPowered = false;
    switchOn();
    setAirplaneMode(true);
    setAirplaneMode(false);
    EXPECT_FALSE(radios().isPowered());
}

TEST_F(TheSimulatedRadios, switched_on_by_the_monitor_in_airplane_mode_stay_on) {
    scenario.radios.wifi = false;
    scenario.radios.wifiPowered = false;
    scenario.radios.bluetooth = false;
    switchOn();
    setAirplaneMode(true);
    radios().setWiFiEnabled(true);
    radios().setPowered(true);
    EXPECT_EQ(states(), (States{true, true, true, false, true, kCTRegistrationDataRate3G, true}));

    setAirplaneMode(false);
    EXPECT_EQ(states(), (States{false, true, true, false, true, kCTRegistrationDataRate3G, true}));
}

TEST_F(TheSimulatedRadios, switched_by_hand_in_airplane_mode_stay_as_they_were_set) {
    switchOn();
    for (const bool on : {true, false}) {
        phone().happens(AirplaneModeSwitch{true});
        phone().happens(WifiSwitch{on});
        phone().happens(BluetoothSwitch{on});
        EXPECT_EQ(states(), (States{true, on, on, false, true, kCTRegistrationDataRate3G, true}))
            << on;

        phone().happens(AirplaneModeSwitch{false});
        EXPECT_EQ(states(), (States{false, on, on, false, true, kCTRegistrationDataRate3G, true}))
            << on;
    }
}

TEST_F(TheSimulatedRadios, switched_on_in_airplane_mode_survive_another_update) {
    switchOn();
    setAirplaneMode(true);
    radios().setWiFiEnabled(true);
    radios().setPowered(true);
    setAirplaneMode(true);
    EXPECT_TRUE(states().wifi);
    EXPECT_TRUE(states().bluetooth);
}

TEST_F(TheSimulatedRadios, come_back_after_a_second_airplane_mode_too) {
    switchOn();
    const States before = states();
    for (int night = 0; night < 3; ++night) {
        setAirplaneMode(true);
        EXPECT_FALSE(states().wifi);
        setAirplaneMode(false);
        EXPECT_EQ(states(), before);
    }
}

TEST_F(TheSimulatedRadios, end_a_connection_with_bluetooth) {
    scenario.radios.bluetoothConnected = true;
    switchOn();
    radios().setEnabled(false);
    EXPECT_FALSE(radios().connected());
    radios().setPowered(true);
    EXPECT_FALSE(radios().connected());
}

TEST_F(TheSimulatedRadios, keep_a_connection_ended_in_airplane_mode_ended) {
    scenario.radios.bluetoothConnected = true;
    switchOn();
    phone().happens(AirplaneModeSwitch{true});
    phone().happens(BluetoothConnection{false});
    phone().happens(AirplaneModeSwitch{false});
    EXPECT_TRUE(states().bluetooth);
    EXPECT_FALSE(states().bluetoothConnected);
}

TEST_F(TheSimulatedRadios, show_in_the_systems_files_as_they_are_whenever_those_are_read) {
    const std::string flags = "/var/preferences/SystemConfiguration/com.apple.radios.plist";
    const std::string network =
        "/private/var/mobile/Library/Preferences/com.apple.preferences.network.plist";
    const std::string location = "/var/mobile/Library/Preferences/com.apple.locationd.plist";
    scenario.settings = std::nullopt;
    switchOn();
    for (const bool on : {true, false, true}) {
        phone().happens(WifiSwitch{on});
        phone().happens(BluetoothSwitch{on});
        phone().happens(LocationSwitch{on});
        EXPECT_FALSE(inFile(flags, "AirplaneMode"));
        EXPECT_EQ(inFile(network, "wifi-network"), on);
        EXPECT_EQ(inFile(network, "bluetooth-network"), on);
        EXPECT_EQ(inFile(location, "LocationServicesEnabled"), on);
    }
    setAirplaneMode(true);
    EXPECT_TRUE(inFile(flags, "AirplaneMode"));
    EXPECT_FALSE(inFile(network, "wifi-network"));
    EXPECT_FALSE(inFile(network, "bluetooth-network"));
    EXPECT_TRUE(inFile(location, "LocationServicesEnabled"));
}

TEST_F(TheSimulatedRadios, moved_by_hand_are_events_and_no_calls) {
    switchOn();
    phone().happens(AirplaneModeSwitch{true});
    phone().happens(WifiSwitch{true});
    phone().happens(BluetoothSwitch{true});
    phone().happens(BluetoothConnection{true});
    phone().happens(CellularDataSwitch{false});
    phone().happens(LocationSwitch{false});
    phone().happens(MaxRateChange{kCTRegistrationDataRate2G});
    phone().happens(CallChange{CallState::incoming});

    EXPECT_EQ(states(), (States{true, true, true, true, false, kCTRegistrationDataRate2G, false}));
    EXPECT_THAT(calls.of({""}),
                ElementsAre("event airplane true", "event wifi true", "event bluetooth true",
                            "event bluetooth_connected true", "event cellular_data false",
                            "event location false", "event max_rate \"2G\"",
                            "event call \"incoming\""));
    EXPECT_EQ(calls.lines.size(), 8U);
}

TEST_F(TheSimulatedRadios, answer_to_each_kind_of_call_alone) {
    switchOn();
    const auto answers = [this] {
        return std::vector<bool>{radios().inCall(), radios().outgoingCallExists(),
                                 radios().incomingCallExists(), radios().activeCallExists()};
    };
    EXPECT_THAT(answers(), ElementsAre(false, false, false, false));
    phone().happens(CallChange{CallState::inCall});
    EXPECT_THAT(answers(), ElementsAre(true, false, false, false));
    phone().happens(CallChange{CallState::outgoing});
    EXPECT_THAT(answers(), ElementsAre(false, true, false, false));
    phone().happens(CallChange{CallState::incoming});
    EXPECT_THAT(answers(), ElementsAre(false, false, true, false));
    phone().happens(CallChange{CallState::active});
    EXPECT_THAT(answers(), ElementsAre(false, false, false, true));
    phone().happens(CallChange{CallState::none});
    EXPECT_THAT(answers(), ElementsAre(false, false, false, false));
}

TEST_F(TheSimulatedRadios, have_two_doors_to_cellular_data) {
    switchOn();
    radios().setDataPlanIsEnabled(false);
    EXPECT_FALSE(radios().dataPlanIsEnabled());
    EXPECT_FALSE(radios().registrationDataIsEnabled());
    EXPECT_THAT(calls.calls(), ElementsAre("CTCellularDataPlanSetIsEnabled [false]",
                                           "CTCellularDataPlanGetIsEnabled -> false",
                                           "CTRegistrationGetCellularDataIsEnabled -> false"));
}

TEST_F(TheSimulatedRadios, may_have_a_rate_that_is_none_of_the_three) {
    scenario.radios.maxRate = kCTRegistrationDataRateUnknown;
    scenario.phone.rates = {kCTRegistrationDataRate3G, kCTRegistrationDataRateUnknown};
    switchOn();
    EXPECT_EQ(radios().currentMaxAllowedDataRate(), kCTRegistrationDataRateUnknown);
    EXPECT_THAT(radios().supportedDataRates(),
                ElementsAre(kCTRegistrationDataRate3G, kCTRegistrationDataRateUnknown));
}

TEST_F(TheSimulatedRadios, have_a_telephony_server_that_comes_and_goes) {
    switchOn();
    phone().happens(TelephonyServerChange{false});
    EXPECT_EQ(radios().createServerConnection([] {}), nullptr);
    phone().happens(TelephonyServerChange{true});
    auto* connection = radios().createServerConnection([] {});
    ASSERT_NE(connection, nullptr);
    EXPECT_EQ(radios().openConnections, 1);
    radios().releaseConnection(connection);
    EXPECT_EQ(radios().openConnections, 0);
}

TEST_F(TheSimulatedRadios, have_no_manager_for_a_missing_class) {
    switchOn();
    EXPECT_EQ(phone().platform().telephony->sharedTelephonyManager(nullptr), nullptr);
    EXPECT_EQ(phone().platform().wifi->sharedInstance(nullptr), nullptr);

    phone().process.removeClass("SBWiFiManager");
    EXPECT_EQ(phone().platform().process->findClass("SBWiFiManager"), nullptr);
    radios().hasTelephonyManager = false;
    EXPECT_EQ(phone().platform().telephony->sharedTelephonyManager(
                  phone().platform().process->findClass("SBTelephonyManager")),
              nullptr);
}

} // namespace

} // namespace noctara
