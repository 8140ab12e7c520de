/// Entering and leaving the sleep state: which radios are switched, and in which order.
#include "tests/a_night.h"

#include <array>

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Switch = SharedField<bool> NoctaraThread::*;

constexpr Switch airplane = &NoctaraThread::airplaneSwitch;
constexpr Switch phoneRadio = &NoctaraThread::phoneSwitch;
constexpr Switch wifi = &NoctaraThread::wifiSwitch;
constexpr Switch bluetooth = &NoctaraThread::bluetoothSwitch;
constexpr Switch edge = &NoctaraThread::edgeSwitch;
constexpr Switch fast = &NoctaraThread::_3GSwitch;
constexpr Switch location = &NoctaraThread::locationSwitch;

class ASleepState : public AMonitor {
protected:
    /// A monitor that has taken its start-up snapshot and has these switches on.
    void of(std::initializer_list<Switch> on) {
        make();
        own->isEnabled();
        own->airplaneSwitch = false;
        for (const Switch one : on)
            own.get()->*one = true;
        own->_DEBUG_ = false;
        calls.clear();
    }

    void night() { set(true); }
    void morning() { set(false); }
    void set(bool state) {
        calls.clear();
        phone().asMonitorThread([&] { own->setState(state); });
    }

    /// The states that are to be brought back, but for airplane mode.
    std::array<SharedField<bool>*, 5> remembered() {
        return {&own->defaultWifi, &own->defaultBT, &own->defaultEdge, &own->default3G,
                &own->defaultLocation};
    }
    void remember(bool on) {
        for (auto* state : remembered())
            *state = on;
    }

    RadioStates radios() { return phone().radios.states(); }

    /// What was asked of the radios, and announced.
    std::vector<std::string> questions() const {
        return calls.of({"isPowered", "enabled", "CTRegistrationGetCurrentMaxAllowedDataRate",
                         "CTCellularDataPlanGetIsEnabled", "locationServicesEnabled"});
    }
    std::vector<std::string> changes() const {
        return calls.of({"setIsInAirplaneMode:", "updateAirplaneMode", "setWiFiEnabled:",
                         "setPowered:", "setEnabled:", "CTRegistrationSetMaxAllowedDataRate",
                         "CTCellularDataPlanSetIsEnabled", "setLocationServicesEnabled:"});
    }
};

TEST_F(ASleepState, is_entered_on_the_main_thread_and_announced_from_the_monitor_thread) {
    of({airplane});
    night();
    EXPECT_TRUE(own->currentState);
    EXPECT_THAT(
        calls.calls(),
        ElementsAre(
            R"(performSelectorOnMainThread:withObject:waitUntilDone: ["setStateAirplaneMode"])",
            R"(objc_getClass ["SBApplicationController"] -> true)", "allApplications -> []",
            R"(objc_getClass ["SBTelephonyManager"] -> true)", "sharedTelephonyManager -> true",
            "setIsInAirplaneMode: [true]", "updateAirplaneMode",
            R"(notify_post ["com.sbsettings.refreshalltoggles"])",
            R"(notify_post ["com.apple.radios"])"));
    EXPECT_EQ(calls.lines.front().thread, "monitor");
    for (std::size_t i = 1; i + 1 < calls.lines.size(); ++i)
        EXPECT_EQ(calls.lines[i].thread, "main") << calls.lines[i].text;
    EXPECT_EQ(calls.lines.back().thread, "monitor");
    morning();
    EXPECT_FALSE(own->currentState);
    EXPECT_THAT(changes(), ElementsAre("setIsInAirplaneMode: [false]", "updateAirplaneMode"));
}

TEST_F(ASleepState, leaves_the_flags_of_the_main_loop_alone) {
    of({airplane});
    own->switchingToAirplane = true;
    night();
    EXPECT_FALSE(own->lastStateWasPlane);
    EXPECT_TRUE(own->switchingToAirplane);
    own->lastStateWasPlane = true;
    morning();
    EXPECT_TRUE(own->lastStateWasPlane);
    EXPECT_TRUE(own->switchingToAirplane);
}

TEST_F(ASleepState, off_the_main_thread_changes_nothing_and_posts_nothing) {
    scenario.applications = {{"com.example.app", "App", true, true, false}};
    of({airplane, wifi});
    own->applicationsToStart = {"com.example.app"};
    own->currentState = true;
    own->_DEBUG_ = true;
    const auto before = radios();
    phone().asMonitorThread([this] { own->setStateAirplaneMode(); });
    EXPECT_EQ(radios(), before);
    EXPECT_THAT(calls.calls(), IsEmpty());
    EXPECT_THAT(calls.logged(),
                ElementsAre("Noctara : cannot change airplane mode if not in main thread"));
    own->_DEBUG_ = false;
    calls.clear();
    phone().asMonitorThread([this] { own->setStateAirplaneMode(); });
    EXPECT_THAT(calls.lines, testing::SizeIs(0));
}

