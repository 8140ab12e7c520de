/// What happens to Wi-Fi, Bluetooth and location services in a night, with their own switches and
/// with PhoneSwitch.
#include "tests/a_night.h"

namespace noctara {
namespace {

struct Radio {
    const char* name;
    SharedField<bool> NoctaraThread::*ownSwitch;
    bool Scenario::Radios::*before;
    bool RadioStates::*state;
    Event (*byHand)(bool on);
};

template <typename Switch>
Event switchedByHand(bool on) {
    return Switch{on};
}

constexpr Radio radios[] = {
    {"wifi", &NoctaraThread::wifiSwitch, &Scenario::Radios::wifi, &RadioStates::wifi,
     switchedByHand<WifiSwitch>},
    {"bluetooth", &NoctaraThread::bluetoothSwitch, &Scenario::Radios::bluetooth,
     &RadioStates::bluetooth, switchedByHand<BluetoothSwitch>},
    {"location", &NoctaraThread::locationSwitch, &Scenario::Radios::location,
     &RadioStates::location, switchedByHand<LocationSwitch>},
};

class ARadio : public AMonitor, public testing::WithParamInterface<Radio> {
protected:
    void begins(bool on, bool ownSwitch, bool phoneSwitch) {
        scenario.radios.*GetParam().before = on;
        make();
        own->isEnabled();
        own->airplaneSwitch = false;
        own->phoneSwitch = phoneSwitch;
        own.get()->*GetParam().ownSwitch = ownSwitch;
    }

    void set(bool state) {
        phone().asMonitorThread([&] { own->setState(state); });
    }
    void night() { set(true); }
    void morning() { set(false); }
    void byHand(bool on) { phone().happens(GetParam().byHand(on)); }

    bool isOn() { return phone().radios.states().*GetParam().state; }
    bool airplane() { return phone().radios.states().airplane; }
};

INSTANTIATE_TEST_SUITE_P(Each, ARadio, testing::ValuesIn(radios),
                         [](const auto& radio) { return std::string(radio.param.name); });

TEST_P(ARadio, under_its_own_switch_is_off_at_night_and_on_in_the_morning) {
    begins(true, true, false);
    night();
    EXPECT_FALSE(isOn());
    EXPECT_FALSE(airplane());
    morning();
    EXPECT_TRUE(isOn());
}

TEST_P(ARadio, under_its_own_switch_and_the_phone_s_is_off_in_airplane_mode) {
    begins(true, true, true);
    night();
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(airplane());
    morning();
    EXPECT_TRUE(isOn());
    EXPECT_FALSE(airplane());
}

TEST_P(ARadio, under_the_phone_s_switch_alone_is_on_in_airplane_mode) {
    begins(true, false, true);
    night();
    EXPECT_TRUE(isOn());
    EXPECT_TRUE(airplane());
    morning();
    EXPECT_TRUE(isOn());
    EXPECT_FALSE(airplane());
}

TEST_P(ARadio, under_the_phone_s_switch_alone_is_brought_back_after_a_hand_switched_it_off) {
    begins(true, false, true);
    night();
    byHand(false);
    morning();
    EXPECT_TRUE(isOn());
}

TEST_P(ARadio, under_no_switch_is_left_to_the_hand_that_switches_it) {
    begins(true, false, false);
    night();
    EXPECT_TRUE(isOn());
    byHand(false);
    morning();
    EXPECT_FALSE(isOn());
    byHand(true);
    night();
    EXPECT_TRUE(isOn());
}

TEST_P(ARadio, that_was_off_before_the_night_is_off_in_the_morning) {
    for (const bool ownSwitch : {true, false})
        for (const bool phoneSwitch : {true, false}) {
            begins(false, ownSwitch, phoneSwitch);
            night();
            EXPECT_FALSE(isOn());
            morning();
            EXPECT_FALSE(isOn());
            own.reset();
        }
}

TEST_P(ARadio, that_was_off_before_the_night_is_switched_off_again_if_a_hand_switched_it_on) {
    for (const bool ownSwitch : {true, false}) {
        begins(false, ownSwitch, true);
        night();
        byHand(true);
        morning();
        EXPECT_FALSE(isOn());
        own.reset();
    }
    begins(false, true, false);
    night();
    byHand(true);
    morning();
    EXPECT_FALSE(isOn());
}

TEST_P(ARadio, is_remembered_as_the_night_finds_it_and_not_as_the_start_did) {
    begins(false, true, false);
    byHand(true);
    night();
    EXPECT_FALSE(isOn());
    morning();
    EXPECT_TRUE(isOn());
}

TEST_P(ARadio, under_the_phone_s_switch_alone_is_remembered_as_the_night_finds_it) {
    begins(false, false, true);
    byHand(true);
    night();
    EXPECT_TRUE(isOn());
    morning();
    EXPECT_TRUE(isOn());
}

} // namespace
} // namespace noctara
