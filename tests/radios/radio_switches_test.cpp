/// The radio switches, except data rate and push: the calls and notifications of each, in order.
#include "platform/telephony.h"
#include "platform/wifi.h"
#include "radios/radios_lib.h"
#include "tests/a_night.h"

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Calls = std::vector<std::string>;

const Calls findTelephony{R"(objc_getClass ["SBTelephonyManager"] -> true)",
                          "sharedTelephonyManager -> true"};
const Calls noTelephony{R"(objc_getClass ["SBTelephonyManager"] -> true)",
                        "sharedTelephonyManager -> false"};
const Calls findWifi{R"(objc_getClass ["SBWiFiManager"] -> true)"};
const Calls askForCalls{"inCall -> false", "outgoingCallExists -> false",
                        "incomingCallExists -> false", "activeCallExists -> false"};

const std::string refreshed = R"(notify_post ["com.sbsettings.refreshalltoggles"])";
const std::string synchronized = R"(CFPreferencesAppSynchronize ["com.apple.preferences.network"])";

/// The calls `first`, and then these.
Calls after(Calls first, const Calls& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

class ARadioSwitch : public ANight {
protected:
    RadiosLib& onThePhone() {
        switchOn();
        own = std::make_unique<RadiosLib>(phone().platform());
        calls.clear();
        return *own;
    }

    RadioStates states() { return phone().radios.states(); }

    /// The calls since the last look at them.
    Calls newCalls() {
        auto found = calls.calls();
        calls.clear();
        return found;
    }

    std::unique_ptr<RadiosLib> own;
};

/// A Wi-Fi manager that answers messages, and counts how often it is asked for.
class AnsweringWiFi final : public WiFi, public WiFiManager {
public:
    WiFiManager* sharedInstance(ClassRef) override {
        ++requests;
        return this;
    }
    bool isPowered() override { return true; }
    bool wiFiEnabled() override { return true; }
    void setWiFiEnabled(bool) override {}
    std::optional<PropertyList> perform(const char* selector) override {
        return PropertyList(std::string("answer to ") + selector);
    }

    int requests = 0;
};

TEST_F(ARadioSwitch, reads_airplane_mode_from_the_telephony_manager) {
    auto& radios = onThePhone();
    EXPECT_FALSE(radios.isAirplaneModeEnabled());
    EXPECT_EQ(newCalls(), after(findTelephony, {"isInAirplaneMode -> false"}));

    phone().radios.switchAirplaneMode(true);
    EXPECT_TRUE(radios.isAirplaneModeEnabled());
}

TEST_F(ARadioSwitch, sets_airplane_mode_makes_it_take_effect_and_announces_it) {
    auto& radios = onThePhone();
    for (const bool on : {true, false}) {
        radios.setAirplaneModeEnabled(on);
        EXPECT_EQ(newCalls(), after(findTelephony, {on ? "setIsInAirplaneMode: [true]"
                                                       : "setIsInAirplaneMode: [false]",
                                                    "updateAirplaneMode", refreshed}));
        EXPECT_EQ(states().airplane, on);
    }
}

TEST_F(ARadioSwitch, sets_airplane_mode_even_as_it_is_already) {
    auto& radios = onThePhone();
    radios.setAirplaneModeEnabled(false);
    EXPECT_EQ(newCalls(), after(findTelephony,
                                {"setIsInAirplaneMode: [false]", "updateAirplaneMode", refreshed}));
}

TEST_F(ARadioSwitch, without_a_telephony_manager_answers_no) {
    scenario.phone.telephonyManager = false;
    scenario.radios.call = CallState::active;
    scenario.radios.tethering = true;
    scenario.radios.airplane = true;
    auto& radios = onThePhone();
    EXPECT_FALSE(radios.isAirplaneModeEnabled());
    EXPECT_FALSE(radios.isCallInProgress());
    EXPECT_FALSE(radios.isTethering());
    EXPECT_EQ(newCalls(), after(noTelephony, after(noTelephony, noTelephony)));
}

TEST_F(ARadioSwitch, without_a_telephony_manager_still_announces_airplane_mode) {
    scenario.phone.telephonyManager = false;
    onThePhone().setAirplaneModeEnabled(true);
    EXPECT_EQ(newCalls(), after(noTelephony, {refreshed}));
    EXPECT_FALSE(states().airplane);
}

TEST_F(ARadioSwitch, takes_a_missing_telephony_class_for_a_missing_manager) {
    auto& radios = onThePhone();
    phone().process.removeClass("SBTelephonyManager");
    phone().radios.call = CallState::active;
    EXPECT_FALSE(radios.isAirplaneModeEnabled());
    EXPECT_FALSE(radios.isCallInProgress());
    EXPECT_FALSE(radios.isTethering());
    radios.setAirplaneModeEnabled(true);
    EXPECT_THAT(calls.of({"notify_post", "setIsInAirplaneMode:"}), ElementsAre(refreshed));
}

TEST_F(ARadioSwitch, asks_for_calls_of_every_kind_up_to_the_first_there_is) {
    auto& radios = onThePhone();
    EXPECT_FALSE(radios.isCallInProgress());
    EXPECT_EQ(newCalls(), after(findTelephony, askForCalls));

    const Calls answers{"inCall -> true", "outgoingCallExists -> true",
                        "incomingCallExists -> true", "activeCallExists -> true"};
    const std::vector<CallState> kinds{CallState::inCall, CallState::outgoing, CallState::incoming,
                                       CallState::active};
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        phone().radios.call = kinds[i];
        EXPECT_TRUE(radios.isCallInProgress()) << wordOf(callStateWords, kinds[i]);
        const auto asked = static_cast<std::ptrdiff_t>(i);
        EXPECT_EQ(newCalls(), after(after(findTelephony,
                                          Calls(askForCalls.begin(), askForCalls.begin() + asked)),
                                    {answers[i]}));
    }
}

