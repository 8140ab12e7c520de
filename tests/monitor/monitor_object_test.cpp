/// The monitor object: its state after construction, and notifications from outside.
#include "tests/a_night.h"

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Looks at the phone at the moment of one operation.
class Glance final : public PhoneObserver {
public:
    Glance(Operation awaited, std::function<void()> look) :
        operation(awaited), glance(std::move(look)) {}

    void called(const Call& call) override {
        if (call.operation == operation)
            glance();
    }
    void happens(const Happening&) override {}

private:
    Operation operation;
    std::function<void()> glance;
};

class AMonitorObject : public AMonitor {
protected:
    /// Without a settings file of its own nothing but the constructor has set anything.
    NoctaraThread& makeFresh() {
        switchOn();
        own = std::make_unique<NoctaraThread>(phone().platform());
        return *own;
    }
};

TEST_F(AMonitorObject, starts_with_monitoring_off_and_debug_on) {
    const auto& fresh = makeFresh();
    EXPECT_FALSE(fresh.enabled);
    EXPECT_TRUE(fresh.running);
    EXPECT_TRUE(fresh._DEBUG_);
}

TEST_F(AMonitorObject, starts_with_a_sensitivity_of_5_and_a_window_from_21_to_7_that_is_not_used) {
    const auto& fresh = makeFresh();
    EXPECT_EQ(fresh.sensitivity, 5);
    EXPECT_EQ(fresh.startTime, 21);
    EXPECT_EQ(fresh.stopTime, 7);
    EXPECT_FALSE(fresh.timeLimit);
    EXPECT_EQ(fresh.sleepTime, 0);
}

TEST_F(AMonitorObject, starts_with_airplane_mode_as_its_only_switch) {
    const auto& fresh = makeFresh();
    EXPECT_TRUE(fresh.airplaneSwitch);
    EXPECT_FALSE(fresh.wifiSwitch);
    EXPECT_FALSE(fresh.bluetoothSwitch);
    EXPECT_FALSE(fresh._3GSwitch);
    EXPECT_FALSE(fresh.edgeSwitch);
    EXPECT_FALSE(fresh.phoneSwitch);
    EXPECT_FALSE(fresh.locationSwitch);
}

TEST_F(AMonitorObject, starts_with_all_other_settings_off) {
    const auto& fresh = makeFresh();
    EXPECT_FALSE(fresh.enabledOnChargeOnly);
    EXPECT_FALSE(fresh.screenDown);
    EXPECT_FALSE(fresh.activeOnSleep);
    EXPECT_FALSE(fresh.disableOnManualChange);
    EXPECT_FALSE(fresh.playSound);
    EXPECT_FALSE(fresh.vibrate);
    EXPECT_THAT(fresh.applicationsToStart, IsEmpty());
}

