/// Values of settings as a user writes them on the command line.
#include "settings/setting_value.h"

#include "input/bad_input.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace noctara {

namespace {

using testing::HasSubstr;

PropertyList valueOf(std::string_view key, std::string_view text) {
    return parseSettingValue("--set", key, text);
}

std::string refusalOf(std::string_view key, std::string_view text) {
    try {
        refuseOutOfRange("--set", key, valueOf(key, text));
    } catch (const BadInput& refusal) {
        return refusal.what();
    }
    return "";
}

TEST(AWrittenSetting, is_a_boolean_if_it_is_a_switch) {
    for (const char* on : {"on", "true", "yes", "1", "On", "TRUE"})
        EXPECT_EQ(valueOf("TimeLimit", on), PropertyList(true)) << on;
    for (const char* off : {"off", "false", "no", "0", "Off", "NO"})
        EXPECT_EQ(valueOf("TimeLimit", off), PropertyList(false)) << off;
    EXPECT_EQ(valueOf("launch-app-com.example.radio", "on"), PropertyList(true));
}

TEST(AWrittenSetting, is_an_integer_if_it_is_a_number) {
    EXPECT_EQ(valueOf("StartHour", "22"), PropertyList(22));
    EXPECT_EQ(valueOf("StopHour", "08"), PropertyList(8));
}

TEST(AWrittenSetting, may_be_a_number_that_the_settings_page_could_not_write) {
    EXPECT_EQ(valueOf("StartHour", "24"), PropertyList(24));
    EXPECT_EQ(valueOf("Sensitivity", "-1"), PropertyList(-1));
}

TEST(AWrittenSetting, is_refused_out_of_range_only_where_the_caller_asks) {
    EXPECT_EQ(refusalOf("StartHour", "24"), "--set: StartHour is 24; accepted: 0 to 23");
    EXPECT_EQ(refusalOf("ScanInterval", "0"), "--set: ScanInterval is 0; accepted: 1 to 12");
    EXPECT_EQ(refusalOf("Sensitivity", "-1"), "--set: Sensitivity is -1; accepted: 0 to 9");
    for (const char* within : {"0", "23"})
        EXPECT_EQ(refusalOf("StopHour", within), "");
}

TEST(AWrittenSetting, of_the_wrong_kind_is_refused_with_what_is_accepted) {
    EXPECT_EQ(refusalOf("TimeLimit", "maybe"), "--set: TimeLimit is \"maybe\"; accepted: on, off");
    EXPECT_EQ(refusalOf("TimeLimit", "o"), "--set: TimeLimit is \"o\"; accepted: on, off");
    EXPECT_EQ(refusalOf("launch-app-x", "2"),
              "--set: \"launch-app-x\" is \"2\"; accepted: on, off");
    for (const char* odd : {"", "high", "5 ", "5.5", "0x5", "99999999999999999999", "on"})
        EXPECT_EQ(refusalOf("Sensitivity", odd), "--set: Sensitivity is \"" + std::string(odd) +
                                                     "\"; accepted: a whole number, 0 to 9");
}

TEST(AWrittenSetting, of_an_unknown_key_is_refused_with_the_key_that_is_meant) {
    EXPECT_EQ(refusalOf("Sensitivty", "5"),
              "--set: unknown setting \"Sensitivty\"; did you mean \"Sensitivity\"?");
    EXPECT_EQ(refusalOf("timelimit", "on"),
              "--set: unknown setting \"timelimit\"; did you mean \"TimeLimit\"?");
}

TEST(AWrittenSetting, of_an_unknown_key_is_refused_with_all_keys_if_none_is_near) {
    const std::string refusal = refusalOf("Volume", "5");
    EXPECT_THAT(refusal, HasSubstr("unknown setting \"Volume\"; accepted: Enabled, TimeLimit, "));
    EXPECT_THAT(refusal, HasSubstr(", launch-app-IDENTIFIER"));
}

TEST(AWrittenSetting, of_an_application_needs_an_identifier) {
    for (const char* key : {"launch-app-", "launch-app-a\nb", "launch-app-\xFF"})
        EXPECT_THAT(refusalOf(key, "on"), HasSubstr("\" names no application; write ")) << key;
}

TEST(AWrittenSetting, never_reaches_the_terminal_with_control_characters) {
    EXPECT_THAT(refusalOf("Sens\x1B[1m", "5"), HasSubstr("\"Sens?[1m\""));
    EXPECT_THAT(refusalOf("Sensitivity", "\x1B[1m"), HasSubstr("\"?[1m\""));
}

} // namespace

} // namespace noctara