TEST_F(ARadioSwitch, asks_the_telephony_manager_for_tethering) {
    for (const bool tethering : {true, false}) {
        scenario.radios.tethering = tethering;
        EXPECT_EQ(onThePhone().isTethering(), tethering);
        EXPECT_EQ(newCalls(), after(findTelephony, {tethering ? "isNetworkTethering -> true"
                                                              : "isNetworkTethering -> false"}));
    }
}

TEST_F(ARadioSwitch, reads_wifi_as_powered_and_then_enabled) {
    auto& radios = onThePhone();
    EXPECT_TRUE(radios.isWifiEnabled());
    EXPECT_EQ(newCalls(), after(findWifi, {"isPowered -> true", "wiFiEnabled -> true"}));

    phone().radios.switchWifi(false);
    EXPECT_FALSE(radios.isWifiEnabled());
    EXPECT_EQ(newCalls(), after(findWifi, {"isPowered -> true", "wiFiEnabled -> false"}));
}

TEST_F(ARadioSwitch, asks_for_the_wifi_manager_again_between_its_power_and_its_state) {
    switchOn();
    AnsweringWiFi wifi;
    Platform altered = phone().platform();
    altered.wifi = &wifi;
    EXPECT_TRUE(RadiosLib(altered).isWifiEnabled());
    EXPECT_EQ(wifi.requests, 2);
}

TEST_F(ARadioSwitch, sets_wifi_only_when_it_differs_and_announces_it) {
    auto& radios = onThePhone();
    radios.setWifiEnabled(true);
    EXPECT_THAT(calls.of({"setWiFiEnabled:", "notify_post"}), IsEmpty());

    calls.clear();
    radios.setWifiEnabled(false);
    EXPECT_THAT(calls.of({"wiFiEnabled", "setWiFiEnabled:", "notify_post"}),
                ElementsAre("wiFiEnabled -> true", "setWiFiEnabled: [false]", refreshed));
    EXPECT_FALSE(states().wifi);

    calls.clear();
    radios.setWifiEnabled(false);
    EXPECT_THAT(calls.of({"setWiFiEnabled:", "notify_post"}), IsEmpty());

    radios.setWifiEnabled(true);
    EXPECT_THAT(calls.of({"setWiFiEnabled:", "notify_post"}),
                ElementsAre("setWiFiEnabled: [true]", refreshed));
    EXPECT_TRUE(states().wifi);
}

TEST_F(ARadioSwitch, takes_enabled_wifi_without_power_for_off) {
    scenario.radios.wifiPowered = false;
    auto& radios = onThePhone();
    EXPECT_FALSE(radios.isWifiEnabled());
    EXPECT_EQ(newCalls(), after(findWifi, {"isPowered -> false"}));

    radios.setWifiEnabled(false);
    EXPECT_THAT(calls.of({"setWiFiEnabled:", "notify_post"}), IsEmpty());
    radios.setWifiEnabled(true);
    EXPECT_THAT(calls.of({"setWiFiEnabled:", "notify_post"}),
                ElementsAre("setWiFiEnabled: [true]", refreshed));
}

