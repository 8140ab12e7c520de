/// The main loop's decisions: three readings in a row change the state, with sounds and vibration;
/// the time window and the charger can prevent readings.
#include "tests/a_night.h"

namespace noctara {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const std::vector<std::string> cuesAndSwitches{"AudioServicesPlaySystemSound",
                                               "setIsInAirplaneMode:"};
const std::string airplaneModeCue = "AudioServicesPlaySystemSound [1]";
const std::string offCue = "AudioServicesPlaySystemSound [2]";
const std::string vibration = "AudioServicesPlaySystemSound [4095]";
const std::string intoSleep = "setIsInAirplaneMode: [true]";
const std::string outOfSleep = "setIsInAirplaneMode: [false]";

const std::string inside = "Noctara Using time interval : monitoring is ENABLED because we are "
                           "INSIDE the interval";
const std::string outside = "Noctara Using time interval : monitoring is DISABLED because we are "
                            "OUTSIDE the interval";
const std::string outsideButAsleep =
    "Noctara Using time interval : we are OUTSIDE interval, but monitoring is ENABLED because we "
    "are still in airplanemode";

class TheMainLoop : public ANight {
protected:
    /// The first reading is done, in the hand, and nothing of it recorded.
    void beginInHand(bool debug = false) {
        settings.set("Debug", debug);
        begin();
        playReadings(1);
        calls.clear();
    }

    bool airplane() { return phone().radios.states().airplane; }

