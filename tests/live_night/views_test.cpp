/// The screens of a live night.
#include "live/views.h"

#include "live/lane_view.h"
#include "live/text_cells.h"
#include "tests/live_night/a_live_night.h"

namespace noctara {

namespace {

using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Le;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr Size usual{80, 24};

std::string textOf(const Line& line) {
    std::string text;
    for (const auto& span : line)
        text += span.text;
    return text;
}

std::vector<std::string> textOf(const Screen& screen) {
    std::vector<std::string> lines;
    for (const auto& line : screen)
        lines.push_back(textOf(line));
    return lines;
}

/// The strip of a lane in a night of 100 seconds, in ten cells.
std::string stripOf(LaneName name, std::vector<Moment> past, double now) {
    Lane lane;
    lane.past = std::move(past);
    return textOf(laneStrip(name, lane, {0, now, 100, 10}));
}

TEST(TheStripOfALane, reaches_until_now) {
    EXPECT_EQ(stripOf(LaneName::wifi, {{0, Mark::on}}, 0), "━");
    EXPECT_EQ(stripOf(LaneName::wifi, {{0, Mark::on}}, 35), "━━━━");
    EXPECT_EQ(stripOf(LaneName::wifi, {{0, Mark::on}}, 100), "━━━━━━━━━━");
}

TEST(TheStripOfALane, changes_where_the_mark_does) {
    EXPECT_EQ(stripOf(LaneName::wifi, {{0, Mark::on}, {20, Mark::off}, {55, Mark::on}}, 80),
              "━━···━━━━");
}

TEST(TheStripOfALane, shows_a_moment_in_its_own_cell_only) {
    EXPECT_EQ(
        stripOf(LaneName::countdown,
                {{21, Mark::firstReading}, {29, Mark::secondReading}, {50, Mark::firstReading}},
                80),
        "  2  1   ");
}

TEST(TheStripOfALane, shows_the_sound_rather_than_the_vibration_at_the_same_time) {
    EXPECT_EQ(stripOf(LaneName::cues, {{20, Mark::sound}, {20, Mark::vibration}}, 30), "  ♪ ");
}

TEST(TheStripOfALane, shows_a_call_that_is_shorter_than_a_cell) {
    EXPECT_EQ(stripOf(LaneName::call, {{0, Mark::off}, {22, Mark::on}, {25, Mark::off}}, 40),
              "··━··");
}

TEST(TheStripOfALane, has_times_above_it) {
    const TimeZone zone("Europe/Paris");
    const double start = Scenario().start.secondsSince1970; // 23:30 in Paris.
    EXPECT_EQ(timeLabels(zone, {start, start, start + 4 * 3600, 40}),
              "     00:00     01:00     02:00     03:00");
    EXPECT_THAT(timeLabels(zone, {start, start, start + 600, 40}), HasSubstr("23:32"));
    EXPECT_THAT(timeLabels(zone, {start, start, start + 7 * 86400, 50}), HasSubstr("2.3."));
}

class TheNightScreen : public ALiveNight {
protected:
    std::vector<std::string> screen(Size size = usual, const PlayState& play = {600, false, ""}) {
        return textOf(nightScreen(night().picture(), play, size));
    }

