/// An observer of the monitor gets each decision when it is made.
#include "tests/monitor/an_observer.h"

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

// The start, and loads of the settings.

TEST_F(TheObserver, is_told_of_the_settings_and_then_of_the_beginning_before_the_first_cycle) {
    beginObserved();
    EXPECT_THAT(observer.told(), IsEmpty());
    playFor(0.5);
    EXPECT_THAT(observer.told(),
                ElementsAre("settings are loaded: on, every 5 s", "monitoring begins awake",
                            "airplane mode is as it was left"));
}

TEST_F(TheObserver, is_told_that_a_phone_in_airplane_mode_begins_in_the_sleep_state) {
    scenario.radios.airplane = true;
    beginObserved();
    playFor(0.5);
    EXPECT_THAT(observer.toldOf<MonitoringBegins>(),
                ElementsAre("monitoring begins in the sleep state"));
}

TEST_F(TheObserver, is_told_of_a_short_interval_as_it_is_raised_at_the_start_and_as_it_is_later) {
    settings.set("ScanInterval", 0);
    beginObserved();
    playFor(0.5);
    EXPECT_THAT(observer.toldOf<SettingsLoaded>(),
                ElementsAre("settings are loaded: on, every 5 s"));
    change({{"Vibrate", false}});
    EXPECT_THAT(observer.told(), ElementsAre("settings are loaded: on, every 0 s"));
    change({{"ScanInterval", 3}, {"Enabled", false}});
    EXPECT_THAT(observer.told(), ElementsAre("settings are loaded: off, every 15 s"));
}

TEST_F(TheObserver, is_told_of_each_number_of_the_settings) {
    beginInHand();
    change({{"ScanInterval", 4}, {"Sensitivity", 8}, {"StartHour", 20}, {"StopHour", 6}});
    EXPECT_EQ(loaded().sleepTime, 20);
    EXPECT_EQ(loaded().sensitivity, 8);
    EXPECT_EQ(loaded().startTime, 20);
    EXPECT_EQ(loaded().stopTime, 6);
}

TEST_F(TheObserver, is_told_of_each_truth_of_the_settings) {
    struct Truth {
        const char* key;
        bool Settings::*member;
    };
    const std::vector<Truth> truths{
        {"Enabled", &Settings::enabled},
        {"ScreenDown", &Settings::screenDown},
        {"TimeLimit", &Settings::timeLimit},
        {"EnableOnAC", &Settings::enabledOnChargeOnly},
        {"AirplaneSwitch", &Settings::airplaneSwitch},
        {"PhoneSwitch", &Settings::phoneSwitch},
        {"WifiSwitch", &Settings::wifiSwitch},
        {"BTSwitch", &Settings::bluetoothSwitch},
        {"EdgeSwitch", &Settings::edgeSwitch},
        {"3GSwitch", &Settings::_3GSwitch},
        {"LocationSwitch", &Settings::locationSwitch},
    };
    beginInHand();
    for (const auto& wanted : truths) {
        Dictionary changed;
        for (const auto& truth : truths)
            changed.set(truth.key, truth.key == wanted.key);
        change(changed);
        for (const auto& truth : truths)
            EXPECT_EQ(loaded().*truth.member, truth.key == wanted.key)
                << truth.key << " with " << wanted.key;
    }
}

TEST_F(TheObserver, is_told_of_a_settings_file_that_is_made_and_of_the_key_that_it_lacks) {
    switchOnObserved();
    launch();
    playFor(0.5);
    EXPECT_THAT((observer.toldOf<SettingsFileMade, SettingFilledIn, SettingsLoaded>()),
                ElementsAre("a settings file is made", "PhoneSwitch is filled in",
                            "settings are loaded: on, every 5 s"));
}

TEST_F(TheObserver, is_told_of_a_settings_file_that_cannot_be_made) {
    switchOnObserved();
    phone().happens(DiskChange{DiskState::full});
    launch();
    playFor(0.5);
    EXPECT_THAT(observer.told(),
                ElementsAre("no settings file can be made", "settings are loaded: off, every 5 s",
                            "monitoring begins awake", "no reading: monitoring is off"));
}

