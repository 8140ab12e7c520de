/// A night played bit by bit: where it stands, what the user's actions do, and its lanes.
#include "tests/live_night/a_live_night.h"
#include "tests/phones/replay/a_told_night.h"

#include <utility>
#include <vector>

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

/// A mark and when it was set, in seconds after the start.
std::vector<std::pair<double, Mark>> pastOf(const Lane& lane, double start) {
    std::vector<std::pair<double, Mark>> past;
    for (const auto& moment : lane.past)
        past.emplace_back(moment.at - start, moment.mark);
    return past;
}

TEST_F(ALiveNight, stands_at_its_start_until_it_is_played) {
    begin();
    EXPECT_EQ(night().now(), start);
    night().playTo(start + 90.9);
    EXPECT_EQ(night().now(), start + 90);
    night().playTo(start + 60);
    EXPECT_EQ(night().now(), start + 90);
}

TEST_F(ALiveNight, ends_at_the_end_of_the_scenario) {
    scenario.end.secondsSince1970 = start + 600;
    begin();
    EXPECT_FALSE(night().hasEnded());
    night().playTo(start + 100000);
    EXPECT_TRUE(night().hasEnded());
    EXPECT_EQ(night().now(), start + 600);
}

TEST_F(ALiveNight, played_bit_by_bit_has_the_trace_of_a_night_that_is_played_at_once) {
    scenario.phone.idleSleep = 60;
    scenario.end.secondsSince1970 = start + 7200;
    scenario.events = {{{start}, CallChange{CallState::incoming}},
                       {{start + 30}, CallChange{CallState::none}},
                       {{start + 1000}, PostureChange{ScreenDown}},
                       {{start + 5000}, PostureChange{InHand}},
                       {{start + 5400}, ButtonPress{}}};
    begin();
    for (int second = 0; !night().hasEnded(); second += 7)
        night().playTo(start + second + 0.5);
    night().finish();
    const std::string liveTrace = trace();
    endPhone();
    EXPECT_EQ(liveTrace, played(scenario).trace);
}

TEST_F(ALiveNight, lets_the_user_put_the_phone_down_and_pick_it_up) {
    begin();
    playFor(100);
    night().act(PostureChange{ScreenDown});
    EXPECT_THAT(lastLine(), EndsWith("22:31:40  The phone is laid down, screen down."));
    playFor(20);
    EXPECT_EQ(value(LaneName::state), "quiet");
    EXPECT_EQ(value(LaneName::airplane), "on");
    night().act(PostureChange{InHand});
    playFor(20);
    EXPECT_EQ(value(LaneName::state), "watching");
    EXPECT_EQ(value(LaneName::airplane), "off");
}

TEST_F(ALiveNight, takes_no_action_at_its_end) {
    scenario.end.secondsSince1970 = start + 60;
    begin();
    playFor(60);
    night().act(ChargerChange{true});
    EXPECT_FALSE(night().isOnCharger());
    EXPECT_THAT(night().actions(), IsEmpty());
}

TEST_F(ALiveNight, plays_on_by_one_reading) {
    begin();
    EXPECT_TRUE(night().playReading());
    EXPECT_EQ(night().phone.motion.readings, 1);
    EXPECT_TRUE(night().playReading());
    EXPECT_EQ(night().phone.motion.readings, 2);
}

TEST_F(ALiveNight, plays_on_by_an_hour_if_there_are_no_readings) {
    scenario.settings = fullSettings({{"Enabled", false}});
    begin();
    EXPECT_FALSE(night().playReading());
    EXPECT_EQ(night().now(), start + 3600);
}

TEST_F(ALiveNight, shows_the_reason_for_which_there_are_no_readings) {
    scenario.settings = fullSettings({{"EnableOnAC", true}});
    begin();
    playFor(60);
    EXPECT_EQ(value(LaneName::state), "not on the charger");
    night().act(SettingsChange{{{"Enabled", false}}});
    playFor(60);
    EXPECT_EQ(value(LaneName::state), "monitoring is off");
    night().act(SettingsChange{
        {{"Enabled", true}, {"EnableOnAC", false}, {"TimeLimit", true}, {"StartHour", 3}}});
    playFor(60);
    EXPECT_EQ(value(LaneName::state), "outside the hours");
}

TEST_F(ALiveNight, has_no_monitor_in_another_process) {
    scenario.phone.bundle = "com.example.other";
    begin();
    playFor(60);
    EXPECT_EQ(value(LaneName::state), "no monitor");
}

