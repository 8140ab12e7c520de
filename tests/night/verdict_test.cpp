/// The verdict on nights that went well and on nights that did not, and the advice in it.
#include "command/night_player.h"
#include "night/verdict.h"
#include "tests/full_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace noctara {

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using enum NamedPosture;

constexpr double aMinute = 60.0;
constexpr double anHour = 3600.0;

/// A night from 22:30 to 8:00 UTC, in which the phone is laid down at 23:30 and picked up at 6:50.
class TheVerdict : public testing::Test {
protected:
    TheVerdict() { scenario.settings = fullSettings(); }

    /// Seconds since 22:30.
    void at(double seconds, Event event) {
        scenario.events.push_back({{scenario.start.secondsSince1970 + seconds}, std::move(event)});
    }

    void set(const char* key, const PropertyList& value) { scenario.settings->set(key, value); }

    void liesAllNight(const Posture& posture) {
        at(anHour, PostureChange{posture});
        at(8 * anHour + 20 * aMinute, PostureChange{InHand});
    }

    /// The verdict without the postures of its own.
    Verdict verdict() {
        input.scenario = scenario;
        night = findingsOf(input);
        return verdictOn(scenario, *night, retryOf(input));
    }

    std::string text() { return verdict().text; }

    static Posture tilted(double degrees, double side = 1) {
        const double angle = degrees / 57.29577951308232;
        return Acceleration{std::sin(angle), 0, side * std::cos(angle)};
    }

    Scenario scenario;
    NightInput input;
    std::unique_ptr<NightFindings> night;
};

TEST_F(TheVerdict, is_quiet_when_everything_came_back) {
    liesAllNight(ScreenDown);
    const Verdict all = verdict();
    EXPECT_EQ(all.text, "Quiet for 7 h 20 min, everything came back.");
    EXPECT_EQ(all.kind, Verdict::Kind::quiet);
    EXPECT_TRUE(all.advice.tried.empty());
}

TEST_F(TheVerdict, is_quiet_when_the_night_ends_before_the_phone_is_picked_up) {
    at(anHour, PostureChange{ScreenDown});
    EXPECT_EQ(text(), "Quiet for 8 h 29 min, and still quiet at the end.");
}

TEST_F(TheVerdict, names_the_side_that_the_settings_want) {
    liesAllNight(ScreenUp);
    EXPECT_EQ(text(), "Never quiet: the phone lay still with the screen up; the settings want it "
                      "down. ScreenDown off would have worked from 23:30:05.");
}

TEST_F(TheVerdict, compares_the_tilt_with_the_sensitivity) {
    liesAllNight(tilted(3));
    EXPECT_EQ(text(), "Never quiet: it lay 3.0° off; Sensitivity 5 allows 2.1°. Sensitivity 3 "
                      "would have worked from 23:30:05.");
}

TEST_F(TheVerdict, advises_the_highest_sensitivity_that_works) {
    liesAllNight(tilted(12));
    EXPECT_THAT(text(), HasSubstr("Sensitivity 0 would have worked"));
}

TEST_F(TheVerdict, changes_several_settings_only_when_no_single_one_is_enough) {
    liesAllNight(tilted(3, -1));
    EXPECT_EQ(text(), "Never quiet: the phone lay still with the screen up; the settings want it "
                      "down, and flatter: it lay 3.0° off; Sensitivity 5 allows 2.1°. ScreenDown "
                      "off with Sensitivity 3 would have worked from 23:30:05.");
}

TEST_F(TheVerdict, names_a_sensitivity_that_allows_no_tilt) {
    set("Sensitivity", -5);
    liesAllNight(ScreenDown);
    EXPECT_EQ(text(), "Never quiet: it lay 0.0° off; Sensitivity -5 allows no tilt. Sensitivity 9 "
                      "would have worked from 23:30:05.");
}

TEST_F(TheVerdict, tells_that_the_phone_was_not_laid_down) {
    liesAllNight(InPocket);
    EXPECT_EQ(text(), "Never quiet: the phone was never laid down with the screen down (90.0° to "
                      "143.1° off).");
}

TEST_F(TheVerdict, tells_that_the_phone_moved) {
    scenario.phone.posture = Acceleration{0, 0, 1.5};
    at(anHour, PostureChange{Moving});
    EXPECT_EQ(text(), "Never quiet: the phone never lay still.");
}

TEST_F(TheVerdict, tells_of_a_sensor_that_reads_too_much) {
    scenario.phone.posture = Acceleration{0, 0, 1.2};
    EXPECT_EQ(text(), "Never quiet: the accelerometer reads 1.20 g, and only 0.9 to 1.1 g count "
                      "as still.");
}

TEST_F(TheVerdict, tells_that_there_is_no_accelerometer) {
    scenario.phone.posture = None;
    EXPECT_EQ(text(), "Never quiet: the accelerometer delivered nothing.");
}

