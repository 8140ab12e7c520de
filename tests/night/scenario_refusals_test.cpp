/// Refused scenarios: one line with place, reason and remedy.
#include "tests/night/a_scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace noctara {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(AnEvent, has_exactly_one_action_and_a_time) {
    EXPECT_THAT(refusal("\n  [[event]]\nat = 23:00:00"),
                StartsWith("night.toml:2:3: [[event]] has no action; accepted: posture, charger"));
    EXPECT_THAT(refusal("[[event]]\nstop = true"),
                StartsWith("night.toml:1:1: [[event]] has no at; "));
    EXPECT_EQ(refusal("[[event]]\nwifi = true\nat = 23:00:00\nbutton = true"),
              "night.toml:4:10: the event has both wifi and button; give each event one action");
}

TEST(AnUnknownKey, is_refused_at_the_key_with_the_nearest_one_and_all) {
    EXPECT_EQ(refusal("# night\n[radios]\n  wfi = true"),
              "night.toml:3:3: unknown key \"wfi\" in [radios]; did you mean \"wifi\"? accepted: "
              "airplane, wifi, wifi_powered, bluetooth, bluetooth_connected, cellular_data, "
              "max_rate, location, push, tethering, call");
    EXPECT_EQ(refusal("zebra = 1"),
              "night.toml:1:1: unknown key \"zebra\" in the scenario; accepted: start, end, hours, "
              "timezone, phone, radios, settings, application, wake, event");
    EXPECT_THAT(refusal("[phone]\nMachine = 1"), HasSubstr("did you mean \"machine\"?"));
    EXPECT_THAT(refusal("[[application]]\nident = 1"), HasSubstr(" in [[application]]; "));
    EXPECT_THAT(refusal("[[wake]]\nscheduled_by = 1"), HasSubstr("did you mean \"scheduledby\"?"));
    EXPECT_THAT(refusal("[[event]]\nat = 23:00:00\ncharge = true"),
                StartsWith("night.toml:3:1: unknown key \"charge\" in [[event]]; did you mean "
                           "\"charger\"? accepted: at, posture, "));
}

TEST(AnUnknownKey, that_comes_first_in_the_file_is_named) {
    EXPECT_THAT(refusal("zzz = 1\naaa = 2"), StartsWith("night.toml:1:1: unknown key \"zzz\""));
}