    /// The seconds between the starts of the readings that were recorded.
    std::vector<double> distances() const {
        std::vector<double> found;
        double last = 0;
        for (const auto& line : calls.lines)
            if (line.operation == "startAccelerometerUpdates") {
                if (last != 0)
                    found.push_back(line.at - last);
                last = line.at;
            }
        return found;
    }
};

TEST_F(TheMainLoop, raises_a_shorter_scan_interval_to_5_seconds_at_the_start) {
    // The file counts in steps of 5 seconds; the last of these gives 4 in 32 bits.
    for (const std::int32_t interval : {0, -1, -7, 858993460}) {
        settings.set("ScanInterval", interval);
        begin();
        playFor(0.5);
        EXPECT_EQ(monitor().sleepTime, 5) << interval;
    }
}

TEST_F(TheMainLoop, raises_the_scan_interval_of_a_file_without_one_to_5_seconds) {
    settings.remove("ScanInterval");
    begin();
    playFor(0.5);
    EXPECT_EQ(monitor().sleepTime, 5);
}

TEST_F(TheMainLoop, keeps_a_scan_interval_of_5_seconds_or_more) {
    for (const std::int32_t interval : {1, 2, 12}) {
        settings.set("ScanInterval", interval);
        calls.clear();
        begin();
        playReadings(3);
        EXPECT_EQ(monitor().sleepTime, interval * 5);
        EXPECT_THAT(distances(), ElementsAre(1 + interval * 5, 1 + interval * 5));
    }
}

TEST_F(TheMainLoop, takes_a_shorter_scan_interval_from_a_later_reload_as_it_is) {
    beginInHand();
    change({{"ScanInterval", 0}});
    EXPECT_EQ(monitor().sleepTime, 0);
    playReadings(3);
    EXPECT_EQ(monitor().sleepTime, 0);
    ASSERT_GE(distances().size(), 2U);
    EXPECT_THAT(distances(), testing::Each(1)) << "a reading takes a second by itself";
}

TEST_F(TheMainLoop, goes_to_sleep_with_the_third_reading_in_a_row) {
    beginInHand();
    lies(ScreenDown);
    playReadings(1);
    EXPECT_THAT(calls.of(cuesAndSwitches), ElementsAre(airplaneModeCue));
    EXPECT_TRUE(monitor().switchingToAirplane);
    EXPECT_FALSE(monitor().lastStateWasPlane);
    playReadings(1);
    EXPECT_THAT(calls.of(cuesAndSwitches), ElementsAre(airplaneModeCue)) << "nothing is added";
    EXPECT_TRUE(monitor().switchingToAirplane);
    playReadings(1);
    EXPECT_THAT(calls.of(cuesAndSwitches), ElementsAre(airplaneModeCue, vibration, intoSleep));
    EXPECT_FALSE(monitor().switchingToAirplane);
    EXPECT_TRUE(monitor().lastStateWasPlane);
    EXPECT_TRUE(airplane());
    EXPECT_THAT(distances(), ElementsAre(2, 2)) << "a second of waiting, and one of reading";
}

TEST_F(TheMainLoop, goes_back_to_its_scan_interval_once_the_phone_sleeps) {
    beginInHand();
    fallAsleep();
    calls.clear();
    playReadings(3);
    EXPECT_THAT(distances(), ElementsAre(6, 6));
    EXPECT_THAT(calls.of(cuesAndSwitches), IsEmpty());
}

TEST_F(TheMainLoop, abandons_a_countdown_at_one_other_reading_but_still_refuses_idle_sleep) {
    beginInHand();
    lies(ScreenDown);
    playReadings(2);
    lies(InHand);
    playReadings(1);
    EXPECT_FALSE(airplane());
    EXPECT_TRUE(monitor().switchingToAirplane);

    calls.clear();
    playReadings(2);
    EXPECT_THAT(distances(), ElementsAre(6)) << "no countdown any more";
    lies(ScreenDown);
    playReadings(2);
    EXPECT_FALSE(airplane()) << "it counts from the start again";
    EXPECT_THAT(calls.of(cuesAndSwitches), ElementsAre(airplaneModeCue));
    playReadings(1);
    EXPECT_TRUE(airplane());
    EXPECT_FALSE(monitor().switchingToAirplane);
}

TEST_F(TheMainLoop, wakes_with_the_third_other_reading_in_a_row) {
    beginInHand();
    fallAsleep();
    lies(InHand);
    calls.clear();
    playReadings(2);
    EXPECT_THAT(calls.of(cuesAndSwitches), IsEmpty());
    EXPECT_FALSE(monitor().switchingToAirplane) << "a countdown to waking is none to sleep";
    playReadings(1);
    EXPECT_THAT(calls.of(cuesAndSwitches), ElementsAre(offCue, vibration, outOfSleep));
    EXPECT_FALSE(monitor().lastStateWasPlane);
    EXPECT_FALSE(airplane());
    EXPECT_THAT(distances(), ElementsAre(2, 2));
}

TEST_F(TheMainLoop, counts_to_waking_from_the_start_after_a_reading_in_the_sleep_position) {
    beginInHand();
    fallAsleep();
    lies(InHand);
    playReadings(1);
    lies(ScreenDown);
    playReadings(1);
    lies(InHand);
    playReadings(2);
    EXPECT_TRUE(airplane());
    playReadings(1);
    EXPECT_FALSE(airplane());
}

TEST_F(TheMainLoop, wakes_even_after_two_other_readings_were_in_vain) {
    beginInHand();
    fallAsleep();
    lies(InHand);
    playReadings(2);
    lies(ScreenDown);
    playReadings(1);
    lies(InHand);
    playReadings(2);
    EXPECT_TRUE(airplane());
    playReadings(1);
    EXPECT_FALSE(airplane());
}

TEST_F(TheMainLoop, without_sound_only_vibrates_and_never_refuses_idle_sleep) {
    settings.set("PlaySound", false);
    beginInHand();
    lies(ScreenDown);
    playReadings(2);
    EXPECT_FALSE(monitor().switchingToAirplane);
    playReadings(1);
    lies(InHand);
    playReadings(3);
    EXPECT_THAT(calls.of(cuesAndSwitches),
                ElementsAre(vibration, intoSleep, vibration, outOfSleep));
}

TEST_F(TheMainLoop, without_vibration_only_plays_its_sounds) {
    settings.set("Vibrate", false);
    beginInHand();
    fallAsleep();
    lies(InHand);
    playReadings(3);
    EXPECT_THAT(calls.of(cuesAndSwitches),
                ElementsAre(airplaneModeCue, intoSleep, offCue, outOfSleep));
}

TEST_F(TheMainLoop, hands_the_sound_of_a_missing_file_to_the_player_as_it_is) {
    scenario.phone.sounds = false;
    begin();
    playReadings(1);
    EXPECT_EQ(monitor().airplaneModeMP3, 0U);
    EXPECT_EQ(monitor().offMP3, 0U);
    fallAsleep();
    lies(InHand);
    playReadings(3);
    EXPECT_THAT(calls.of(cuesAndSwitches),
                ElementsAre("AudioServicesPlaySystemSound [0]", vibration, intoSleep,
                            "AudioServicesPlaySystemSound [0]", vibration, outOfSleep));
}

TEST_F(TheMainLoop, reports_no_failure_of_the_phone_and_goes_on) {
    scenario.phone.telephonyManager = false;
    scenario.phone.telephonyServer = false;
    scenario.phone.sounds = false;
    scenario.phone.posture = NamedPosture::None;
    settings.set("ActiveOnSleep", true);
    beginInHand();
    phone().happens(DiskChange{DiskState::full});
    playReadings(2);
    fallAsleep();
    EXPECT_TRUE(monitor().lastStateWasPlane);
    lies(None);
    playReadings(3);
    EXPECT_FALSE(monitor().lastStateWasPlane);
    EXPECT_THAT(calls.of({"setIsInAirplaneMode:"}), IsEmpty());
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(TheMainLoop, writes_nothing_with_debug_off) {
    settings.set("TimeLimit", true);
    beginInHand();
    fallAsleep();
    change({{"StartHour", 3}, {"StopHour", 4}});
    calls.clear(); // of the reload's own lines
    playReadings(2);
    lies(InHand);
    playReadings(3);
    playFor(60);
    phone().happens(MonitorStop{});
    playFor(60);
    EXPECT_EQ(calls.count("AudioServicesDisposeSystemSoundID"), 2U);
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(TheMainLoop, inside_the_window_says_so_and_reads) {
    settings.set("TimeLimit", true);
    beginInHand(true);
    playReadings(1);
    EXPECT_TRUE(calls.hasLogged(inside));
    EXPECT_FALSE(calls.hasLogged(outside));
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 1U);
}

TEST_F(TheMainLoop, without_a_window_does_not_ask_for_the_time) {
    settings.set("StartHour", 3);
    settings.set("StopHour", 4);
    beginInHand(true);
    playReadings(1);
    EXPECT_FALSE(calls.hasLogged(inside));
    EXPECT_FALSE(calls.hasLogged(outside));
}

TEST_F(TheMainLoop, outside_the_window_takes_no_reading_but_keeps_running_at_its_interval) {
    settings.set("TimeLimit", true);
    settings.set("StartHour", 3);
    settings.set("StopHour", 4);
    scenario.phone.posture = NamedPosture::ScreenDown;
    settings.set("Debug", true);
    begin();
    playFor(0.5);
    calls.clear();
    playFor(15);
    EXPECT_EQ(phone().motion.readings, 0);
    std::vector<double> seconds;
    for (const auto& line : calls.lines)
        if (line.text == "NSLog [\"Noctara : Running...\"]")
            seconds.push_back(line.at - scenario.start.secondsSince1970);
    EXPECT_THAT(seconds, ElementsAre(5, 10, 15));
    EXPECT_TRUE(calls.hasLogged(outside));
    EXPECT_FALSE(calls.hasLogged(outsideButAsleep));
    EXPECT_THAT(calls.logged(), Not(Contains("Noctara : Mode avion")));
}

TEST_F(TheMainLoop, outside_the_window_still_reads_in_the_sleep_state_so_that_it_can_wake) {
    beginInHand(true);
    fallAsleep();
    change({{"TimeLimit", true}, {"StartHour", 3}, {"StopHour", 4}});
    lies(InHand);
    calls.clear();
    playReadings(3);
    EXPECT_FALSE(airplane());
    const auto lines = calls.logged();
    const auto found = std::find(lines.begin(), lines.end(), outside);
    ASSERT_NE(found, lines.end());
    EXPECT_EQ(found[1], outsideButAsleep);

    calls.clear();
    playFor(60);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0U) << "not once it is awake";
    EXPECT_FALSE(calls.hasLogged(outsideButAsleep));
}

TEST_F(TheMainLoop, keeps_a_countdown_over_a_closed_window_but_not_its_pace) {
    beginInHand();
    lies(ScreenDown);
    playReadings(2);
    change({{"TimeLimit", true}, {"StartHour", 3}, {"StopHour", 4}, {"Debug", true}});
    playFor(1.5); // the wait of the countdown ends, and the first closed cycle begins
    calls.clear();
    playFor(10);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0U);
    EXPECT_THAT(calls.logged(),
                ElementsAre(testing::StartsWith("Now="), testing::StartsWith("Now="), outside,
                            "Noctara : Running...", testing::StartsWith("Now="),
                            testing::StartsWith("Now="), outside, "Noctara : Running..."));
    change({{"TimeLimit", false}});
    playReadings(1);
    EXPECT_TRUE(airplane()) << "this was the third";
}