TEST_F(ARadioSwitch, without_a_wifi_manager_reads_off_and_only_announces_on) {
    auto& radios = onThePhone();
    phone().process.removeClass("SBWiFiManager");
    EXPECT_FALSE(radios.isWifiEnabled());
    radios.setWifiEnabled(false);
    EXPECT_EQ(calls.count("notify_post"), 0U);
    radios.setWifiEnabled(true);
    EXPECT_THAT(calls.of({"setWiFiEnabled:", "notify_post"}), ElementsAre(refreshed));
    EXPECT_EQ(radios.wifiManagerQuery(), std::nullopt);
}

TEST_F(ARadioSwitch, passes_a_query_on_to_the_wifi_manager_under_its_own_name) {
    switchOn();
    AnsweringWiFi wifi;
    Platform altered = phone().platform();
    altered.wifi = &wifi;
    RadiosLib radios(altered);
    EXPECT_EQ(radios.wifiManagerQuery(), PropertyList("answer to wifiManagerQuery"));
    EXPECT_EQ(radios.wifiManagerQuery("otherName"), PropertyList("answer to otherName"));

    EXPECT_EQ(onThePhone().wifiManagerQuery(), std::nullopt);
    EXPECT_EQ(newCalls(), after(findWifi, {"wifiManagerQuery -> null"}));
}

TEST_F(ARadioSwitch, reads_bluetooth_and_its_connection) {
    scenario.radios.bluetoothConnected = true;
    auto& radios = onThePhone();
    EXPECT_TRUE(radios.isBluetoothEnabled());
    EXPECT_TRUE(radios.isBluetoothConnected());
    phone().radios.switchBluetooth(false);
    EXPECT_FALSE(radios.isBluetoothEnabled());
    EXPECT_FALSE(radios.isBluetoothConnected());
    EXPECT_THAT(newCalls(), ElementsAre("enabled -> true", "connected -> true", "enabled -> false",
                                        "connected -> false"));
}

TEST_F(ARadioSwitch, brings_bluetooth_up_by_its_power_and_takes_it_down_by_disabling_it) {
    scenario.radios.bluetooth = false;
    auto& radios = onThePhone();
    radios.setBluetoothEnabled(true);
    EXPECT_THAT(
        newCalls(),
        ElementsAre(
            "enabled -> false",
            R"(CFPreferencesSetAppValue ["bluetooth-network",true,"com.apple.preferences.network"])",
            "setPowered: [true]", synchronized, refreshed));
    EXPECT_TRUE(states().bluetooth);

    radios.setBluetoothEnabled(false);
    EXPECT_THAT(
        newCalls(),
        ElementsAre(
            "enabled -> true", "connected -> false",
            R"(CFPreferencesSetAppValue ["bluetooth-network",false,"com.apple.preferences.network"])",
            "setEnabled: [false]", synchronized, refreshed));
    EXPECT_FALSE(states().bluetooth);
}

TEST_F(ARadioSwitch, leaves_bluetooth_on_silently_while_a_device_is_connected) {
    scenario.radios.bluetoothConnected = true;
    onThePhone().setBluetoothEnabled(false);
    EXPECT_THAT(calls.calls(), ElementsAre("enabled -> true", "connected -> true"));
    EXPECT_THAT(calls.logged(), IsEmpty());
    EXPECT_TRUE(states().bluetooth);
}

TEST_F(ARadioSwitch, brings_bluetooth_up_although_a_device_is_connected) {
    scenario.radios.bluetooth = false;
    scenario.radios.bluetoothConnected = true;
    onThePhone().setBluetoothEnabled(true);
    EXPECT_THAT(calls.of({"connected", "setPowered:", "notify_post"}),
                ElementsAre("setPowered: [true]", refreshed));
    EXPECT_TRUE(states().bluetooth);
}

