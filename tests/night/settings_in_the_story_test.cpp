/// What the story says about the settings file.
#include "night/scenario_file.h"
#include "tests/full_settings.h"
#include "tests/phones/replay/a_told_night.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace noctara {

namespace {

using testing::HasSubstr;
using testing::Not;

/// A short night in which the settings are changed once.
class TheSettingsInTheStory : public testing::Test {
protected:
    TheSettingsInTheStory() {
        scenario.end = {scenario.start.secondsSince1970 + 300};
        scenario.settings = fullSettings();
    }

    void changeTo(const Dictionary& changed) {
        scenario.events.push_back(
            {{scenario.start.secondsSince1970 + 60}, SettingsChange{changed}});
    }

    /// The same from the trace of the night.
    std::string story() {
        const ToldNight night = played(scenario);
        EXPECT_EQ(replayed(scenario, night.trace), night.story);
        return night.story;
    }

    Scenario scenario;
};

TEST_F(TheSettingsInTheStory, name_the_applications_to_launch) {
    scenario.settings = fullSettings({{"launch-app-com.example.radio", true},
                                      {"launch-app-com.example.game", false},
                                      {"launch-app-com.example.clock\x1B[1m", 1}});
    EXPECT_THAT(story(), HasSubstr("; when quiet: airplane mode; applications to launch: "
                                   "com.example.radio, com.example.clock\\x1b[1m.\n"));
}

TEST_F(TheSettingsInTheStory, are_not_odd_if_the_settings_page_wrote_them) {
    EXPECT_THAT(story(), Not(HasSubstr("Odd: ")));
}

TEST_F(TheSettingsInTheStory, are_followed_by_what_is_odd) {
    scenario.settings = fullSettings({{"ScreenDown", "on"}, {"Sensitivty", 9}});
    EXPECT_THAT(
        story(),
        HasSubstr("when quiet: airplane mode.\n"
                  "          Odd: ScreenDown is the text \"on\", not on or off: it counts as off.\n"
                  "          Odd: \"Sensitivty\" is no setting and has no effect; did you mean "
                  "\"Sensitivity\"?\n"));
}

TEST_F(TheSettingsInTheStory, are_odd_if_a_change_made_them_so) {
    changeTo({{"TimeLimit", true}, {"StopHour", 21}});
    EXPECT_THAT(story(), HasSubstr("Odd: StartHour and StopHour are both 21: with TimeLimit on, "
                                   "the phone never goes quiet.\n"));
}

TEST_F(TheSettingsInTheStory, lack_keys_in_one_line_only) {
    scenario.settings = Dictionary{{"Enabled", true}};
    const std::string told = story();
    EXPECT_THAT(told, HasSubstr("The settings lack ScanInterval, ScreenDown, "));
    EXPECT_THAT(told, Not(HasSubstr("is missing")));
}

TEST_F(TheSettingsInTheStory, count_as_what_the_monitor_has_if_a_key_is_missing) {
    scenario.settings = fullSettings({{"TimeLimit", true}, {"StartHour", 20}, {"StopHour", 21}});
    scenario.events.push_back(
        {{scenario.start.secondsSince1970 + 60}, SettingsRemoval{{"StartHour"}}});
    const std::string told = story();
    EXPECT_THAT(told, HasSubstr("The settings lack StartHour"));
    EXPECT_THAT(told, Not(HasSubstr("Odd: "))) << "the default would be 21, too";
}

TEST_F(TheSettingsInTheStory, do_not_have_an_application_that_the_phone_lacks) {
    scenario.settings = fullSettings({{"launch-app-com.example.radio", true}});
    EXPECT_THAT(story(), Not(HasSubstr("Odd: "))) << "the scenario lists no applications";
    scenario.applications.push_back({"com.example.clock", "Clock"});
    EXPECT_THAT(story(), HasSubstr("Odd: \"launch-app-com.example.radio\" is on, but the phone "
                                   "does not have this application.\n"));
}

TEST_F(TheSettingsInTheStory, are_not_judged_if_the_file_cannot_be_read) {
    scenario.settings = fullSettings({{"launch-app-com.example.radio", true}, {"Version", 1}});
    scenario.events.push_back(
        {{scenario.start.secondsSince1970 + 60}, SettingsFileChange{SettingsFileFault::damaged}});
    changeTo({});
    const std::string told = story();
    const std::string later = told.substr(told.find("The settings file cannot be read"));
    EXPECT_THAT(later, HasSubstr("when quiet: airplane mode.\n"));
    EXPECT_THAT(later, Not(HasSubstr("Odd: ")));
}

} // namespace

} // namespace noctara
