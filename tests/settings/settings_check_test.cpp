/// What is odd about a settings file.
#include "settings/settings_check.h"

#include "tests/a_night.h"

#include <cstdint>
#include <limits>

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

using enum Oddity::Kind;

std::vector<std::string> textsOf(const Dictionary& settings,
                                 const std::vector<std::string>* applications = nullptr) {
    std::vector<std::string> texts;
    for (const auto& oddity : checkSettings(settings, applications))
        texts.push_back(oddity.text);
    return texts;
}

/// The text about a file with all settings and this change. Empty if nothing is odd.
std::string oddityOf(const Dictionary& changes) {
    const auto texts = textsOf(fullSettings(changes));
    EXPECT_LE(texts.size(), 1U);
    return texts.empty() ? "" : texts[0];
}

TEST(SettingsOfThePage, are_not_odd) {
    EXPECT_THAT(checkSettings(fullSettings(), nullptr), IsEmpty());
    EXPECT_THAT(checkSettings(fullSettings({{"ScanInterval", 12},
                                            {"Sensitivity", 0},
                                            {"TimeLimit", true},
                                            {"StartHour", 0},
                                            {"StopHour", 23},
                                            {"launch-app-com.example.radio", true}}),
                              nullptr),
                IsEmpty());
}

TEST(SettingsOfThePage, may_be_integers_where_the_monitor_filled_them_in) {
    EXPECT_EQ(oddityOf({{"PhoneSwitch", 0}, {"Enabled", 1}}), "");
    EXPECT_EQ(oddityOf({{"PhoneSwitch", 0.0}, {"Sensitivity", 5.0}}), "")
        << "a trace does not distinguish 5.0 and 5";
}

TEST(AnUnknownKey, is_odd_and_may_be_a_misspelt_one) {
    EXPECT_EQ(oddityOf({{"Sensitivty", 9}}),
              "\"Sensitivty\" is no setting and has no effect; did you mean \"Sensitivity\"?");
    EXPECT_EQ(oddityOf({{"Launch-app-com.example.radio", true}}),
              "\"Launch-app-com.example.radio\" is no setting and has no effect; did you mean "
              "\"launch-app-com.example.radio\"?");
    EXPECT_EQ(oddityOf({{"Version", 2}}), "\"Version\" is no setting and has no effect.");
    EXPECT_EQ(oddityOf({{"a-b", 2}}), "\"a-b\" is no setting and has no effect.");
}

TEST(AnUnknownKey, never_reaches_the_terminal_with_control_characters) {
    EXPECT_EQ(oddityOf({{"a\x1B[1m\n", 2}}), "\"a?[1m?\" is no setting and has no effect.");
}

TEST(ASwitchInAFile, is_odd_if_it_is_neither_a_boolean_nor_0_nor_1) {
    EXPECT_EQ(oddityOf({{"TimeLimit", "on"}}),
              "TimeLimit is the text \"on\", not on or off: it counts as off.");
    EXPECT_EQ(oddityOf({{"TimeLimit", "yes"}}),
              "TimeLimit is the text \"yes\", not on or off: it counts as on.");
    EXPECT_EQ(oddityOf({{"TimeLimit", 2}}), "TimeLimit is 2, not on or off: it counts as on.");
    EXPECT_EQ(oddityOf({{"TimeLimit", 0.5}}), "TimeLimit is 0.5, not on or off: it counts as on.");
    EXPECT_EQ(oddityOf({{"TimeLimit", Date{0}}}),
              "TimeLimit is a date, not on or off: it counts as off.");
    EXPECT_EQ(oddityOf({{"TimeLimit", Data{1}}}),
              "TimeLimit is data, not on or off: it counts as off.");
    EXPECT_EQ(oddityOf({{"TimeLimit", Array{true}}}),
              "TimeLimit is an array, not on or off: it counts as off.");
    EXPECT_EQ(oddityOf({{"Enabled", Dictionary{{"Enabled", true}}}}),
              "Enabled is a dictionary, not on or off: it counts as off.");
    EXPECT_EQ(oddityOf({{"launch-app-x", "no"}}),
              "\"launch-app-x\" is the text \"no\", not on or off: it counts as off.");
}