TEST_F(TheVerdict, tells_that_device_motion_never_counts) {
    scenario.phone.deviceMotion = true;
    liesAllNight(ScreenDown);
    EXPECT_EQ(text(),
              "Never quiet: the phone delivers device motion, which never counts as lying.");
}

TEST_F(TheVerdict, tells_that_the_library_is_in_another_process) {
    scenario.phone.bundle = "com.apple.Maps";
    liesAllNight(ScreenDown);
    EXPECT_EQ(text(), "Never quiet: the library is loaded into com.apple.Maps, not into "
                      "com.apple.springboard.");
}

TEST_F(TheVerdict, advises_an_hour_before_it_advises_no_window) {
    set("TimeLimit", true);
    set("StartHour", 12);
    set("StopHour", 14);
    liesAllNight(ScreenDown);
    EXPECT_EQ(text(), "Never quiet: it was not between 12:00 and 14:00 (TimeLimit). StartHour 23 "
                      "would have worked from 23:30:04.");
}

TEST_F(TheVerdict, names_an_empty_window) {
    set("TimeLimit", true);
    set("StopHour", 21);
    liesAllNight(ScreenDown);
    EXPECT_THAT(text(), StartsWith("Never quiet: the window from 21:00 to 21:00 is empty "));
}

TEST_F(TheVerdict, names_the_charger) {
    set("EnableOnAC", true);
    liesAllNight(ScreenDown);
    EXPECT_EQ(text(), "Never quiet: the phone was not on the charger, and the settings want it "
                      "there (EnableOnAC). EnableOnAC off would have worked from 23:30:05.");
}

TEST_F(TheVerdict, tells_that_monitoring_is_off) {
    set("Enabled", false);
    liesAllNight(ScreenDown);
    EXPECT_EQ(text(), "Never quiet: monitoring is switched off (Enabled). Enabled on would have "
                      "worked from 23:30:05.");
}

TEST_F(TheVerdict, tells_that_the_monitor_was_stopped) {
    at(30 * aMinute, MonitorStop{});
    liesAllNight(ScreenDown);
    EXPECT_EQ(text(), "Never quiet: the monitor was told to stop at 23:00:00.");
}

TEST_F(TheVerdict, tells_of_idle_sleep_without_wake_ups) {
    set("ActiveOnSleep", false);
    scenario.phone.idleSleep = 60;
    liesAllNight(ScreenDown);
    EXPECT_THAT(text(), StartsWith("Never quiet: the phone was in idle sleep, in which no readings "
                                   "are taken. ActiveOnSleep on would have worked from "));
}

TEST_F(TheVerdict, counts_the_countdowns_that_a_movement_broke) {
    for (int i = 0; i < 6; ++i) {
        at(anHour + i * 64, PostureChange{ScreenDown});
        at(anHour + i * 64 + 4, PostureChange{Moving});
    }
    const Verdict broken = verdict();
    EXPECT_EQ(broken.reason, Obstacle::none);
    EXPECT_THAT(broken.text, StartsWith("Never quiet: never three readings in a row; movements "
                                        "broke 6 countdowns. Played again with other values of "
                                        "Sensitivity: none would have helped."));
}

/// A bed that tilts the phone a little more and a little less than the Sensitivity allows.
TEST_F(TheVerdict, advises_a_sensitivity_that_holds_a_phone_on_a_soft_bed) {
    at(anHour, PostureChange{ScreenDown});
    for (int i = 0; i < 10; ++i) {
        at(2 * anHour + i * 20 * aMinute, PostureChange{tilted(2.6)});
        at(2 * anHour + i * 20 * aMinute + 10 * aMinute, PostureChange{tilted(1.5)});
    }
    at(8 * anHour + 20 * aMinute, PostureChange{InHand});
    const Verdict soft = verdict();
    EXPECT_EQ(soft.kind, Verdict::Kind::backAndForth);
    EXPECT_THAT(soft.text,
                StartsWith("Back and forth: quiet for 5 h 40 min in all, but back 10 times "
                           "without being picked up (2.6° off; Sensitivity 5 allows 2.1°). At "
                           "last everything came back. Sensitivity 3 would have kept it quiet "
                           "for 7 h 20 min, from 23:30:05."));
}

TEST_F(TheVerdict, does_not_count_a_phone_that_was_picked_up_as_back_and_forth) {
    at(anHour, PostureChange{ScreenDown});
    at(2 * anHour, PostureChange{InHand});
    at(2 * anHour + aMinute, PostureChange{ScreenDown});
    at(8 * anHour, PostureChange{InHand});
    EXPECT_EQ(verdict().kind, Verdict::Kind::quiet);
}

