/// A phone that answers from a trace: it gives the story of the night, or the line at which the
/// trace differs from what the monitor does.
#include "input/bad_input.h"
#include "night/scenario_file.h"
#include "tests/phones/replay/a_told_night.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <vector>

namespace noctara {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class AReplayedNight : public testing::TestWithParam<std::string> {};

TEST_P(AReplayedNight, has_the_story_of_the_night) {
    const Scenario scenario =
        readScenario(fs::path(NOCTARA_SOURCE_DIR) / "scenarios" / (GetParam() + ".toml"));
    const ToldNight night = played(scenario);
    EXPECT_EQ(replayed(scenario, night.trace), night.story);
}

// Together these nights have everything that a trace can have: events during idle sleep, changes of
// the clocks, a settings file that cannot be read, a disk that cannot be written.
INSTANTIATE_TEST_SUITE_P(Scenarios, AReplayedNight,
                         testing::Values("airplane-mode-by-hand", "applications",
                                         "battery-and-idle-sleep", "damaged-settings",
                                         "daylight-saving", "full-disk"),
                         [](const auto& night) {
                             std::string name = night.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(ATracedSettingsFile, keeps_values_that_json_lacks) {
    const Scenario scenario =
        parseScenario("hours = 0.1\n[settings]\nDebug = true\nSensitivity = 4294967301.0\n"
                      "StartHour = inf\na = [-inf, nan, 25.0, 1e300]\n"
                      "b = [{date = 5}, {data = 'AA'}, {real = 'inf'}, {dictionary = {}}]\n",
                      "scenario");
    const ToldNight night = played(scenario);
    EXPECT_EQ(replayed(scenario, night.trace), night.story);
}

class ATrace : public testing::Test {
protected:
    ATrace() {
        scenario = parseScenario("hours = 0.1\n[phone]\nposture = \"screen-down\"\n[settings]\n"
                                 "Enabled = true\nScanInterval = 1\nScreenDown = true\n"
                                 "AirplaneSwitch = true\nPlaySound = true\nVibrate = true\n"
                                 "Sensitivity = 5\nDebug = false\n[[event]]\nat = 22:33:00\n"
                                 "charger = true\n",
                                 "scenario");
        std::istringstream text(played(scenario).trace);
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
    }

    std::string text() const {
        std::string joined;
        for (const auto& line : lines)
            joined += line + '\n';
        return joined;
    }

    /// The index of the first line that contains this, from 0.
    std::size_t lineWith(const std::string& part) const {
        const auto found = std::find_if(lines.begin(), lines.end(), [&](const auto& line) {
            return line.find(part) != line.npos;
        });
        EXPECT_NE(found, lines.end()) << part;
        return static_cast<std::size_t>(found - lines.begin());
    }

    /// The message about the line at which the trace differs; empty if none does.
    std::string parting() const {
        try {
            replayed(scenario, text());
        } catch (const TraceAndRulesPart& parted) {
            return parted.what();
        }
        return "";
    }

    std::string atLine(std::size_t index) const {
        return "the trace and the rules part at line " + std::to_string(index + 1) + ':';
    }

    Scenario scenario;
    std::vector<std::string> lines;
};

TEST_F(ATrace, that_is_whole_parts_nowhere) {
    EXPECT_EQ(parting(), "");
}

TEST_F(ATrace, with_another_argument_parts_there) {
    const auto line = lineWith("setIsInAirplaneMode:");
    lines[line].replace(lines[line].find("[true]"), 6, "[false]");
    EXPECT_THAT(parting(), HasSubstr(atLine(line)));
    EXPECT_THAT(parting(), HasSubstr("the trace has setIsInAirplaneMode: [false], and by the rules "
                                     "the main thread calls setIsInAirplaneMode: [true]"));
}

TEST_F(ATrace, that_lacks_a_call_parts_at_the_next_one) {
    const auto line = lineWith("stopAccelerometerUpdates");
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(line));
    EXPECT_THAT(parting(), HasSubstr(atLine(line)));
    EXPECT_THAT(parting(), HasSubstr("the monitor thread calls stopAccelerometerUpdates"));
}

TEST_F(ATrace, with_a_call_on_the_other_thread_parts_there) {
    const auto line = lineWith("AudioServicesPlaySystemSound");
    lines[line].replace(lines[line].find("\"main\""), 6, "\"monitor\"");
    EXPECT_THAT(parting(), HasSubstr(atLine(line)));
}

TEST_F(ATrace, with_a_call_that_nothing_leads_to_parts_there) {
    const auto line = lineWith("\"event\":\"charger\"");
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(line),
                 R"({"t":1393713180,"thread":"main","op":"isOnAC","result":true})");
    EXPECT_THAT(parting(), HasSubstr(atLine(line)));
    EXPECT_THAT(parting(), HasSubstr("by the rules the main thread has nothing to do"));
}

TEST_F(ATrace, with_another_answer_leads_to_another_night) {
    for (auto& line : lines)
        if (const auto sample = line.find("[0.0,0.0,1.0]"); sample != line.npos)
            line.replace(sample, 13, "[0.0,0.0,-1.0]");
    // The first call that is missing is the sound of the countdown.
    EXPECT_THAT(parting(), HasSubstr("performSelectorOnMainThread:withObject:waitUntilDone: "
                                     "[\"playAudioAsync\"]"));
}

TEST_F(ATrace, may_break_off_anywhere) {
    for (std::size_t length = 0; length < lines.size(); length += 7) {
        std::string begun;
        for (std::size_t i = 0; i < length; ++i)
            begun += lines[i] + '\n';
        EXPECT_NO_THROW(replayed(scenario, begun)) << length;
    }
}

TEST_F(ATrace, of_real_time_has_looks_at_the_clock) {
    // The wait ends when the monitor reads the clock, although the next line is later.
    const auto line = lineWith("\"op\":\"sleep\",\"args\":[1]");
    const auto begin = lines.begin() + static_cast<std::ptrdiff_t>(line) + 1;
    EXPECT_THAT(*begin, HasSubstr("deviceMotion"));
    lines.insert(begin, R"({"t":1393713001,"thread":"monitor","op":"time","result":1393713001})");
    EXPECT_THAT(parting(),
                HasSubstr("the trace has time, and by the rules the monitor thread calls "
                          "deviceMotion"));
}

TEST_F(ATrace, with_an_end_tells_why_the_night_ended_early) {
    lines.push_back(
        R"({"t":1393713400,"thread":"main","event":"end","args":"it was interrupted"})");
    EXPECT_THAT(replayed(scenario, text()), HasSubstr("Something is wrong: it was interrupted."));
}

TEST_F(ATrace, that_is_none_is_refused_with_its_line) {
    lines[4] = R"({"t":0,"thread":"main","op":"fly"})";
    try {
        replayed(scenario, text());
        ADD_FAILURE() << "was not refused";
    } catch (const BadInput& error) {
        EXPECT_THAT(error.what(), HasSubstr("trace:5: is no line of a trace: there is no operation "
                                            "\"fly\""));
    }
}

} // namespace

} // namespace noctara