TEST_F(TheObserver, is_told_of_an_unreadable_settings_file_into_which_no_key_can_be_filled) {
    scenario.settings = settings;
    switchOnObserved();
    phone().happens(SettingsFileChange{SettingsFileFault::damaged});
    launch();
    playFor(0.5);
    Sentences expected{"the settings file is unreadable"};
    for (const char* key :
         {"Enabled",     "ScanInterval", "ScreenDown",     "ActiveOnSleep",  "DetectManual",
          "TimeLimit",   "StartHour",    "StopHour",       "PlaySound",      "Vibrate",
          "EnableOnAC",  "Sensitivity",  "AirplaneSwitch", "WifiSwitch",     "BTSwitch",
          "PhoneSwitch", "EdgeSwitch",   "3GSwitch",       "LocationSwitch", "Debug"})
        expected.push_back(std::string(key) + " cannot be filled in");
    expected.emplace_back("settings are loaded: off, every 5 s");
    EXPECT_THAT(
        (observer
             .toldOf<SettingsFileUnreadable, SettingsFileMade, SettingFilledIn, SettingsLoaded>()),
        ElementsAreArray(expected));
}

TEST_F(TheObserver, is_told_of_each_key_that_is_filled_in_in_the_order_of_loading) {
    beginInHand();
    phone().happens(SettingsRemoval{{"Vibrate", "StartHour"}});
    EXPECT_THAT(observer.told(), ElementsAre("StartHour is filled in", "Vibrate is filled in",
                                             "settings are loaded: on, every 5 s"));
}

TEST_F(TheObserver, is_told_of_a_key_that_a_full_disk_does_not_take) {
    settings.remove("Vibrate");
    scenario.settings = settings;
    switchOnObserved();
    phone().happens(DiskChange{DiskState::full});
    launch();
    playFor(0.5);
    EXPECT_THAT(observer.toldOf<SettingFilledIn>(), ElementsAre("Vibrate cannot be filled in"));
}

// Readings.

TEST_F(TheObserver, is_told_of_the_angle_the_length_the_tolerance_and_the_verdict_of_a_reading) {
    beginInHand();
    playReadings(1);
    EXPECT_THAT(observer.toldOf<Reading>(),
                ElementsAre("accelerometer: angle 2.498, length 1.000, tolerance 0.037, screen "
                            "down: does not lie"));
    lies(ScreenDown);
    playReadings(1);
    EXPECT_THAT(observer.toldOf<Reading>(), ElementsAre("accelerometer: angle 0.000, length 1.000, "
                                                        "tolerance 0.037, screen down: lies"));
    lies(Acceleration{0, 0, 1.5});
    playReadings(1);
    EXPECT_THAT(observer.toldOf<Reading>(),
                ElementsAre("accelerometer: angle 0.000, length 1.500, "
                            "tolerance 0.037, screen down: does not lie"));
}

TEST_F(TheObserver, is_told_of_the_posture_and_the_sensitivity_that_the_settings_want) {
    beginInHand();
    lies(ScreenUp);
    change({{"ScreenDown", false}, {"Sensitivity", 1}});
    playReadings(1);
    EXPECT_THAT(observer.toldOf<Reading>(), ElementsAre("accelerometer: angle 3.142, length 1.000, "
                                                        "tolerance 0.110, screen up: lies"));
}

TEST_F(TheObserver, is_told_of_a_reading_without_a_sample) {
    beginInHand();
    lies(None);
    playReadings(1);
    EXPECT_THAT(observer.toldOf<Reading>(),
                ElementsAre("no sample: angle 0.000, length 0.000, tolerance 0.037, screen down: "
                            "does not lie"));
}

