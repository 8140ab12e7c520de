/// Monitoring that is suspended, by the settings or because airplane mode was changed by hand. The
/// latter applies only to a phone that was in airplane mode when the monitor started.
#include "tests/a_night.h"

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string suspended = "Noctara : NOT Running...";
const std::string runs = "Noctara : Running...";

class Suspended : public ANight {
protected:
    /// A phone that was started in airplane mode and has since been woken.
    void beginAwake() {
        scenario.radios.airplane = true;
        settings.set("Debug", true);
        begin();
        playReadings(3);
        ASSERT_FALSE(monitor().lastStateWasPlane);
        ASSERT_FALSE(phone().radios.states().airplane);
        calls.clear();
    }

    /// The seconds, counted from the first, at which a line was logged.
    std::vector<double> secondsOf(const std::string& text) const {
        std::vector<double> found;
        for (const auto& line : calls.lines)
            if (line.operation == "NSLog" && line.argument(0) == text)
                found.push_back(line.at);
        for (auto second = found.rbegin(); second != found.rend(); ++second)
            *second -= found.front();
        return found;
    }
};

TEST_F(Suspended, airplane_mode_by_hand_stops_detection_and_doubles_the_wait) {
    beginAwake();
    phone().happens(AirplaneModeSwitch{true});
    playFor(40);
    EXPECT_FALSE(monitor().enabled);
    EXPECT_FALSE(calls.hasLogged(runs));
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0U);
    EXPECT_THAT(secondsOf(suspended), ElementsAre(0, 10, 20, 30));
}

TEST_F(Suspended, asks_for_airplane_mode_twice_at_first_and_once_a_cycle_from_then_on) {
    beginAwake();
    phone().happens(AirplaneModeSwitch{true});
    playFor(7);
    EXPECT_EQ(calls.count("isInAirplaneMode"), 2U);
    playFor(10);
    EXPECT_EQ(calls.count("isInAirplaneMode"), 3U);
}

TEST_F(Suspended, detection_resumes_in_the_cycle_that_finds_airplane_mode_off_again) {
    beginAwake();
    phone().happens(AirplaneModeSwitch{true});
    playFor(21);
    ASSERT_FALSE(monitor().enabled);
    phone().happens(AirplaneModeSwitch{false});
    calls.clear();
    playFor(5);
    EXPECT_TRUE(monitor().enabled);
    EXPECT_THAT(calls.of({"NSLog", "isInAirplaneMode", "startAccelerometerUpdates"}),
                ElementsAre("isInAirplaneMode -> false",
                            "NSLog [\"Noctara : airPlaneMode : disabled\"]",
                            "NSLog [\"Noctara : NOT Running...\"]"))
        << "still no reading in that cycle";
    calls.clear();
    playFor(5);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 1U) << "and one wait only";
}

TEST_F(Suspended, airplane_mode_ended_by_hand_is_suspended_and_resumed_within_each_cycle) {
    scenario.radios.airplane = true;
    scenario.phone.posture = NamedPosture::ScreenDown;
    settings.set("Debug", true);
    begin();
    playReadings(1);
    phone().happens(AirplaneModeSwitch{false});
    calls.clear();
    playFor(22);
    EXPECT_TRUE(monitor().enabled);
    EXPECT_TRUE(monitor().lastStateWasPlane);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0U);
    EXPECT_FALSE(calls.hasLogged(runs));
    EXPECT_THAT(secondsOf(suspended), ElementsAre(0, 5, 10, 15)) << "one wait in each";
    EXPECT_EQ(calls.count("isInAirplaneMode"), 8U);

    phone().happens(AirplaneModeSwitch{true});
    calls.clear();
    playFor(6);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 1U) << "they agree again";
}

TEST_F(Suspended, a_change_by_hand_does_not_matter_when_it_is_not_to_be_detected) {
    settings.set("DetectManual", false);
    beginAwake();
    phone().happens(AirplaneModeSwitch{true});
    playFor(30);
    EXPECT_TRUE(monitor().enabled);
    EXPECT_FALSE(calls.hasLogged(suspended));
    EXPECT_EQ(calls.count("isInAirplaneMode"), 0U);
}