TEST(AWrongValue, is_refused_at_the_value_with_what_is_accepted) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"[radios]\nwifi = \"on\"", "2:8: wifi is a string; write true or false"},
        {"[radios]\nmax_rate = \"3g\"",
         "2:12: max_rate is \"3g\"; did you mean \"3G\"? accepted: 2G, 3G, 4G"},
        {"[radios]\nmax_rate = 3", "2:12: max_rate is an integer; accepted: 2G, 3G, 4G"},
        {"[radios]\ncall = \"busy\"",
         "2:8: call is \"busy\"; accepted: none, in-call, outgoing, incoming, active"},
        {"[phone]\nmachine = \"\"", "2:11: machine is empty; write at least one character"},
        {"[phone]\nbundle = [1]", "2:10: bundle is an array; write a string"},
        {"[phone]\nidiom = -1", "2:9: idiom is -1; write an integer from 0 to 2147483647"},
        {"[phone]\nidiom = 2147483648",
         "2:9: idiom is 2147483648; write an integer from 0 to 2147483647"},
        {"[phone]\nidiom = 0.0",
         "2:9: idiom is a real number; write an integer from 0 to 2147483647"},
        {"[phone]\nidle_sleep = 604801",
         "2:14: idle_sleep is 604801; write an integer from 0 to 604800"},
        {"[phone]\ncorefoundation = nan", "2:18: corefoundation is not finite; write a number"},
        {"[phone]\ncapabilities = [\"wifi\", 1]",
         "2:25: an element of capabilities is an integer; write a string"},
        {"[phone]\ncapabilities = {}", "2:16: capabilities is a table; write an array of strings"},
        {"[phone]\nrates = [\"5G\"]",
         "2:10: an element of rates is \"5G\"; did you mean \"2G\"? accepted: 2G, 3G, 4G"},
        {"[phone]\nposture = [0, 1]",
         "2:11: posture has 2 elements; write the three numbers x, y and z, in g"},
        {"[phone]\nposture = [0, 1, inf]",
         "2:18: an element of posture is not finite; write a number"},
        {"[phone]\nposture = \"screen-dwn\"",
         "2:11: posture is \"screen-dwn\"; did you mean \"screen-down\"? accepted: screen-down, "
         "screen-up, in-hand, in-pocket, moving, none"},
        {"phone = 1", "1:9: [phone] is an integer; write a table"},
        {"settings = []", "1:12: [settings] is an array; write a table of settings"},
        {"[application]\nidentifier = \"a\"",
         "1:1: application is a table; write a table [[application]] for each"},
        {"wake = [1]", "1:9: [[wake]] is an integer; write a table"},
        {"[[application]]\nname = \"A\"",
         "1:1: [[application]] has no identifier; give it one, identifier is required"},
        {"[[application]]\nidentifier = \"a\"\n[[application]]\nidentifier = \"a\"",
         "4:14: there is already an application \"a\"; give each application an identifier of "
         "its own"},
        {"[[application]]\nidentifier = \"a\"\nfront = true\nrunning = false",
         "3:9: front is true, but running is false; an application in front has to run"},
        {"[[application]]\nidentifier = \"a\"\nfront = true\n"
         "[[application]]\nidentifier = \"b\"\nfront = true",
         "6:9: another application is in front already; only one is accepted"},
        {"[[wake]]\nat = 06:45:00",
         "1:1: [[wake]] has no scheduledby; give it one, scheduledby is required"},
        {"[[wake]]\nscheduledby = \"a\"", "1:1: [[wake]] has no at; give it one, at is required"},
        {"event = [{at = 23:00:00, button = false}]",
         "1:35: button is false; write true, or leave it out"},
        {"event = [{at = 23:00:00, stop = 1}]", "1:33: stop is an integer; write true"},
        {"event = [{at = 23:00:00, power_message = 4294967296}]",
         "1:42: power_message is 4294967296; write an integer from 0 to 4294967295"},
        {"event = [{at = 23:00:00, settings_file = \"gone\"}]",
         "1:42: settings_file is \"gone\"; accepted: missing, damaged"},
        {"event = [{at = 23:00:00, disk = \"\"}]", "1:33: disk is \"\"; accepted: ok, full, "
                                                   "read-only"},
        {"event = [{at = 23:00:00, remove_settings = \"a\"}]",
         "1:44: remove_settings is a string; write an array of strings"},
        {"event = [{at = 23:00:00, settings = true}]",
         "1:37: settings is a boolean; write a table of settings"},
        {"settings.a = 07:00:00",
         "1:14: a is a time without a date; write a local date-time such as 2014-03-01T22:30:00"},
        {"timezone = \"Europe/Pariss\"",
         "1:12: there is no time zone \"Europe/Pariss\"; did you mean \"Europe/Paris\"?"},
        {"timezone = \"Mars/Base\"",
         "1:12: there is no time zone \"Mars/Base\"; write an IANA name such as "
         "\"Europe/Paris\""},
        {"timezone = 1", "1:12: timezone is an integer; write a string"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(refusal(text), "night.toml:" + expected) << text;
}

TEST(ASyntaxError, has_the_same_shape_on_one_line) {
    EXPECT_THAT(refusal("[phone]\nbundle = \"a\nb\""), StartsWith("night.toml:2:"));
    EXPECT_THAT(refusal("a = 1\na = 2"), StartsWith("night.toml:2:"));
    EXPECT_THAT(refusal("\xff"), StartsWith("night.toml:1:1: "));
    for (const char* text :
         {"[phone", "a = \"\n\"", "= 1", "a = [1,\n", "\x01", "a = 2014-02-30"}) {
        EXPECT_NE(refusal(text), "") << text;
        EXPECT_EQ(refusal(text).find('\n'), std::string::npos) << text;
    }
}

TEST(AMessage, stays_on_one_line_and_short_whatever_the_file_holds) {
    const std::string message = refusal("[radios]\ncall = \"a\\nb\\u001b[31m\"");
    EXPECT_THAT(message, StartsWith("night.toml:2:8: call is \"a?b?[31m\"; "));
    const std::string longest = refusal("\"" + std::string(100'000, 'x') + "\" = 1");
    EXPECT_LT(longest.size(), 300U);
    EXPECT_THAT(longest, HasSubstr("xxx...\""));
    // Two bytes per letter: the limit is in the middle of one.
    std::string letters = "x";
    for (int i = 0; i < 40; ++i)
        letters += "é";
    EXPECT_THAT(refusal("[radios]\ncall = \"" + letters + "\""), HasSubstr("é...\""));
}

TEST(AScenario, nested_without_end_is_refused) {
    std::string dotted = "a";
    for (int i = 0; i < 100'000; ++i)
        dotted += ".a";
    EXPECT_THAT(refusal("\n[" + dotted + "]"), StartsWith("night.toml:2:403: too many dots"));
    EXPECT_THAT(refusal("settings.a = " + std::string(40, '[') + std::string(40, ']')),
                HasSubstr("settings are nested too deeply; at most 32 levels are accepted"));
    EXPECT_EQ(refusal("settings.a = " + std::string(31, '[') + std::string(31, ']')), "");
    EXPECT_NE(refusal("settings.a = " + std::string(100'000, '[')), "");
}

} // namespace
} // namespace noctara