TEST_F(TheVerdict, does_not_count_a_phone_that_is_quiet_again_after_more_than_half_an_hour) {
    at(anHour, PostureChange{ScreenDown});
    at(2 * anHour, PostureChange{tilted(2.6)});
    at(2 * anHour + 31 * aMinute, PostureChange{ScreenDown});
    at(8 * anHour, PostureChange{InHand});
    EXPECT_EQ(verdict().kind, Verdict::Kind::quiet);
}

TEST_F(TheVerdict, tells_what_is_not_back_before_anything_else) {
    liesAllNight(ScreenDown);
    set("AirplaneSwitch", false);
    set("WifiSwitch", true);
    at(2 * anHour, SettingsChange{{{"WifiSwitch", false}}});
    const Verdict off = verdict();
    EXPECT_EQ(off.kind, Verdict::Kind::notBack);
    EXPECT_EQ(off.text, "Not back: Wi-Fi is off since 06:50:09, and was on before. With "
                        "AirplaneSwitch on everything would have come back at 06:50:09.");
}

TEST_F(TheVerdict, tells_why_a_phone_that_was_picked_up_is_still_quiet) {
    liesAllNight(ScreenDown);
    at(3 * anHour, SettingsChange{{{"Enabled", false}}});
    std::stable_sort(scenario.events.begin(), scenario.events.end(),
                     [](const auto& one, const auto& other) { return one.at < other.at; });
    const Verdict still = verdict();
    EXPECT_EQ(still.reason, Obstacle::switchedOff);
    EXPECT_EQ(still.text, "Not back: still quiet at the end, although it was picked up at "
                          "06:50:00; no readings since 01:30:09, because monitoring is switched "
                          "off (Enabled). With Enabled on everything would have come back at "
                          "06:50:09.");
}

TEST_F(TheVerdict, names_the_setting_and_not_the_idle_sleep_of_a_phone_that_takes_no_readings) {
    scenario.phone.idleSleep = 60;
    set("Enabled", false);
    liesAllNight(ScreenDown);
    EXPECT_THAT(text(), StartsWith("Never quiet: monitoring is switched off (Enabled). Enabled on "
                                   "would have worked from "));
}

TEST_F(TheVerdict, tries_no_setting_that_is_set_already) {
    scenario.phone.idleSleep = 60;
    scenario.phone.deviceMotion = true;
    liesAllNight(ScreenDown);
    const Verdict both = verdict();
    EXPECT_THAT(both.advice.tried, testing::IsEmpty());
    EXPECT_THAT(both.text, Not(HasSubstr("Played again")));
}

TEST_F(TheVerdict, tells_of_a_phone_in_the_hand_before_an_hour_outside_the_window) {
    set("TimeLimit", true);
    scenario.phone.posture = Acceleration{0, 0, 1.5};
    at(anHour, PostureChange{Moving});
    EXPECT_THAT(text(), StartsWith("Never quiet: the phone never lay still; for 59 min 54 s, it "
                                   "was not between 21:00 and 7:00 (TimeLimit)."));
}

TEST_F(TheVerdict, takes_no_posture_of_the_scenario_for_one_of_the_recording) {
    Recording lying;
    lying.samples = {{0, {0, 0, 1}}, {1, {0, 0, 1}}};
    input.motion = std::make_shared<const Recording>(lying);
    input.motionBegins = scenario.start;
    liesAllNight(ScreenDown);
    EXPECT_EQ(text(), "Quiet for 9 h 29 min, and still quiet at the end.");
    set("ActiveOnSleep", false);
    scenario.phone.idleSleep = 600;
    EXPECT_THAT(text(), StartsWith("Quiet for "));
}

TEST_F(TheVerdict, gives_no_advice_without_a_way_to_play_the_night_again) {
    liesAllNight(ScreenUp);
    const std::string with = text();
    const Verdict without = verdictOn(scenario, *night, {});
    EXPECT_THAT(with, StartsWith(without.text + ' '));
    EXPECT_TRUE(without.advice.tried.empty());
}

TEST_F(TheVerdict, keeps_the_advised_setting_when_an_event_changes_it) {
    liesAllNight(ScreenDown);
    set("Enabled", false);
    at(0, SettingsChange{{{"Enabled", false}, {"Debug", true}}});
    std::stable_sort(scenario.events.begin(), scenario.events.end(),
                     [](const auto& one, const auto& other) { return one.at < other.at; });
    EXPECT_THAT(text(), HasSubstr("Enabled on would have worked from 23:30:05."));
}

TEST_F(TheVerdict, weighs_hours_before_moments) {
    set("TimeLimit", true);
    set("StartHour", 23);
    set("StopHour", 0);
    liesAllNight(ScreenUp);
    const Verdict both = verdict();
    ASSERT_GE(both.hindrances.size(), 2U);
    EXPECT_EQ(both.hindrances.front().obstacle, Obstacle::outsideWindow);
    EXPECT_THAT(both.text, HasSubstr("ScreenDown off would have worked from 23:30:0"));
}

} // namespace

} // namespace noctara
