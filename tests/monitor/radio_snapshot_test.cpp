/// The snapshot of the radios that the monitor takes at its start, and its later knowledge of
/// airplane mode.
#include "tests/a_night.h"

#include <array>

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string radiosPath = "/var/preferences/SystemConfiguration/com.apple.radios.plist";
const std::string networkPath =
    "/private/var/mobile/Library/Preferences/com.apple.preferences.network.plist";
const std::string locationPath = "/var/mobile/Library/Preferences/com.apple.locationd.plist";

class ARadioSnapshot : public AMonitor {
protected:
    /// Has the system's file hold this instead of the radios as they are.
    void fileHolds(const std::string& path, const Dictionary& content) {
        phone().files.keepUpToDate(path, [content](Dictionary& file) { file = content; });
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

    bool take() {
        calls.clear();
        bool airplane = false;
        phone().asMonitorThread([&] { airplane = own->isEnabled(); });
        return airplane;
    }

    void airplaneIsOnWithAllElseOff() {
        scenario.radios.airplane = true;
        scenario.radios.wifi = scenario.radios.bluetooth = scenario.radios.cellularData = false;
        scenario.radios.location = false;
        scenario.radios.maxRate = DataRate::kCTRegistrationDataRate2G;
        make();
    }
};

TEST_F(ARadioSnapshot, asks_for_each_radio_once_in_order) {
    make();
    take();
    EXPECT_THAT(
        calls.calls(),
        ElementsAre("initWithContentsOfFile: [\"" + radiosPath + "\"] -> {\"AirplaneMode\":false}",
                    "initWithContentsOfFile: [\"" + networkPath +
                        "\"] -> {\"wifi-network\":true,\"bluetooth-network\":true}",
                    "CTRegistrationGetCellularDataIsEnabled -> true",
                    R"(CTRegistrationGetCurrentMaxAllowedDataRate -> "3G")",
                    "initWithContentsOfFile: [\"" + locationPath +
                        "\"] -> {\"LocationServicesEnabled\":true}"));
}

TEST_F(ARadioSnapshot, of_radios_that_are_on_remembers_each) {
    make();
    EXPECT_FALSE(take());
    EXPECT_TRUE(own->defaultWifi);
    EXPECT_TRUE(own->defaultBT);
    EXPECT_TRUE(own->defaultEdge);
    EXPECT_TRUE(own->default3G);
    EXPECT_TRUE(own->defaultLocation);
    EXPECT_FALSE(own->defaultAirplane);
    EXPECT_FALSE(own->currentState);
}

TEST_F(ARadioSnapshot, of_radios_that_are_off_overwrites_what_was_remembered) {
    airplaneIsOnWithAllElseOff();
    remember(true);
    EXPECT_TRUE(take());
    EXPECT_FALSE(own->defaultWifi);
    EXPECT_FALSE(own->defaultBT);
    EXPECT_FALSE(own->defaultEdge);
    EXPECT_FALSE(own->default3G);
    EXPECT_FALSE(own->defaultLocation);
    EXPECT_TRUE(own->defaultAirplane);
    EXPECT_TRUE(own->currentState);
}

TEST_F(ARadioSnapshot, tells_the_radios_of_the_network_file_apart) {
    make();
    fileHolds(networkPath, {{"wifi-network", false}, {"bluetooth-network", true}});
    take();
    EXPECT_FALSE(own->defaultWifi);
    EXPECT_TRUE(own->defaultBT);
    fileHolds(networkPath, {{"wifi-network", true}, {"bluetooth-network", false}});
    take();
    EXPECT_TRUE(own->defaultWifi);
    EXPECT_FALSE(own->defaultBT);
}

TEST_F(ARadioSnapshot, takes_numbers_and_words_for_truths) {
    make();
    fileHolds(radiosPath, {{"AirplaneMode", 1}});
    fileHolds(networkPath, {{"wifi-network", "YES"}, {"bluetooth-network", 0}});
    fileHolds(locationPath, {{"LocationServicesEnabled", "no"}});
    EXPECT_TRUE(take());
    EXPECT_TRUE(own->defaultWifi);
    EXPECT_FALSE(own->defaultBT);
    EXPECT_FALSE(own->defaultLocation);
}

TEST_F(ARadioSnapshot, reads_a_missing_key_as_off) {
    make();
    remember(true);
    own->currentState = true;
    own->defaultAirplane = true;
    for (const auto& path : {radiosPath, networkPath, locationPath})
        fileHolds(path, {{"SomethingElse", true}});
    EXPECT_FALSE(take());
    EXPECT_FALSE(own->defaultWifi || own->defaultBT || own->defaultLocation);
    EXPECT_FALSE(own->defaultAirplane || own->currentState);
    EXPECT_TRUE(own->defaultEdge && own->default3G) << "these are no matter of files";
}

TEST_F(ARadioSnapshot, reads_a_missing_file_as_off) {
    make();
    const Recorder nobody(phone().clock);
    FilesModel none(makeMemoryFileStore(), nobody);
    Platform altered = phone().platform();
    altered.files = &none;
    own = std::make_unique<NoctaraThread>(altered);
    remember(true);
    own->defaultAirplane = true;
    own->currentState = true;
    EXPECT_FALSE(take());
    EXPECT_FALSE(own->defaultWifi || own->defaultBT || own->defaultLocation);
    EXPECT_FALSE(own->defaultAirplane || own->currentState);
    own.reset();
}

TEST_F(ARadioSnapshot, reads_a_damaged_file_as_off) {
    scenario.radios.airplane = true;
    make();
    remember(true);
    for (const auto& path : {radiosPath, networkPath, locationPath})
        phone().files.damage(path);
    EXPECT_FALSE(take());
    EXPECT_EQ(calls.of({"initWithContentsOfFile:"})[0],
              "initWithContentsOfFile: [\"" + radiosPath + "\"] -> null");
    EXPECT_FALSE(own->defaultWifi || own->defaultBT || own->defaultLocation);
    EXPECT_FALSE(own->defaultAirplane || own->currentState);
}

TEST_F(ARadioSnapshot, logs_every_radio_that_is_on) {
    make();
    take();
    EXPECT_THAT(calls.logged(),
                ElementsAre("Noctara : Wifi is ENABLED", "Noctara : BT is ENABLED",
                            "Noctara : Edge (data) is ENABLED", "Noctara : 3G is ENABLED",
                            "Noctara : AirPlaine is disabled", "Noctara : Phone is ENABLED",
                            "Noctara : Location is ENABLED"));
}

TEST_F(ARadioSnapshot, logs_the_phone_as_disabled_in_airplane_mode) {
    airplaneIsOnWithAllElseOff();
    take();
    EXPECT_THAT(calls.logged(),
                ElementsAre("Noctara : Wifi is disabled", "Noctara : BT is disabled",
                            "Noctara : Edge (data) is disabled", "Noctara : 3G is disabled",
                            "Noctara : AirPlaine is ENABLED", "Noctara : Phone is disabled",
                            "Noctara : Location is disabled"));
}

TEST_F(ARadioSnapshot, is_taken_without_a_word_with_debug_off) {
    make();
    own->_DEBUG_ = false;
    own->defaultWifi = false;
    take();
    EXPECT_THAT(calls.logged(), IsEmpty());
    EXPECT_TRUE(own->defaultWifi);
}

// Airplane mode, as far as it concerns the monitor.

TEST_F(ARadioSnapshot, without_airplane_mode_trusts_the_monitor_and_not_the_phone) {
    make();
    take();
    phone().happens(AirplaneModeSwitch{true});
    calls.clear();
    EXPECT_FALSE(own->isAirplaneModeActive());
    own->lastStateWasPlane = true;
    EXPECT_TRUE(own->isAirplaneModeActive());
    EXPECT_THAT(calls.lines, testing::SizeIs(0));
}

TEST_F(ARadioSnapshot, with_airplane_mode_asks_the_phone_and_not_the_monitor) {
    scenario.radios.airplane = true;
    make();
    take();
    own->lastStateWasPlane = false;
    calls.clear();
    EXPECT_TRUE(own->isAirplaneModeActive());
    EXPECT_THAT(calls.calls(),
                ElementsAre(R"(objc_getClass ["SBTelephonyManager"] -> true)",
                            "sharedTelephonyManager -> true", "isInAirplaneMode -> true"));
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara : airPlaneMode : ENABLED"));

    phone().happens(AirplaneModeSwitch{false});
    own->lastStateWasPlane = true;
    calls.clear();
    EXPECT_FALSE(own->isAirplaneModeActive());
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara : airPlaneMode : disabled"));
}

TEST_F(ARadioSnapshot, with_airplane_mode_asks_without_a_word_with_debug_off) {
    scenario.radios.airplane = true;
    make();
    take();
    own->_DEBUG_ = false;
    calls.clear();
    EXPECT_TRUE(own->isAirplaneModeActive());
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(ARadioSnapshot, with_airplane_mode_says_no_where_there_is_no_telephony_manager) {
    scenario.radios.airplane = true;
    scenario.phone.telephonyManager = false;
    make();
    take();
    own->lastStateWasPlane = true;
    calls.clear();
    EXPECT_FALSE(own->isAirplaneModeActive());
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara : SBTelephonyManager is NULL"));
    own->_DEBUG_ = false;
    calls.clear();
    EXPECT_FALSE(own->isAirplaneModeActive());
    EXPECT_THAT(calls.logged(), IsEmpty());
}

// What the monitor hands on to its radio controller.

TEST_F(AMonitor, hands_location_and_bluetooth_on_to_its_radio_controller) {
    make();
    calls.clear();
    own->setLocationEnabled(false);
    own->setBluetoothEnabled(false);
    EXPECT_THAT(calls.of({"setLocationServicesEnabled:", "setEnabled:"}),
                ElementsAre("setLocationServicesEnabled: [false]", "setEnabled: [false]"));
    own->setLocationEnabled(true);
    own->setBluetoothEnabled(true);
    EXPECT_TRUE(phone().radios.states().location);
    EXPECT_TRUE(phone().radios.states().bluetooth);
}

TEST_F(AMonitor, has_3G_as_its_radio_controller_says_and_cellular_data_always) {
    make();
    EXPECT_TRUE(own->is3GEnabled());
    phone().happens(MaxRateChange{DataRate::kCTRegistrationDataRate2G});
    EXPECT_FALSE(own->is3GEnabled());
    EXPECT_TRUE(own->hasCellularData());
    phone().happens(CellularDataSwitch{false});
    EXPECT_TRUE(own->hasCellularData());
}

TEST_F(ANight, begins_in_the_sleep_state_when_the_start_finds_airplane_mode) {
    scenario.radios.airplane = true;
    begin();
    playFor(1);
    EXPECT_TRUE(monitor().lastStateWasPlane);
    EXPECT_TRUE(monitor().defaultAirplane);
    lies(InHand);
    playReadings(4);
    EXPECT_FALSE(phone().radios.states().airplane);
}

} // namespace
} // namespace noctara