TEST_F(ASleepState, logs_what_it_is_about_to_do_and_what_it_finds) {
    of({airplane});
    own->_DEBUG_ = true;
    night();
    EXPECT_THAT(calls.of({"NSLog", "objc_getClass", "isInAirplaneMode", "setIsInAirplaneMode:"}),
                ElementsAre(R"(NSLog ["Noctara : About to change airplane mode to ENABLED"])",
                            R"(objc_getClass ["SBApplicationController"] -> true)",
                            R"(objc_getClass ["SBTelephonyManager"] -> true)",
                            "isInAirplaneMode -> false",
                            R"(NSLog ["Noctara : airPlaneMode : disabled"])",
                            "setIsInAirplaneMode: [true]"));
    morning();
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara : About to change airplane mode to disabled",
                                            "Noctara : airPlaneMode : ENABLED"));
}

TEST_F(ASleepState, is_entered_and_left_without_a_word_with_debug_off) {
    of({phoneRadio, wifi, bluetooth, location});
    night();
    EXPECT_THAT(calls.logged(), IsEmpty());
    morning();
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(ASleepState, launches_the_applications_before_any_radio_and_whatever_the_switches) {
    scenario.applications = {{"com.example.app", "App", false, true, false}};
    of({});
    own->applicationsToStart = {"com.example.app"};
    night();
    EXPECT_THAT(calls.of({"launch", "sharedTelephonyManager"}),
                ElementsAre(R"(launch ["com.example.app"])", "sharedTelephonyManager -> true"));
    morning();
    EXPECT_THAT(calls.of({"resumeToQuit", "kill", "sharedTelephonyManager"}),
                ElementsAre(R"(resumeToQuit ["com.example.app"])", R"(kill ["com.example.app"])",
                            "sharedTelephonyManager -> true"));
}

TEST_F(ASleepState, without_any_switch_touches_no_radio_but_is_announced) {
    of({});
    const auto before = radios();
    night();
    EXPECT_EQ(radios(), before);
    EXPECT_THAT(questions(), IsEmpty());
    EXPECT_THAT(changes(), IsEmpty());
    EXPECT_THAT(calls.of({"notify_post"}),
                ElementsAre(R"(notify_post ["com.sbsettings.refreshalltoggles"])",
                            R"(notify_post ["com.apple.radios"])"));
}

TEST_F(ASleepState, of_airplane_mode_ignores_all_other_switches_and_remembers_nothing) {
    of({airplane, phoneRadio, wifi, bluetooth, edge, fast, location});
    remember(false);
    const auto before = radios();
    night();
    EXPECT_THAT(changes(), ElementsAre("setIsInAirplaneMode: [true]", "updateAirplaneMode"));
    EXPECT_THAT(questions(), IsEmpty());
    EXPECT_TRUE(radios().airplane);
    for (const auto* state : remembered())
        EXPECT_FALSE(*state);
    morning();
    EXPECT_THAT(changes(), ElementsAre("setIsInAirplaneMode: [false]", "updateAirplaneMode"));
    EXPECT_THAT(questions(), IsEmpty());
    EXPECT_EQ(radios(), before);
}

TEST_F(ASleepState, of_single_radios_remembers_all_before_it_switches_any) {
    of({wifi, bluetooth, fast, location});
    night();
    EXPECT_THAT(
        calls.of({"isPowered", "enabled", "CTRegistrationGetCurrentMaxAllowedDataRate",
                  "CTCellularDataPlanGetIsEnabled", "locationServicesEnabled",
                  "setWiFiEnabled:", "setEnabled:", "CTRegistrationSetMaxAllowedDataRate",
                  "setLocationServicesEnabled:"}),
        ElementsAre("isPowered -> true", "enabled -> true",
                    R"(CTRegistrationGetCurrentMaxAllowedDataRate -> "3G")",
                    "CTCellularDataPlanGetIsEnabled -> true", "locationServicesEnabled -> true",
                    "isPowered -> true", "setWiFiEnabled: [false]", "enabled -> true",
                    "setEnabled: [false]", R"(CTRegistrationGetCurrentMaxAllowedDataRate -> "3G")",
                    R"(CTRegistrationSetMaxAllowedDataRate ["2G"] -> true)",
                    "locationServicesEnabled -> true", "setLocationServicesEnabled: [false]"));
}

TEST_F(ASleepState, of_single_radios_is_left_in_the_same_order_without_remembering) {
    of({wifi, bluetooth, fast, location});
    const auto before = radios();
    night();
    morning();
    EXPECT_THAT(changes(), ElementsAre("setWiFiEnabled: [true]", "setPowered: [true]",
                                       R"(CTRegistrationSetMaxAllowedDataRate ["3G"] -> true)",
                                       "setLocationServicesEnabled: [true]"));
    EXPECT_THAT(questions(), ElementsAre("isPowered -> true", "enabled -> false",
                                         R"(CTRegistrationGetCurrentMaxAllowedDataRate -> "2G")",
                                         "locationServicesEnabled -> false"));
    EXPECT_EQ(radios(), before);
    EXPECT_TRUE(own->defaultWifi && own->defaultBT && own->default3G && own->defaultLocation);
}

TEST_F(ASleepState, of_the_phone_switches_the_others_after_airplane_mode_and_never_the_data) {
    of({phoneRadio, wifi, bluetooth, edge, fast, location});
    const auto before = radios();
    night();
    EXPECT_THAT(calls.of({"isPowered", "setIsInAirplaneMode:", "setLocationServicesEnabled:"}),
                ElementsAre("isPowered -> true", "setIsInAirplaneMode: [true]",
                            "isPowered -> false", "setLocationServicesEnabled: [false]"));
    EXPECT_TRUE(radios().airplane);
    EXPECT_FALSE(radios().wifi || radios().bluetooth || radios().location);
    EXPECT_EQ(radios().maxRate, DataRate::kCTRegistrationDataRate3G);
    EXPECT_TRUE(radios().cellularData);
    morning();
    EXPECT_THAT(
        calls.of({"CTCellularDataPlanGetIsEnabled", "CTRegistrationGetCurrentMaxAllowedDataRate"}),
        IsEmpty());
    EXPECT_EQ(radios(), before);
}

TEST_F(ASleepState, of_the_phone_leaves_3G_alone) {
    of({phoneRadio, fast});
    for (const bool state : {true, false}) {
        set(state);
        EXPECT_EQ(calls.count("CTRegistrationSetMaxAllowedDataRate"), 0u);
        EXPECT_EQ(calls.count("CTRegistrationGetCurrentMaxAllowedDataRate"), 0u);
    }
}

TEST_F(ASleepState, of_the_phone_alone_switches_the_other_radios_on_again) {
    of({phoneRadio});
    const auto before = radios();
    night();
    EXPECT_THAT(changes(), ElementsAre("setIsInAirplaneMode: [true]", "updateAirplaneMode",
                                       "setWiFiEnabled: [true]", "setPowered: [true]"));
    auto expected = before;
    expected.airplane = true;
    EXPECT_EQ(radios(), expected);

    phone().happens(WifiSwitch{false});
    phone().happens(BluetoothSwitch{false});
    phone().happens(LocationSwitch{false});
    morning();
    EXPECT_THAT(changes(), ElementsAre("setIsInAirplaneMode: [false]", "updateAirplaneMode",
                                       "setWiFiEnabled: [true]", "setPowered: [true]",
                                       "setLocationServicesEnabled: [true]"));
    EXPECT_EQ(radios(), before);
}

TEST_F(ASleepState, of_the_phone_alone_remembers_the_radios_that_airplane_mode_takes_along) {
    of({phoneRadio});
    remember(false);
    night();
    EXPECT_TRUE(own->defaultWifi && own->defaultBT && own->defaultLocation);
    EXPECT_FALSE(own->default3G || own->defaultEdge);
}

TEST_F(ASleepState, entered_twice_remembers_the_night_itself) {
    of({wifi, bluetooth, location});
    night();
    night();
    EXPECT_FALSE(own->defaultWifi || own->defaultBT || own->defaultLocation);
    morning();
    EXPECT_FALSE(radios().wifi || radios().bluetooth || radios().location);
}

TEST_F(ASleepState, remembers_a_radio_only_under_a_switch_that_concerns_it) {
    of({wifi});
    remember(false);
    night();
    EXPECT_TRUE(own->defaultWifi);
    EXPECT_FALSE(own->defaultBT || own->defaultLocation || own->default3G || own->defaultEdge);
    EXPECT_THAT(changes(), ElementsAre("setWiFiEnabled: [false]"));
}

TEST_F(ASleepState, is_announced_without_a_telephony_manager_but_touches_no_radio) {
    scenario.phone.telephonyManager = false;
    of({phoneRadio, wifi, bluetooth, location});
    own->_DEBUG_ = true;
    const auto before = radios();
    night();
    EXPECT_THAT(changes(), IsEmpty());
    EXPECT_THAT(questions(), IsEmpty());
    EXPECT_EQ(radios(), before);
    EXPECT_THAT(calls.of({"NSLog", "allApplications", "notify_post"}),
                ElementsAre(R"(NSLog ["Noctara : About to change airplane mode to ENABLED"])",
                            "allApplications -> []",
                            R"(NSLog ["Noctara : SBTelephonyManager is NULL"])",
                            R"(notify_post ["com.sbsettings.refreshalltoggles"])",
                            R"(notify_post ["com.apple.radios"])"));
    own->_DEBUG_ = false;
    morning();
    EXPECT_THAT(calls.logged(), IsEmpty());
    EXPECT_THAT(calls.of({"notify_post"}), testing::SizeIs(2));
}

TEST_F(ASleepState, is_announced_without_the_telephony_class_but_touches_no_radio) {
    of({airplane});
    phone().process.removeClass("SBTelephonyManager");
    own->_DEBUG_ = true;
    night();
    EXPECT_THAT(changes(), IsEmpty());
    EXPECT_TRUE(calls.hasLogged("Noctara : SBTelephonyManager is NULL"));
    EXPECT_THAT(calls.of({"notify_post"}), testing::SizeIs(2));
}

// Cellular data and 3G.

TEST_F(ASleepState, of_cellular_data_brings_back_what_the_start_found) {
    scenario.radios.cellularData = false;
    of({edge});
    phone().happens(CellularDataSwitch{true});
    night();
    EXPECT_THAT(changes(), ElementsAre("CTCellularDataPlanSetIsEnabled [false]"));
    morning();
    EXPECT_THAT(changes(), IsEmpty());
    EXPECT_FALSE(radios().cellularData);
}

TEST_F(ASleepState, of_cellular_data_found_on_brings_it_back) {
    of({edge});
    night();
    EXPECT_FALSE(radios().cellularData);
    morning();
    EXPECT_THAT(changes(), ElementsAre("CTCellularDataPlanSetIsEnabled [true]"));
    EXPECT_TRUE(radios().cellularData);
}

TEST_F(ASleepState, of_cellular_data_switches_it_before_location) {
    of({edge, location});
    night();
    EXPECT_THAT(changes(), ElementsAre("CTCellularDataPlanSetIsEnabled [false]",
                                       "setLocationServicesEnabled: [false]"));
}

TEST_F(ASleepState, of_cellular_data_and_3G_switches_the_data_alone) {
    of({edge, fast});
    own->default3G = false;
    night();
    EXPECT_THAT(changes(), ElementsAre("CTCellularDataPlanSetIsEnabled [false]"));
    morning();
    EXPECT_THAT(changes(), ElementsAre("CTCellularDataPlanSetIsEnabled [true]"));
    EXPECT_EQ(radios().maxRate, DataRate::kCTRegistrationDataRate3G);
    EXPECT_FALSE(own->default3G);
    EXPECT_EQ(calls.count("CTRegistrationGetCurrentMaxAllowedDataRate"), 0u);
}

TEST_F(ASleepState, of_3G_remembers_the_data_too_but_leaves_it_on) {
    of({fast});
    remember(false);
    night();
    EXPECT_TRUE(own->defaultEdge);
    EXPECT_TRUE(own->default3G);
    EXPECT_TRUE(radios().cellularData);
    EXPECT_THAT(changes(), ElementsAre(R"(CTRegistrationSetMaxAllowedDataRate ["2G"] -> true)"));
    morning();
    EXPECT_THAT(changes(), ElementsAre(R"(CTRegistrationSetMaxAllowedDataRate ["3G"] -> true)"));
}

TEST_F(ASleepState, of_3G_found_off_leaves_it_off) {
    scenario.radios.maxRate = DataRate::kCTRegistrationDataRate2G;
    of({fast});
    night();
    EXPECT_THAT(changes(), IsEmpty());
    phone().happens(MaxRateChange{DataRate::kCTRegistrationDataRate3G});
    morning();
    EXPECT_THAT(changes(), ElementsAre(R"(CTRegistrationSetMaxAllowedDataRate ["2G"] -> true)"));
}

} // namespace
} // namespace noctara
