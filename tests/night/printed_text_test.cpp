/// Control characters of a scenario do not reach the terminal.
#include "command/night_command.h"
#include "input/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>

namespace noctara {
namespace {

using testing::HasSubstr;

std::string printedNight(const std::string& scenario) {
    const TemporaryFolder folder;
    NightOptions options;
    options.scenario = folder.path / "night.toml";
    options.log = true;
    std::ofstream(*options.scenario) << scenario;
    std::ostringstream out, complaints;
    playNight(options, out, complaints);
    return out.str() + complaints.str();
}

TEST(AStory, shows_control_characters_of_identifiers_texts_and_log_lines_as_escape_sequences) {
    const std::string story = printedNight(R"(hours = 1
[settings]
Enabled = true
Debug = true
ScanInterval = 1
"launch-app-red\u001b[31m\u009b" = true

[[application]]
identifier = "red\u001b[31m\u009b"

[[event]]
at = 22:31:00
posture = "screen-down"

[[event]]
at = 22:40:00
settings = { "a\nb\u202e" = "x\u0007" }
)");
    EXPECT_THAT(story, HasSubstr("launches red\\x1b[31m\\u009b"));
    EXPECT_THAT(story, HasSubstr("a\\nb\\u202e = \"x\\x07\""));
    const auto isControl = [](char c) { return c != '\n' && c >= 0 && c < ' '; };
    EXPECT_EQ(std::count_if(story.begin(), story.end(), isControl), 0);
    for (const char* text : {"\xC2\x9B", "\xE2\x80\xAE"})
        EXPECT_EQ(story.find(text), std::string::npos);
}

} // namespace
} // namespace noctara
