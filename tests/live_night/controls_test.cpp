/// The keys of a live night.
#include "live/controls.h"
#include "tests/live_night/a_live_night.h"

#include <set>
#include <tuple>

namespace noctara {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class TheKeys : public ALiveNight {
protected:
    Controls& begin(double speed = 60) {
        ALiveNight::begin();
        return controls.emplace(night(), speed);
    }

    void press(std::string_view typed) {
        for (const char key : typed)
            controls->press(key);
    }

    void choose(const std::string& key) {
        press("s");
        for (std::size_t i = 0; i < 100 && selected().key != key; ++i)
            controls->press(keys::down);
        EXPECT_EQ(selected().key, key);
    }

    MenuItem selected() const {
        const auto& menu = controls->settings();
        return menu.items()[menu.selected()];
    }

    std::optional<Controls> controls;
};

TEST_F(TheKeys, put_the_phone_down_and_take_it_up) {
    begin();
    press("d");
    EXPECT_THAT(lastLine(), HasSubstr("The phone is laid down, screen down."));
    press("u");
    EXPECT_THAT(lastLine(), HasSubstr("The phone is laid down, screen up."));
    press("h");
    EXPECT_THAT(lastLine(), HasSubstr("The phone is taken into the hand."));
}

TEST_F(TheKeys, turn_the_charger_the_call_and_the_radios_over) {
    begin();
    for (const auto& [key, first, second] :
         {std::tuple("c", "The charger is plugged in.", "The charger is unplugged."),
          std::tuple("t", "A call comes in.", "The call is over."),
          std::tuple("a", "By hand: airplane mode on.", "By hand: airplane mode off."),
          std::tuple("w", "By hand: Wi-Fi off.", "By hand: Wi-Fi on."),
          std::tuple("b", "By hand: Bluetooth off.", "By hand: Bluetooth on.")}) {
        press(key);
        EXPECT_THAT(lastLine(), HasSubstr(first));
        press(key);
        EXPECT_THAT(lastLine(), HasSubstr(second));
    }
    press("p");
    EXPECT_THAT(lastLine(), HasSubstr("A button is pressed."));
}

TEST_F(TheKeys, play_the_night_at_their_speed) {
    begin(60);
    controls->pass(1.5);
    EXPECT_EQ(night().now(), start + 90);
    press("++");
    EXPECT_EQ(controls->speed(), 300);
    controls->pass(1);
    EXPECT_EQ(night().now(), start + 390);
    press("---");
    EXPECT_EQ(controls->speed(), 20);
}

TEST_F(TheKeys, add_up_the_parts_of_a_second) {
    begin(1);
    for (int frame = 0; frame < 10; ++frame)
        controls->pass(0.25);
    EXPECT_EQ(night().now(), start + 2);
}

TEST_F(TheKeys, leave_a_speed_between_the_steps_in_either_direction) {
    begin(100);
    press("+");
    EXPECT_EQ(controls->speed(), 120);
    begin(100);
    press("-");
    EXPECT_EQ(controls->speed(), 60);
}

TEST_F(TheKeys, know_a_fastest_and_a_slowest_speed) {
    begin(fastest);
    press("+");
    EXPECT_EQ(controls->speed(), fastest);
    begin(slowest);
    press("-");
    EXPECT_EQ(controls->speed(), slowest);
}

TEST_F(TheKeys, pause_the_night_and_let_it_go_on) {
    begin();
    press(" ");
    controls->pass(10);
    EXPECT_EQ(night().now(), start);
    press(" ");
    controls->pass(10);
    EXPECT_EQ(night().now(), start + 600);
}

TEST_F(TheKeys, go_on_by_one_reading_and_pause) {
    begin();
    press("n");
    EXPECT_TRUE(controls->isPaused());
    EXPECT_EQ(night().phone.motion.readings, 1);
    EXPECT_THAT(controls->notice(), IsEmpty());
}

TEST_F(TheKeys, say_that_there_was_no_reading) {
    scenario.settings = fullSettings({{"Enabled", false}});
    begin();
    press("n");
    EXPECT_EQ(controls->notice(), "no reading for an hour");
    press("d");
    EXPECT_THAT(controls->notice(), IsEmpty());
}

TEST_F(TheKeys, say_that_a_recording_overrides_the_posture) {
    begin();
    night().phone.motion.source = [] { return Acceleration{1, 0, 0}; };
    press("d");
    EXPECT_EQ(controls->notice(), "the accelerometer follows the recording");
}

TEST_F(TheKeys, stop_time_while_the_help_or_the_menu_is_open) {
    begin();
    for (const char* page : {"?", "s"}) {
        press(page);
        controls->pass(10);
        EXPECT_EQ(night().now(), start);
        controls->press(keys::escape);
    }
    controls->pass(10);
    EXPECT_EQ(night().now(), start + 600);
}

TEST_F(TheKeys, leave_the_night_only_from_its_own_page) {
    begin();
    press("sq?q");
    EXPECT_FALSE(controls->wantsToLeave());
    press("q");
    EXPECT_TRUE(controls->wantsToLeave());
}

TEST_F(TheKeys, play_the_rest_of_the_night) {
    scenario.end.secondsSince1970 = start + 600;
    begin();
    press("e");
    EXPECT_TRUE(night().hasEnded());
}

TEST_F(TheKeys, ignore_keys_without_a_meaning) {
    begin();
    press("xyz\x01\x7f");
    controls->press(keys::up);
    EXPECT_EQ(night().now(), start);
    EXPECT_THAT(night().actions(), IsEmpty());
}

TEST_F(TheKeys, have_one_meaning_each) {
    std::set<int> known;
    for (const auto& command : Controls::commands())
        EXPECT_TRUE(known.insert(command.key).second) << command.shownKey;
}

TEST_F(TheKeys, turn_a_switch_of_the_settings_over) {
    begin();
    choose("Vibrate");
    press(" ");
    EXPECT_EQ(selected().value, 0);
    EXPECT_THAT(lastLine(), HasSubstr("Settings: "));
    EXPECT_THAT(trace(), HasSubstr(R"("event":"settings","args":{"Vibrate":false})"));
    press(" ");
    EXPECT_EQ(selected().value, 1);
}

TEST_F(TheKeys, move_a_number_of_the_settings_within_its_range) {
    begin();
    choose("Sensitivity");
    press("+");
    EXPECT_EQ(selected().value, 6);
    for (int i = 0; i < 10; ++i)
        controls->press(keys::right);
    EXPECT_EQ(selected().value, 9);
    for (int i = 0; i < 20; ++i)
        controls->press(keys::left);
    EXPECT_EQ(selected().value, 0);
    const auto actions = night().actions().size();
    controls->press(keys::left);
    EXPECT_EQ(night().actions().size(), actions);
}

TEST_F(TheKeys, choose_the_applications_of_the_phone_too) {
    scenario.applications = {{"com.example.alarm", "Alarm"}};
    begin();
    choose("launch-app-com.example.alarm");
    EXPECT_TRUE(selected().isMissing);
    press(" ");
    EXPECT_EQ(selected().value, 1);
    EXPECT_FALSE(selected().isMissing);
}

TEST_F(TheKeys, show_the_defaults_of_a_settings_file_that_cannot_be_read) {
    begin();
    night().act(SettingsFileChange{SettingsFileFault::damaged});
    choose("StartHour");
    EXPECT_EQ(selected().value, 21);
    EXPECT_TRUE(selected().isMissing);
}

} // namespace

} // namespace noctara