TEST(ANumberInAFile, is_odd_if_it_is_no_whole_number) {
    EXPECT_EQ(oddityOf({{"Sensitivity", "high"}}),
              "Sensitivity is the text \"high\", not a whole number: it counts as 0.");
    EXPECT_EQ(oddityOf({{"Sensitivity", 5.9}}),
              "Sensitivity is 5.9, not a whole number: it counts as 5.");
    EXPECT_EQ(oddityOf({{"StopHour", true}}),
              "StopHour is on, not a whole number: it counts as 1.");
    EXPECT_EQ(oddityOf({{"Sensitivity", "12"}}),
              "Sensitivity is the text \"12\", not a whole number: it counts as 12, and the phone "
              "may be tilted by 0.97° at most.");
}

TEST(ANumberInAFile, is_odd_beyond_32_bits) {
    EXPECT_EQ(oddityOf({{"Sensitivity", std::int64_t{4294967301}}}),
              "Sensitivity is 4294967301, not 0 to 9: it counts as 5.");
}

TEST(ASensitivityOutOfRange, is_told_by_the_tilt_that_it_allows) {
    EXPECT_EQ(oddityOf({{"Sensitivity", 10}}),
              "Sensitivity is 10, not 0 to 9: the phone may be tilted by 1.1° at most.");
    EXPECT_EQ(oddityOf({{"Sensitivity", -1}}),
              "Sensitivity is -1, not 0 to 9: the phone lies at any tilt.");
    for (const std::int32_t never : {-2, std::numeric_limits<std::int32_t>::max()})
        EXPECT_EQ(oddityOf({{"Sensitivity", never}}),
                  "Sensitivity is " + std::to_string(never) +
                      ", not 0 to 9: no tilt counts as lying, and the phone never goes quiet.");
}

TEST(AScanIntervalOutOfRange, is_told_by_the_readings_that_it_causes) {
    EXPECT_EQ(oddityOf({{"ScanInterval", 24}}),
              "ScanInterval is 24, not 1 to 12: Noctara takes a reading every 120 s.");
    EXPECT_EQ(oddityOf({{"ScanInterval", 0}}),
              "ScanInterval is 0, not 1 to 12: it counts as 1 when the home screen starts, but if "
              "it is set later, Noctara reads without a pause.");
    for (const std::int32_t negative : {-1, 429496730})
        EXPECT_EQ(oddityOf({{"ScanInterval", negative}}),
                  "ScanInterval is " + std::to_string(negative) +
                      ", not 1 to 12: it counts as 1 when the home screen starts, but if it is "
                      "set later, Noctara stops reading for years.");
    EXPECT_EQ(oddityOf({{"ScanInterval", 858993460}}),
              "ScanInterval is 858993460, not 1 to 12: it counts as 1 when the home screen starts, "
              "but if it is set later, Noctara takes a reading every 4 s.");
}

struct Window {
    std::int32_t start;
    std::int32_t stop;
    const char* meaning;
};

TEST(AnHourOutOfRange, is_told_by_the_hours_that_it_allows) {
    for (const auto& [start, stop, meaning] : {
             Window{24, 7,
                    "StartHour is 24, not 0 to 23: with TimeLimit on, the phone goes "
                    "quiet only from midnight to 7:00."},
             Window{24, 0,
                    "StartHour is 24, not 0 to 23: with TimeLimit on, the phone never "
                    "goes quiet."},
             Window{-3, 7,
                    "StartHour is -3, not 0 to 23: with TimeLimit on, the phone goes "
                    "quiet only from midnight to 7:00."},
             Window{21, -1,
                    "StopHour is -1, not 0 to 23: with TimeLimit on, the phone goes "
                    "quiet only from 21:00 to midnight."},
             Window{21, 24,
                    "StopHour is 24, not 0 to 23: with TimeLimit on, the phone goes "
                    "quiet only from 21:00 to midnight."},
             Window{0, 24,
                    "StopHour is 24, not 0 to 23: with TimeLimit on, the phone goes "
                    "quiet at any hour."},
         })
        EXPECT_EQ(oddityOf({{"StartHour", start}, {"StopHour", stop}}), meaning);
}

/// The monitor at each half-hour of a day.
class HoursOutOfRange : public AMonitor {
protected:
    /// In the words of checkSettings.
    std::string windowOfTheMonitor(std::int32_t start, std::int32_t stop) {
        std::vector<int> hours;
        for (int hour = 0; hour < 24; ++hour) {
            phone().clock.setWall({at(2014, 3, 1, hour, 30, 0)});
            own->startTime = start;
            own->stopTime = stop;
            if (own->isInTimeRange())
                hours.push_back(hour);
        }
        if (hours.empty())
            return "the phone never goes quiet.";
        if (hours.size() == 24)
            return "the phone goes quiet at any hour.";
        EXPECT_EQ(hours.back() - hours.front() + 1, static_cast<int>(hours.size()));
        const auto word = [](int hour) {
            return hour % 24 == 0 ? "midnight" : std::to_string(hour) + ":00";
        };
        return "the phone goes quiet only from " + word(hours.front()) + " to " +
               word(hours.back() + 1) + '.';
    }
};