TEST_F(TheObserver, is_told_of_a_reading_of_device_motion_by_its_z_component) {
    scenario.phone.deviceMotion = true;
    scenario.phone.posture = InHand;
    beginObserved();
    playReadings(1);
    EXPECT_THAT(observer.toldOf<Reading>(),
                ElementsAre("device motion: angle -0.800, length 0.000, tolerance 0.037, screen "
                            "down: does not lie"));
}

// The count, and changes of the state.

TEST_F(TheObserver, is_told_of_the_count_up_to_three_and_of_the_change_of_the_state) {
    beginInHand();
    playReadings(1);
    lies(ScreenDown);
    playReadings(4);
    EXPECT_THAT((observer.toldOf<ReadingCounted, StateChanged>()),
                ElementsAre("0 awake", "1 awake", "2 awake", "3 awake", "falls asleep",
                            "0 in the sleep state"));
    lies(InHand);
    playReadings(4);
    EXPECT_THAT((observer.toldOf<ReadingCounted, StateChanged>()),
                ElementsAre("1 in the sleep state", "2 in the sleep state", "3 in the sleep state",
                            "wakes up", "0 awake"));
}

TEST_F(TheObserver, is_told_that_a_dropped_countdown_stands_at_zero) {
    beginInHand();
    lies(ScreenDown);
    playReadings(2);
    lies(InHand);
    playReadings(1);
    lies(ScreenDown);
    playReadings(1);
    EXPECT_THAT((observer.toldOf<ReadingCounted, StateChanged>()),
                ElementsAre("1 awake", "2 awake", "0 awake", "1 awake"));
}

TEST_F(TheObserver,
       is_told_of_the_third_reading_before_the_radios_are_switched_and_then_of_the_state) {
    beginInHand();
    Sentences inAirplaneMode;
    observer.onDecision = [&](const Decision& decision) {
        const auto* counted = std::get_if<ReadingCounted>(&decision);
        if (!(counted && counted->inARow == 3) && !std::holds_alternative<StateChanged>(decision))
            return;
        const bool airplane = phone().radios.states().airplane;
        inAirplaneMode.push_back(
            std::visit([](const auto& kind) { return sentence(kind); }, decision) +
            (airplane ? ": airplane mode" : ": no airplane mode"));
    };
    fallAsleep();
    lies(InHand);
    playReadings(3);
    EXPECT_THAT(inAirplaneMode,
                ElementsAre("3 awake: no airplane mode", "falls asleep: airplane mode",
                            "3 in the sleep state: airplane mode", "wakes up: no airplane mode"));
}

// Why there is no reading.

TEST_F(TheObserver, is_told_in_each_cycle_that_monitoring_is_off) {
    settings.set("Enabled", false);
    beginObserved();
    playFor(15);
    EXPECT_THAT(observer.told(),
                ElementsAre("settings are loaded: off, every 5 s", "monitoring begins awake",
                            "no reading: monitoring is off", "no reading: monitoring is off"));
}

TEST_F(TheObserver, is_told_in_each_cycle_that_the_window_is_not_open) {
    settings.set("TimeLimit", true);
    scenario.start.secondsSince1970 = at(2014, 3, 1, 20, 59, 52);
    beginObserved();
    playFor(17);
    EXPECT_THAT(
        (observer.toldOf<NoReading, ReadingCounted>()),
        ElementsAre("no reading: outside the window", "no reading: outside the window", "0 awake"));
}

TEST_F(TheObserver, is_told_of_readings_outside_the_window_while_the_phone_sleeps) {
    settings.set("TimeLimit", true);
    beginInHand();
    fallAsleep();
    change({{"StartHour", 1}, {"StopHour", 2}});
    observer.told();
    playReadings(1);
    EXPECT_THAT((observer.toldOf<NoReading, ReadingCounted>()),
                ElementsAre("0 in the sleep state"));
}

TEST_F(TheObserver, is_told_that_the_phone_is_not_on_the_charger) {
    settings.set("EnableOnAC", true);
    beginObserved();
    playFor(8);
    EXPECT_THAT((observer.toldOf<NoReading, ReadingCounted>()),
                ElementsAre("no reading: not on the charger", "no reading: not on the charger"));
    phone().happens(ChargerChange{true});
    playFor(5);
    EXPECT_THAT((observer.toldOf<NoReading, ReadingCounted>()), ElementsAre("0 awake"));
}