TEST_F(ARadioSwitch, leaves_bluetooth_alone_when_it_is_as_wanted) {
    for (const bool on : {true, false}) {
        scenario.radios.bluetooth = on;
        scenario.radios.bluetoothConnected = on;
        onThePhone().setBluetoothEnabled(on);
        EXPECT_THAT(calls.calls(), ElementsAre(on ? "enabled -> true" : "enabled -> false"));
    }
}

TEST_F(ARadioSwitch, sets_cellular_data_after_asking_for_calls_and_announces_it_twice) {
    auto& radios = onThePhone();
    EXPECT_TRUE(radios.setCellularDataEnabled(false));
    EXPECT_EQ(
        newCalls(),
        after(
            after(findTelephony, askForCalls),
            {"CTCellularDataPlanGetIsEnabled -> true", "CTCellularDataPlanSetIsEnabled [false]",
             refreshed,
             R"(postNotificationName:object:userInfo: ["PSCellDataChangedNotification",{"DataEnabled":false}])"}));
    EXPECT_FALSE(states().cellularData);

    EXPECT_TRUE(radios.setCellularDataEnabled(true));
    EXPECT_THAT(
        calls.of({"CTCellularDataPlanSetIsEnabled", "postNotificationName:object:userInfo:"}),
        ElementsAre(
            "CTCellularDataPlanSetIsEnabled [true]",
            R"(postNotificationName:object:userInfo: ["PSCellDataChangedNotification",{"DataEnabled":true}])"));
    EXPECT_TRUE(radios.isCellularDataEnabled());
}

TEST_F(ARadioSwitch, leaves_cellular_data_that_is_as_wanted_and_says_yes) {
    for (const bool on : {true, false}) {
        scenario.radios.cellularData = on;
        EXPECT_TRUE(onThePhone().setCellularDataEnabled(on));
        EXPECT_EQ(newCalls(), after(after(findTelephony, askForCalls),
                                    {on ? "CTCellularDataPlanGetIsEnabled -> true"
                                        : "CTCellularDataPlanGetIsEnabled -> false"}));
    }
}

TEST_F(ARadioSwitch, refuses_to_set_cellular_data_during_a_call_even_as_it_is_already) {
    for (const CallState call :
         {CallState::inCall, CallState::outgoing, CallState::incoming, CallState::active})
        for (const bool wanted : {true, false}) {
            scenario.radios.call = call;
            EXPECT_FALSE(onThePhone().setCellularDataEnabled(wanted))
                << wordOf(callStateWords, call) << wanted;
            EXPECT_TRUE(states().cellularData);
            EXPECT_THAT(
                calls.of({"CTCellularDataPlanGetIsEnabled", "CTCellularDataPlanSetIsEnabled",
                          "notify_post", "postNotificationName:object:userInfo:"}),
                IsEmpty());
        }
}

TEST_F(ARadioSwitch, sets_location_services_only_when_they_differ_and_tells_their_daemon_alone) {
    auto& radios = onThePhone();
    radios.setLocationEnabled(true);
    EXPECT_THAT(newCalls(), ElementsAre("locationServicesEnabled -> true"));

    radios.setLocationEnabled(false);
    EXPECT_THAT(newCalls(), ElementsAre("locationServicesEnabled -> true",
                                        "setLocationServicesEnabled: [false]",
                                        R"(notify_post ["com.apple.locationd/Prefs"])"));
    EXPECT_FALSE(radios.isLocationEnabled());

    radios.setLocationEnabled(true);
    EXPECT_THAT(calls.of({"notify_post"}),
                ElementsAre(R"(notify_post ["com.apple.locationd/Prefs"])"));
    EXPECT_TRUE(states().location);
}

TEST_F(ARadioSwitch, works_on_the_thread_it_is_used_from_and_logs_nothing) {
    auto& radios = onThePhone();
    phone().asMonitorThread([&] {
        radios.setAirplaneModeEnabled(true);
        radios.setWifiEnabled(true);
        radios.setBluetoothEnabled(true);
        radios.setCellularDataEnabled(false);
        radios.setLocationEnabled(false);
        radios.setPushEnabled(false);
    });
    EXPECT_EQ(calls.count("notify_post"), 6U);
    EXPECT_EQ(calls.count("performSelectorOnMainThread:withObject:waitUntilDone:"), 0U);
    for (const auto& line : calls.lines)
        EXPECT_EQ(line.thread, "monitor") << line.text;
    EXPECT_THAT(calls.logged(), IsEmpty());
}

} // namespace

} // namespace noctara