TEST_F(Suspended, a_change_by_hand_is_not_seen_on_a_phone_that_started_outside_airplane_mode) {
    begin();
    playReadings(1);
    phone().happens(AirplaneModeSwitch{true});
    playReadings(3);
    EXPECT_TRUE(monitor().enabled);
    EXPECT_EQ(calls.count("isInAirplaneMode"), 0U);
}

TEST_F(Suspended, by_hand_stays_so_while_hand_changes_are_not_to_be_detected) {
    beginAwake();
    phone().happens(AirplaneModeSwitch{true});
    playFor(21);
    ASSERT_FALSE(monitor().enabled);
    change({{"DetectManual", false}, {"Enabled", false}});
    phone().happens(AirplaneModeSwitch{false});
    calls.clear();
    playFor(30);
    EXPECT_FALSE(monitor().enabled);
    EXPECT_EQ(calls.count("isInAirplaneMode"), 0U);

    change({{"DetectManual", true}});
    ASSERT_FALSE(monitor().enabled);
    playFor(11);
    EXPECT_TRUE(monitor().enabled) << "it was still known that a hand had suspended it";
}

TEST_F(Suspended, by_the_settings_it_does_not_resume_by_itself) {
    scenario.radios.airplane = true;
    settings.set("Enabled", false);
    settings.set("Debug", true);
    begin();
    playFor(30);
    phone().happens(AirplaneModeSwitch{false});
    playFor(30);
    EXPECT_FALSE(monitor().enabled);
    EXPECT_EQ(phone().motion.readings, 0);
    EXPECT_EQ(calls.count("isInAirplaneMode"), 0U);
    EXPECT_THAT(secondsOf(suspended), ElementsAre(0, 10, 20, 30, 40, 50));
}

TEST_F(Suspended, by_hand_and_resumed_it_does_not_resume_by_itself_when_the_settings_suspend_it) {
    beginAwake();
    phone().happens(AirplaneModeSwitch{true});
    playFor(21);
    ASSERT_FALSE(monitor().enabled);
    phone().happens(AirplaneModeSwitch{false});
    playFor(10);
    ASSERT_TRUE(monitor().enabled);
    change({{"Enabled", false}});
    playFor(30);
    EXPECT_FALSE(monitor().enabled);
}

TEST_F(Suspended, by_the_settings_it_keeps_its_count_and_the_first_wait_of_its_pace) {
    begin();
    lies(ScreenDown);
    playReadings(2);
    change({{"Enabled", false}, {"Debug", true}});
    playFor(1.5); // the wait of the countdown ends
    calls.clear();
    playFor(18);
    EXPECT_THAT(secondsOf(suspended), ElementsAre(0, 6, 12)) << "1 second, and then 5";
    change({{"Enabled", true}});
    playReadings(1);
    EXPECT_TRUE(phone().radios.states().airplane) << "this was the third";
}

TEST_F(Suspended, it_still_keeps_the_phone_waking_up) {
    settings.set("Enabled", false);
    settings.set("ActiveOnSleep", true);
    begin();
    playFor(15);
    EXPECT_EQ(calls.count("CPScheduleWakeAtDateWithIdentifier"), 2U);
    change({{"ActiveOnSleep", false}});
    calls.clear();
    playFor(30);
    EXPECT_EQ(calls.count("CPScheduleWakeAtDateWithIdentifier"), 0U);
}

TEST_F(Suspended, it_ignores_the_window_and_the_charger) {
    settings.set("Enabled", false);
    settings.set("TimeLimit", true);
    settings.set("EnableOnAC", true);
    begin();
    playFor(0.5);
    monitor()._DEBUG_ = true;
    calls.clear();
    playFor(10);
    EXPECT_THAT(calls.logged(), ElementsAre(suspended));
}

TEST_F(Suspended, silently_with_debug_off) {
    settings.set("Enabled", false);
    begin();
    playFor(0.5);
    calls.clear();
    playFor(60);
    EXPECT_THAT(calls.logged(), IsEmpty());
}

} // namespace

} // namespace noctara