TEST_F(AMonitorObject, reads_the_charger_then_looks_at_the_radio_then_listens_for_settings) {
    scenario.phone.charger = true;
    const auto& fresh = makeFresh();
    EXPECT_TRUE(fresh.ACState);
    EXPECT_THAT(
        calls.calls(),
        ElementsAre("objc_getClass [\"SBUIController\"] -> true", "isOnAC -> true",
                    "_CTServerConnectionCreate -> true",
                    "CTRegistrationCopySupportedDataRates -> [\"2G\",\"3G\"]",
                    "uname -> \"iPhone4,1\"", "userInterfaceIdiom -> 0",
                    "notify_register_dispatch [\"com.quorbit.Noctara.preferences-changed\"]"));
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(AMonitorObject, on_battery_knows_so) {
    EXPECT_FALSE(makeFresh().ACState);
}

TEST_F(AMonitorObject, keeps_the_token_of_its_registration) {
    makeFresh();
    EXPECT_EQ(settingsNotificationToken, 1);
}

TEST_F(AMonitorObject, takes_a_4g_phone_down_to_2g) {
    scenario.phone.machine = "iPhone5,1";
    scenario.phone.rates = {DataRate::kCTRegistrationDataRate2G,
                            DataRate::kCTRegistrationDataRate3G,
                            DataRate::kCTRegistrationDataRate4G};
    scenario.radios.maxRate = DataRate::kCTRegistrationDataRate4G;
    auto& fresh = makeFresh();
    fresh.radiosLib->set3GEnabled(false);
    EXPECT_THAT(calls.of({"CTRegistrationSetMaxAllowedDataRate"}),
                ElementsAre("CTRegistrationSetMaxAllowedDataRate [\"3G\"] -> true",
                            "CTRegistrationSetMaxAllowedDataRate [\"2G\"] -> true"));
}

TEST_F(AMonitorObject, logs_a_missing_charger_class_and_takes_the_phone_to_be_on_battery) {
    scenario.phone.charger = true;
    switchOn();
    phone().process.removeClass("SBUIController");
    own = std::make_unique<NoctaraThread>(phone().platform());
    EXPECT_FALSE(own->ACState);
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara : Class SBUIController not found"));
    EXPECT_EQ(calls.count("isOnAC"), 0U);
    EXPECT_EQ(calls.count("notify_register_dispatch"), 1U) << "and goes on";
}

TEST_F(AMonitorObject, without_the_charger_class_detects_only_after_the_first_charger_change) {
    settings.set("EnableOnAC", true);
    scenario.settings = settings;
    scenario.phone.charger = true;
    switchOn();
    phone().process.removeClass("SBUIController");
    launch();
    playFor(60);
    EXPECT_EQ(phone().motion.readings, 0);
    monitor().setACState(true);
    playFor(60);
    EXPECT_GT(phone().motion.readings, 0);
}

TEST_F(AMonitorObject, starts_one_thread_that_has_a_name) {
    auto& fresh = makeFresh();
    calls.clear();
    fresh.start();
    EXPECT_NE(fresh.thread, nullptr);
    EXPECT_THAT(calls.of({"NSThread start", "NSLog"}),
                ElementsAre("NSThread start [\"NoctaraThread\"]",
                            "NSLog [\"Noctara : NoctaraThread start\"]"));
}

TEST_F(AMonitorObject, only_logs_when_it_is_started_twice) {
    auto& fresh = makeFresh();
    fresh.start();
    const auto* thread = fresh.thread.get();
    calls.clear();
    fresh.start();
    EXPECT_EQ(fresh.thread.get(), thread);
    EXPECT_THAT(calls.calls(), IsEmpty());
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara : NoctaraThread already started"));
}

TEST_F(AMonitorObject, starts_silently_with_debug_off) {
    auto& fresh = makeFresh();
    fresh._DEBUG_ = false;
    calls.clear();
    fresh.start();
    fresh.start();
    EXPECT_EQ(calls.count("NSThread start"), 1U);
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(AMonitorObject, stops_by_ceasing_to_run_and_nothing_else) {
    auto& fresh = makeFresh();
    fresh.enabled = true;
    fresh.switchingToAirplane = true;
    calls.clear();
    fresh.stop();
    EXPECT_FALSE(fresh.running);
    EXPECT_TRUE(fresh.enabled);
    EXPECT_TRUE(fresh.switchingToAirplane);
    EXPECT_THAT(calls.lines, IsEmpty());
}

TEST_F(AMonitorObject, goes_on_detecting_when_it_is_unplugged_in_the_sleep_state) {
    auto& fresh = makeFresh();
    fresh.ACState = true;
    fresh.lastStateWasPlane = true;
    fresh.setACState(false);
    EXPECT_FALSE(fresh.ACState);
    EXPECT_TRUE(fresh.continueToMonitorAfterAC);
    EXPECT_TRUE(fresh.eventOccurred);
}

TEST_F(AMonitorObject, need_not_go_on_detecting_when_it_is_unplugged_outside_the_sleep_state) {
    auto& fresh = makeFresh();
    fresh.ACState = true;
    fresh.continueToMonitorAfterAC = true;
    fresh.setACState(false);
    EXPECT_FALSE(fresh.ACState);
    EXPECT_FALSE(fresh.continueToMonitorAfterAC);
    EXPECT_TRUE(fresh.eventOccurred);
}

TEST_F(AMonitorObject, needs_no_exception_from_the_charger_once_it_is_plugged_in) {
    for (const bool asleep : {false, true}) {
        auto& fresh = makeFresh();
        fresh.lastStateWasPlane = asleep;
        fresh.continueToMonitorAfterAC = true;
        fresh.setACState(true);
        EXPECT_TRUE(fresh.ACState);
        EXPECT_FALSE(fresh.continueToMonitorAfterAC);
        EXPECT_TRUE(fresh.eventOccurred);
        own.reset();
    }
}

TEST_F(AMonitorObject, notes_a_settings_change_as_an_event_before_it_reloads_on_the_main_thread) {
    scenario.settings = settings;
    switchOn();
    bool noted = false;
    Glance glance(Operation::fileExistsAtPath, [&] { noted = own->eventOccurred; });
    phone().observe(glance);
    own = std::make_unique<NoctaraThread>(phone().platform());
    calls.clear();
    change({{"Sensitivity", 9}});
    EXPECT_TRUE(noted);
    EXPECT_TRUE(own->eventOccurred);
    EXPECT_EQ(own->sensitivity, 9);
    EXPECT_EQ(calls.count("initWithContentsOfFile:"), 1U);
    for (const auto& line : calls.lines)
        EXPECT_EQ(line.thread, "main") << line.text;
}

TEST_F(AMonitorObject, hears_of_settings_before_its_thread_runs) {
    scenario.settings = settings;
    makeFresh();
    change({{"Enabled", true}});
    EXPECT_TRUE(own->enabled);
    EXPECT_EQ(own->sleepTime, 5);
}

} // namespace

} // namespace noctara