TEST_F(ALiveNight, shows_the_tilt_from_the_wanted_posture) {
    begin();
    EXPECT_EQ(value(LaneName::posture), "in the hand 143.1°");
    night().act(PostureChange{ScreenUp});
    EXPECT_EQ(value(LaneName::posture), "screen up 180.0°");
    night().act(SettingsChange{{{"ScreenDown", false}}});
    EXPECT_EQ(value(LaneName::posture), "screen up 0.0°");
    night().act(PostureChange{None});
    EXPECT_EQ(value(LaneName::posture), "no sample");
    night().act(PostureChange{Acceleration{1, 0, 0}});
    EXPECT_EQ(value(LaneName::posture), "tilted 90.0°");
}

TEST_F(ALiveNight, remembers_the_readings_of_a_countdown) {
    begin();
    night().act(PostureChange{ScreenDown});
    playFor(3);
    EXPECT_EQ(value(LaneName::countdown), "reading 1 of 3");
    playFor(60);
    EXPECT_EQ(value(LaneName::countdown), "none");
    EXPECT_THAT(pastOf(lane(LaneName::countdown), start),
                ElementsAre(std::pair(1.0, Mark::firstReading), std::pair(3.0, Mark::secondReading),
                            std::pair(5.0, Mark::thirdReading)));
    EXPECT_THAT(pastOf(lane(LaneName::airplane), start),
                ElementsAre(std::pair(0.0, Mark::off), std::pair(5.0, Mark::on)));
    EXPECT_THAT(pastOf(lane(LaneName::cues), start),
                ElementsAre(std::pair(1.0, Mark::sound), std::pair(5.0, Mark::vibration)));
}

TEST_F(ALiveNight, remembers_idle_sleeps_and_the_wake_ups_that_ended_them) {
    scenario.phone.idleSleep = 60;
    begin();
    playFor(90);
    EXPECT_EQ(value(LaneName::idleSleep), "in idle sleep");
    EXPECT_EQ(value(LaneName::wakeUp), "at 22:45:55");
    playFor(900);
    EXPECT_THAT(pastOf(lane(LaneName::wakeUp), start), ElementsAre(std::pair(955.0, Mark::wakeUp)));
}

TEST_F(ALiveNight, remembers_the_applications_that_were_launched_and_quit) {
    scenario.applications = {{"com.example.alarm", "Alarm"}};
    scenario.settings = fullSettings({{"launch-app-com.example.alarm", true}});
    begin();
    EXPECT_EQ(value(LaneName::applications), "home screen");
    night().act(PostureChange{ScreenDown});
    playFor(60);
    EXPECT_EQ(value(LaneName::applications), "Alarm");
    night().act(PostureChange{InHand});
    playFor(60);
    ASSERT_EQ(lane(LaneName::applications).past.size(), 2U);
    EXPECT_EQ(lane(LaneName::applications).past.back().mark, Mark::quitApplication);
}

/// The actions of the user, one after the other, at all kinds of moments.
TEST_F(ALiveNight, gives_the_same_trace_as_a_scenario_with_the_users_actions) {
    scenario.phone.idleSleep = 60;
    scenario.end.secondsSince1970 = start + 7200;
    scenario.applications = {{"com.example.alarm", "Alarm"}};
    scenario.events = {{{start}, ButtonPress{}}, {{start + 1000}, ChargerChange{true}}};
    begin();
    night().act(WifiSwitch{false});
    playFor(60);
    night().act(ButtonPress{}); // At the moment at which the phone goes to idle sleep.
    night().act(PostureChange{ScreenDown});
    playFor(300);
    night().act(SettingsChange{{{"launch-app-com.example.alarm", true}, {"Debug", true}}});
    night().playReading();
    night().act(CallChange{CallState::incoming});
    playFor(20);
    night().act(CallChange{CallState::none});
    night().playTo(start + 1000);
    night().act(ChargerChange{false});
    night().playReading();
    night().act(PostureChange{InHand});
    playFor(2000);
    night().act(AirplaneModeSwitch{true});
    night().act(BluetoothSwitch{true});
    night().playTo(start + 7200);
    night().finish();
    const std::string liveTrace = trace();
    ASSERT_EQ(night().actions().size(), 10U);

    const Scenario asPlayed = night().asPlayed();
    endPhone();
    EXPECT_EQ(liveTrace, played(asPlayed).trace);
}

} // namespace

} // namespace noctara