    std::string line(const std::string& beginning, Size size = usual) {
        for (const auto& found : screen(size))
            if (found.starts_with(" " + beginning))
                return found;
        return "no line " + beginning;
    }
};

TEST_F(TheNightScreen, has_a_lane_for_each_thing_that_is_watched) {
    begin();
    playFor(60);
    for (const char* lane :
         {"Posture       in the hand 143.1°  ~", "Countdown     none", "State         watching ",
          "Airplane mode off                 ·", "Wi-Fi         on                  ━",
          "Bluetooth     on", "Cellular data on", "Data rate     up to 3G            3",
          "Location      on", "Call          none", "Charger       unplugged",
          "Idle sleep    never", "Wake-up       at 22:4", "Cues          none",
          "Applications  none"})
        EXPECT_THAT(screen(), Contains(StartsWith(" " + std::string(lane))));
}

TEST_F(TheNightScreen, shows_the_clock_and_the_speed) {
    begin();
    EXPECT_THAT(screen().front(), AllOf(StartsWith(" Noctara  Saturday, 1 March 2014  22:30:00"),
                                        EndsWith(" 600× ")));
    EXPECT_THAT(screen(usual, {0.5, true, ""}).front(), EndsWith(" 0.5×  paused "));
}

TEST_F(TheNightScreen, shows_the_latest_lines_of_the_story) {
    begin();
    night().act(PostureChange{ScreenDown});
    playFor(60);
    EXPECT_THAT(screen()[22], StartsWith("           The phone is"));
    EXPECT_THAT(screen()[21], HasSubstr("switches airplane mode on"));
}

TEST_F(TheNightScreen, shows_a_notice) {
    begin();
    EXPECT_THAT(screen(usual, {1, true, "no reading for an hour"})[17],
                EndsWith("─ no reading for an hour ─"));
}

TEST_F(TheNightScreen, fits_every_size) {
    scenario.applications = {{"com.example.目", std::string(200, 'x'), true, true, true}};
    begin();
    night().act(SettingsChange{{{"launch-app-" + std::string(200, 'y'), true}}});
    night().act(PostureChange{ScreenDown});
    playFor(2000);
    for (const Size size : {usual, smallestSize, Size{61, 21}, Size{75, 22}, Size{200, 60},
                            Size{59, 24}, Size{80, 19}, Size{1, 1}}) {
        const auto lines = screen(size);
        EXPECT_THAT(lines, SizeIs(Le(static_cast<std::size_t>(size.height))));
        for (const auto& text : lines)
            EXPECT_LE(cellsOf(text), size.width) << text;
    }
}

TEST_F(TheNightScreen, is_shortened_in_a_narrow_terminal) {
    begin();
    EXPECT_THAT(screen(smallestSize).front(), StartsWith(" Saturday, 1 March 2014  22:30:00"));
    EXPECT_THAT(line("Cell data", smallestSize), StartsWith(" Cell data on"));
    EXPECT_THAT(screen(smallestSize).back(), AllOf(HasSubstr("? help"), HasSubstr("q quit")));
}

TEST_F(TheNightScreen, says_that_a_terminal_is_too_small) {
    begin();
    EXPECT_THAT(screen({59, 24}), Contains("Too small: 60 by 20 at least. q quits."));
    EXPECT_THAT(screen({80, 19}), SizeIs(1));
}

TEST_F(TheNightScreen, holds_no_control_characters_of_the_scenario) {
    scenario.applications = {{"com.example.a", "A\x1b[2J", true, true, true}};
    begin();
    night().act(SettingsChange{{{"launch-app-\x1b]0;x\a", true}}});
    for (const auto& text : screen())
        EXPECT_THAT(text, Not(testing::ContainsRegex("[\x01-\x1f\x7f]")));
    EXPECT_THAT(line("Applications"), HasSubstr("A?[2J"));
    EXPECT_THAT(screen(), Contains(HasSubstr("launch-app-?]0;x?")));
}

class TheSettingsScreen : public ALiveNight {
protected:
    std::vector<std::string> screen(std::size_t selected, Size size = usual) {
        return textOf(settingsScreen(SettingsMenu(night()).items(), selected, size));
    }
};

TEST_F(TheSettingsScreen, shows_each_setting_with_its_value) {
    scenario.settings = Dictionary{{"Enabled", true}, {"Sensitivity", 7}};
    begin();
    EXPECT_THAT(screen(0), Contains(testing::MatchesRegex(" Enabled +on +")));
    EXPECT_THAT(screen(0), Contains(testing::MatchesRegex(" Sensitivity +7 +")));
    EXPECT_THAT(screen(0)[22], HasSubstr("Noctara watches the phone"));
}

TEST_F(TheSettingsScreen, scrolls_to_the_selected_setting) {
    scenario.applications = {{"com.example.\x1b", "Last"}};
    begin();
    const auto last = SettingsMenu(night()).items().size() - 1;
    EXPECT_THAT(screen(0, smallestSize), Not(Contains(HasSubstr("launch-app-"))));
    EXPECT_THAT(screen(last, smallestSize), Contains(HasSubstr("launch-app-com.example.?")));
    for (const auto& text : screen(last, smallestSize))
        EXPECT_LE(cellsOf(text), smallestSize.width) << text;
}

TEST(TheHelpScreen, lists_every_key_at_every_size) {
    for (const Size size : {usual, smallestSize}) {
        const auto lines = textOf(helpScreen(size));
        EXPECT_THAT(lines, SizeIs(Le(static_cast<std::size_t>(size.height))));
        for (const auto& text : lines)
            EXPECT_LE(cellsOf(text), size.width) << text;
        for (const auto& command : Controls::commands())
            EXPECT_THAT(lines, Contains(HasSubstr(command.meaning)));
    }
}

} // namespace

} // namespace noctara