TEST_F(TheMainLoop, on_battery_takes_no_reading_when_it_is_to_detect_on_the_charger_only) {
    settings.set("EnableOnAC", true);
    settings.set("Debug", true);
    begin();
    playFor(30);
    EXPECT_EQ(phone().motion.readings, 0);
    EXPECT_TRUE(calls.hasLogged("Noctara : Running..."));
    phone().happens(ChargerChange{true});
    lies(ScreenDown);
    playReadings(3);
    EXPECT_TRUE(airplane());
}

TEST_F(TheMainLoop, unplugged_in_the_sleep_state_reads_on_until_it_has_woken) {
    settings.set("EnableOnAC", true);
    scenario.phone.charger = true;
    beginInHand();
    fallAsleep();
    phone().happens(ChargerChange{false});
    EXPECT_TRUE(monitor().continueToMonitorAfterAC);
    playReadings(5);
    EXPECT_TRUE(airplane());
    EXPECT_TRUE(monitor().continueToMonitorAfterAC);
    lies(InHand);
    playReadings(3);
    EXPECT_FALSE(airplane());
    EXPECT_FALSE(monitor().continueToMonitorAfterAC);

    calls.clear();
    lies(ScreenDown);
    playFor(120);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0U);
}

TEST_F(TheMainLoop, asleep_on_battery_does_not_read_when_the_charger_becomes_a_condition) {
    beginInHand();
    fallAsleep();
    change({{"EnableOnAC", true}});
    calls.clear();
    playFor(60);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0U);
}

TEST_F(TheMainLoop, outside_the_window_in_the_sleep_state_still_asks_for_the_charger) {
    beginInHand();
    fallAsleep();
    change({{"TimeLimit", true}, {"StartHour", 3}, {"StopHour", 4}, {"EnableOnAC", true}});
    calls.clear();
    playFor(60);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0U);
}

TEST_F(TheMainLoop, asks_the_window_before_the_charger) {
    settings.set("TimeLimit", true);
    settings.set("EnableOnAC", true);
    settings.set("Debug", true);
    begin();
    playFor(10);
    EXPECT_TRUE(calls.hasLogged(inside));
    EXPECT_EQ(phone().motion.readings, 0);
}

} // namespace

} // namespace noctara