// Airplane mode by hand.

class TheObserverOfAHand : public TheObserver {
protected:
    /// A phone that was started in airplane mode and has since been woken.
    void beginWoken() {
        scenario.radios.airplane = true;
        beginObserved();
        playReadings(3);
        observer.told();
    }
};

TEST_F(TheObserverOfAHand, is_told_in_each_cycle_that_airplane_mode_is_as_it_was_left) {
    beginWoken();
    playReadings(2);
    EXPECT_THAT((observer.toldOf<AirplaneModeCompared, ReadingCounted>()),
                ElementsAre("airplane mode is as it was left", "0 awake",
                            "airplane mode is as it was left", "0 awake"));
}

TEST_F(TheObserverOfAHand, is_told_of_a_change_in_each_cycle_until_it_is_undone) {
    beginWoken();
    phone().happens(AirplaneModeSwitch{true});
    playFor(7);
    EXPECT_THAT(observer.told(),
                ElementsAre("airplane mode was changed by hand", "no reading: monitoring is off",
                            "airplane mode was changed by hand"))
        << "compared to suspend monitoring, and again to resume it";
    playFor(10);
    EXPECT_THAT(observer.told(),
                ElementsAre("no reading: monitoring is off", "airplane mode was changed by hand"));

    phone().happens(AirplaneModeSwitch{false});
    playFor(10);
    EXPECT_THAT(observer.told(),
                ElementsAre("no reading: monitoring is off", "airplane mode is as it was left"));
    playReadings(1);
    EXPECT_THAT((observer.toldOf<AirplaneModeCompared, NoReading, ReadingCounted>()),
                ElementsAre("airplane mode is as it was left", "0 awake"));
}

TEST_F(TheObserverOfAHand, is_told_nothing_of_it_when_it_is_not_to_be_detected) {
    settings.set("DetectManual", false);
    beginWoken();
    phone().happens(AirplaneModeSwitch{true});
    playReadings(2);
    EXPECT_THAT((observer.toldOf<AirplaneModeCompared, NoReading, ReadingCounted>()),
                ElementsAre("0 awake", "0 awake"));
}

// The observer itself.

TEST_F(TheObserver, is_told_on_the_thread_that_decides) {
    beginInHand();
    std::vector<std::pair<std::string, bool>> told;
    observer.onDecision = [&](const Decision& decision) {
        told.emplace_back(std::visit([](const auto& kind) { return sentence(kind); }, decision),
                          phone().recorder.onMainThread);
    };
    change({{"Vibrate", false}});
    EXPECT_THAT(told, ElementsAre(std::pair("settings are loaded: on, every 5 s", true)));
    told.clear();
    playReadings(1);
    ASSERT_THAT(told, SizeIs(3));
    for (const auto& [text, onMainThread] : told)
        EXPECT_FALSE(onMainThread) << text;
}

TEST_F(TheObserver, changes_nothing_of_what_the_monitor_does) {
    const auto night = [this] {
        playReadings(1);
        fallAsleep();
        change({{"Sensitivity", 3}});
        lies(InHand);
        playReadings(5);
        Sentences texts;
        for (const auto& line : calls.lines)
            texts.push_back(line.json);
        calls.clear();
        return texts;
    };
    settings.set("Debug", true);
    begin();
    const Sentences alone = night();
    beginObserved();
    EXPECT_EQ(night(), alone);
    EXPECT_GT(observer.decisions.size(), 20U);
}

TEST_F(TheObserver, is_told_nothing_of_the_monitor_of_the_next_phone) {
    beginInHand();
    begin();
    EXPECT_EQ(monitorObserver, nullptr);
    fallAsleep();
    EXPECT_TRUE(monitor().lastStateWasPlane);
    EXPECT_THAT(observer.told(), IsEmpty());
}

} // namespace
} // namespace noctara