TEST_F(HoursOutOfRange, are_told_as_the_monitor_counts_them) {
    make();
    for (const std::int32_t start : {-48, -24, -3, 0, 7, 22, 23, 24, 30, 60})
        for (const std::int32_t stop : {-50, -1, 0, 1, 7, 23, 24, 25, 60})
            for (const auto& text :
                 textsOf(fullSettings({{"StartHour", start}, {"StopHour", stop}})))
                EXPECT_THAT(text, EndsWith(windowOfTheMonitor(start, stop)))
                    << start << " to " << stop;
}

TEST(TwoHoursOutOfRange, are_both_told) {
    const std::string never = ", not 0 to 23: with TimeLimit on, the phone never goes quiet.";
    const std::string always =
        ", not 0 to 23: with TimeLimit on, the phone goes quiet at any hour.";
    EXPECT_THAT(textsOf(fullSettings({{"StartHour", 30}, {"StopHour", -2}})),
                ElementsAre("StartHour is 30" + never, "StopHour is -2" + never));
    EXPECT_THAT(textsOf(fullSettings({{"StartHour", -1}, {"StopHour", -2}})),
                ElementsAre("StartHour is -1" + always, "StopHour is -2" + always));
    EXPECT_THAT(textsOf(fullSettings({{"StartHour", 40}, {"StopHour", 30}})),
                ElementsAre("StartHour is 40" + always, "StopHour is 30" + always));
    EXPECT_THAT(textsOf(fullSettings({{"StartHour", 24}, {"StopHour", 30}})),
                ElementsAre("StartHour is 24" + never, "StopHour is 30" + never));
}

TEST(AnEmptyWindow, is_odd_only_with_the_time_limit) {
    EXPECT_EQ(oddityOf({{"TimeLimit", true}, {"StartHour", 7}}),
              "StartHour and StopHour are both 7: with TimeLimit on, the phone never goes "
              "quiet.");
    EXPECT_EQ(oddityOf({{"TimeLimit", false}, {"StartHour", 7}}), "");
}

TEST(AMissingKey, is_odd_even_if_its_default_counts) {
    Dictionary settings = fullSettings();
    settings.remove("StartHour");
    EXPECT_THAT(
        checkSettings(settings, nullptr),
        ElementsAre(Oddity{missingKey, "StartHour is missing: it counts as 21, its default."}));
}

TEST(AMissingKey, may_count_as_something_else_than_its_default) {
    Dictionary settings = fullSettings();
    settings.remove("Enabled");
    settings.remove("Debug");
    EXPECT_THAT(
        textsOf(settings),
        ElementsAre("Enabled is missing: it counts as off when the home screen starts, and as on, "
                    "its default, from the next change of the settings on.",
                    "Debug is missing: it counts as on when the home screen starts, and as off, "
                    "its default, from the next change of the settings on."));
}

TEST(AMissingKey, is_not_odd_if_nothing_reads_it) {
    Dictionary settings = fullSettings();
    settings.remove("Stop");
    EXPECT_THAT(checkSettings(settings, nullptr), IsEmpty());
    EXPECT_EQ(checkSettings({}, nullptr).size(), 20U);
}

TEST(AnApplicationToLaunch, is_odd_if_the_phone_is_known_not_to_have_it) {
    const Dictionary settings = fullSettings(
        {{"launch-app-com.example.radio", true}, {"launch-app-com.example.game", false}});
    const std::vector<std::string> none;
    const std::vector<std::string> radio{"com.example.radio"};
    EXPECT_THAT(textsOf(settings, nullptr), IsEmpty());
    EXPECT_THAT(textsOf(settings, &radio), IsEmpty());
    EXPECT_THAT(textsOf(settings, &none),
                ElementsAre("\"launch-app-com.example.radio\" is on, but the phone does not have "
                            "this application."));
}

TEST(AnApplicationToLaunch, needs_an_identifier) {
    EXPECT_EQ(oddityOf({{"launch-app-", true}}),
              "\"launch-app-\" names no application and has no effect.");
}

} // namespace

} // namespace noctara
