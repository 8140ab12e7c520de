/// TOML on which the library would crash, or whose result would be undefined.
#include "tests/night/a_scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace noctara {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(ACharacterThatIsNotAscii, is_refused_outside_strings_and_comments) {
    const std::string why =
        "this is not TOML: a character that is not ASCII; put the key or the text in quotes";
    EXPECT_EQ(refusal("hours = 1\n\xCF\xBE = 1"), "night.toml:2:1: " + why);
    EXPECT_EQ(refusal("caf\xC3\xA9 = 1"), "night.toml:1:4: " + why);
    EXPECT_EQ(refusal("hours = 1 \xC3\xA9"), "night.toml:1:11: " + why);
    EXPECT_EQ(refusal("hours = \xE3\x80\x81"), "night.toml:1:9: " + why);
    EXPECT_EQ(refusal("settings = { \"\xC3\xA9\" = 1, \xC3\xA9 = 2 }"), "night.toml:1:23: " + why);
    EXPECT_EQ(refusal("hours = 1 # \xC3\xA9\n\xEF\xBB\xBE"), "night.toml:2:1: " + why);
}

TEST(ACharacterThatIsNotAscii, is_text_in_strings_and_comments) {
    for (const char* text :
         {"# \xCF\xBE", "hours = 1 # \xC3\xA9", "[settings]\n\"\xCF\xBE\" = '\xCF\xBE'",
          "settings.a = \"\\\"\xC3\xA9\"", "settings.a = 'C:\\' # '\xC3\xA9",
          "settings.a = \"\"\"\n\"\xC3\xA9\"\\\"\"\"\"",
          "settings.a = \"\"\"\xC3\xA9\"\"\"\"\"\nhours = 1", "settings.a = '''\n'\xC3\xA9\\'''''",
          "settings.a = \"\"\"a\\\n  b \xC3\xA9\"\"\"",
          "settings.a = [\"\", '', \"#\xC3\xA9\"] # \"", "\xEF\xBB\xBFhours = 1"})
        EXPECT_EQ(refusal(text), "") << text;
}

TEST(ACharacterThatIsNotAscii, is_refused_after_a_line_that_goes_on) {
    EXPECT_EQ(refusal("settings.a = \"\"\"b\\\n  \xC3\xA9\"\"\""),
              "night.toml:2:3: the text goes on with a character that is not ASCII after a "
              "backslash at the end of a line; write it before the backslash");
}

TEST(ADateWithAT, needs_a_time) {
    EXPECT_EQ(refusal("start = 2014-03-01TA"),
              "night.toml:1:20: this is not TOML: no time after the T; write times as 22:30:00 and "
              "local date-times as 2014-03-01T22:30:00");
    EXPECT_THAT(refusal("start = 2014-03-01t:30"), HasSubstr("no time after the T"));
    EXPECT_THAT(refusal("start = 2014-03-01T"), StartsWith("night.toml:1:"));
    EXPECT_EQ(refusal("start = 2014-03-01T22:30:00 # 2014-03-01TA"), "");
    EXPECT_EQ(refusal("start = 2014-03-01 22:30:00\nsettings.a = '2014-03-01TA'"), "");
}

TEST(AScenario, with_a_nul_or_an_open_string_is_refused) {
    using namespace std::string_literals;
    for (const std::string& text :
         {"\0"s, "hours\0 = 1"s, "hours = 1\0"s, "settings.a = \"\0\""s, "# \0"s,
          "settings.a = \"a"s, "settings.a = \"a\n\xC3\xA9\""s, "settings.a = '''a"s,
          "settings.a = \"\"\"a\\"s, "settings.a = \"\\"s}) {
        EXPECT_THAT(refusal(text), StartsWith("night.toml:1:")) << text;
        EXPECT_EQ(refusal(text).find('\n'), std::string::npos) << text;
    }
}

TEST(AScenario, may_have_dots_in_strings_and_comments) {
    const std::string dots(300, '.');
    EXPECT_EQ(refusal("# " + dots + "\nsettings.a = '" + dots + "'"), "");
}

TEST(AScenario, with_a_line_of_a_megabyte_is_read_or_refused) {
    const std::string text(1'000'000, 'x');
    EXPECT_EQ(refusal("settings.a = '" + text + "'"), "");
    EXPECT_THAT(refusal("hours = " + text), StartsWith("night.toml:1:9: "));
    EXPECT_THAT(refusal("hours = " + std::string(1'000'000, '1')), StartsWith("night.toml:1:"));
}

} // namespace
} // namespace noctara
