/// Plays every night in scenarios/ and compares its story with the one that is checked in.
/// scripts/stories rewrites these stories after an intended change.
#include "command/night_command.h"
#include "input/bad_input.h"
#include "input/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace noctara {

namespace {

namespace fs = std::filesystem;

const fs::path root = NOCTARA_SOURCE_DIR;

std::string contents(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

std::vector<std::string> readyMadeNights() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(root / "scenarios"))
        if (entry.path().extension() == ".toml")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

struct PlayedNight {
    int exitCode;
    std::string story;
};

PlayedNight play(NightOptions options, const std::string& expectedComplaints = "") {
    std::ostringstream story;
    std::ostringstream complaints;
    const int exitCode = playNight(options, story, complaints);
    EXPECT_EQ(complaints.str(), expectedComplaints);
    return {exitCode, story.str()};
}

NightOptions night(const std::string& name) {
    NightOptions options;
    options.scenario = root / "scenarios" / (name + ".toml");
    return options;
}

class AReadyMadeNight : public testing::TestWithParam<std::string> {};

TEST_P(AReadyMadeNight, tells_the_story_that_is_checked_in) {
    EXPECT_EQ(play(night(GetParam())).story, contents(root / "scenarios" / (GetParam() + ".story")))
        << "if the change is meant, run scripts/stories and look at the difference";
}

TEST_P(AReadyMadeNight, finds_something_wrong_only_where_a_call_keeps_a_radio_off) {
    EXPECT_EQ(play(night(GetParam())).exitCode, GetParam() == "held-during-a-call" ? 1 : 0);
}

TEST_P(AReadyMadeNight, leaves_the_same_trace_with_files_in_memory_and_in_a_folder) {
    const TemporaryFolder folder;
    NightOptions inMemory = night(GetParam());
    inMemory.trace = folder.path / "memory.jsonl";
    NightOptions inFolder = night(GetParam());
    inFolder.trace = folder.path / "folder.jsonl";
    inFolder.root = folder.path / "phone";
    play(inMemory);
    play(inFolder);
    const std::string one = contents(*inMemory.trace);
    ASSERT_GT(one.size(), 10000U);
    EXPECT_TRUE(one == contents(*inFolder.trace)) << "compare the traces of noctara night with and "
                                                     "without --root";
}

INSTANTIATE_TEST_SUITE_P(Scenarios, AReadyMadeNight, testing::ValuesIn(readyMadeNights()),
                         [](const auto& night) {
                             std::string name = night.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(TheTypicalNight, is_the_one_that_is_built_in) {
    EXPECT_EQ(play({}).story, play(night("typical-night")).story);
}

TEST(TheTypicalNight, is_the_story_in_the_readme) {
    EXPECT_THAT(
        contents(root / "README.md"),
        testing::HasSubstr("```\n" + contents(root / "scenarios/typical-night.story") + "```\n"));
}

TEST(TheCompleteExample, of_the_manual_goes_quiet_and_everything_comes_back) {
    const std::string manual = contents(root / "docs/scenarios.md");
    const std::string fence = "```toml\n";
    const std::size_t begin = manual.find(fence) + fence.size();
    const TemporaryFolder folder;
    NightOptions options;
    options.scenario = folder.path / "example.toml";
    std::ofstream(*options.scenario) << manual.substr(begin, manual.find("```", begin) - begin);
    const PlayedNight example = play(options);
    EXPECT_EQ(example.exitCode, 0);
    EXPECT_THAT(example.story, testing::HasSubstr("launches com.apple.mobiletimer, switches "
                                                  "airplane mode on.\n"));
    EXPECT_THAT(example.story, testing::HasSubstr("The phone is quiet.\n"));
    EXPECT_THAT(example.story, testing::HasSubstr("The phone is back.\n"));
    EXPECT_THAT(example.story, testing::Not(testing::HasSubstr("Odd: ")));
    EXPECT_THAT(example.story, testing::Not(testing::HasSubstr("The settings lack")));
}

TEST(ANightOnTheCommandLine, tells_the_log_lines_when_asked) {
    NightOptions options = night("first-night");
    options.log = true;
    const std::string story = play(options).story;
    EXPECT_THAT(story, testing::HasSubstr("| Noctara hooked SpringBoard !\n"));
    EXPECT_THAT(story, testing::HasSubstr("| Noctara ScanInterval : 5\n"));
}

TEST(ANightOnTheCommandLine, starts_from_a_settings_file_and_leaves_it_alone) {
    const TemporaryFolder folder;
    const fs::path file = folder.path / "settings.plist";
    std::ofstream(file) << R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>Enabled</key><false/></dict></plist>)";
    const std::string before = contents(file);
    NightOptions options;
    options.settings = file;
    EXPECT_THAT(play(options).story, testing::HasSubstr("Settings: monitoring is off."));
    EXPECT_EQ(contents(file), before);
}

TEST(ANightOnTheCommandLine, takes_the_accelerometer_from_a_recording_from_an_instant_on) {
    const TemporaryFolder folder;
    const fs::path recording = folder.path / "lying.csv";
    std::ofstream(recording) << "time,x,y,z\n0,0,0,1\n1,0,0,1\n2,0,0,1\n";
    NightOptions options;
    options.motion = recording;
    options.motionAt = "23:00";
    options.recording.axes = AxisConvention::ios;
    options.overrides.end = "23:15";
    const std::string story =
        play(options, "2 events are after the end of the night and are not played\n").story;
    EXPECT_THAT(story, testing::HasSubstr("23:00:01  Reading 1 of 3: lying screen down"));
    EXPECT_THAT(story, testing::HasSubstr("The phone is quiet."));
}

TEST(ANightOnTheCommandLine, keeps_real_files_below_the_root) {
    const TemporaryFolder folder;
    NightOptions options = night("first-night");
    options.root = folder.path;
    play(options);
    const std::string preferences = "private/var/mobile/Library/Preferences/";
    EXPECT_THAT(contents(folder.path / (preferences + "com.quorbit.Noctara.plist")),
                testing::HasSubstr("<key>ScanInterval</key>"));
    EXPECT_THAT(contents(folder.path / "private/var/preferences/SystemConfiguration/"
                                       "com.apple.AutoWake.plist"),
                testing::HasSubstr("com.quorbit.Noctara"));
}

TEST(ANightOnTheCommandLine, writes_nothing_when_an_input_cannot_be_used) {
    const TemporaryFolder folder;
    NightOptions options;
    options.trace = folder.path / "trace.jsonl";
    options.root = folder.path / "phone";
    options.settings = folder.path / "missing.plist";
    std::ostringstream story;
    std::ostringstream complaints;
    EXPECT_THROW(playNight(options, story, complaints), BadInput);
    EXPECT_EQ(story.str(), "");
    EXPECT_TRUE(fs::is_empty(folder.path));
}

TEST(ANightOnTheCommandLine, refuses_a_trace_that_cannot_be_written_before_anything_is_made) {
    const TemporaryFolder folder;
    NightOptions options;
    options.trace = folder.path / "no such folder" / "trace.jsonl";
    options.root = folder.path / "phone";
    std::ostringstream story;
    std::ostringstream complaints;
    EXPECT_THROW(playNight(options, story, complaints), BadInput);
    EXPECT_TRUE(fs::is_empty(folder.path));
}

TEST(ANightOnTheCommandLine, refuses_a_file_as_the_root_and_leaves_no_trace_behind) {
    const TemporaryFolder folder;
    std::ofstream(folder.path / "file") << "x";
    NightOptions options;
    options.trace = folder.path / "trace.jsonl";
    options.root = folder.path / "file";
    std::ostringstream story;
    std::ostringstream complaints;
    EXPECT_THROW(playNight(options, story, complaints), BadInput);
    EXPECT_FALSE(fs::exists(*options.trace));
}

TEST(ANightOnTheCommandLine, refuses_a_root_that_cannot_be_written_or_has_no_name) {
    for (const char* place : {"", "/proc", "/proc/phone"}) {
        NightOptions options;
        options.root = place;
        std::ostringstream story;
        std::ostringstream complaints;
        EXPECT_THROW(playNight(options, story, complaints), BadInput) << place;
    }
}

TEST(ANightOnTheCommandLine, never_writes_its_trace_over_an_input) {
    const TemporaryFolder folder;
    const fs::path scenario = folder.path / "night.toml";
    std::ofstream(scenario) << "hours = 1\n";
    NightOptions options;
    options.scenario = scenario;
    options.trace = folder.path / "." / "night.toml";
    std::ostringstream story;
    std::ostringstream complaints;
    EXPECT_THROW(playNight(options, story, complaints), BadInput);
    EXPECT_EQ(contents(scenario), "hours = 1\n");
}

TEST(ANightOnTheCommandLine, leaves_an_old_trace_alone_when_it_does_not_begin) {
    const TemporaryFolder folder;
    NightOptions options;
    options.trace = folder.path / "trace.jsonl";
    options.root = "/proc";
    std::ofstream(*options.trace) << "old\n";
    std::ostringstream story;
    std::ostringstream complaints;
    EXPECT_THROW(playNight(options, story, complaints), BadInput);
    EXPECT_EQ(contents(*options.trace), "old\n");
}

TEST(ANightOnTheCommandLine, keeps_a_settings_file_that_is_below_the_root_already) {
    const TemporaryFolder folder;
    const fs::path preferences = folder.path / "private/var/mobile/Library/Preferences";
    fs::create_directories(preferences);
    std::ofstream(preferences / "com.quorbit.Noctara.plist") << R"(<?xml version="1.0"?>
<plist version="1.0"><dict><key>Enabled</key><true/><key>ScanInterval</key><integer>3</integer>
</dict></plist>)";
    NightOptions options;
    options.root = folder.path;
    EXPECT_THAT(play(options).story, testing::HasSubstr("a reading every 15 s"));
}

TEST(ANightOnTheCommandLine, damages_no_file_outside_the_root) {
    const TemporaryFolder folder;
    const fs::path preferences = folder.path / "phone/private/var/mobile/Library/Preferences";
    fs::create_directories(preferences);
    std::ofstream(folder.path / "precious") << "precious";
    fs::create_symlink(folder.path / "precious", preferences / "com.quorbit.Noctara.plist");
    const fs::path scenario = folder.path / "night.toml";
    std::ofstream(scenario) << "hours = 1\n[[event]]\nat = 22:40:00\nsettings_file = "
                               "\"damaged\"\n";
    NightOptions options;
    options.scenario = scenario;
    options.root = folder.path / "phone";
    play(options);
    EXPECT_EQ(contents(folder.path / "precious"), "precious");
}

TEST(ANightOnTheCommandLine, says_when_a_recording_takes_over) {
    const TemporaryFolder folder;
    const fs::path recording = folder.path / "moving.csv";
    std::ofstream(recording) << "time,x,y,z\n0,0.7,0,0.7\n1,0.7,0,0.7\n2,0.7,0,0.7\n";
    NightOptions options;
    options.motion = recording;
    options.motionAt = "23:00";
    const std::string story = play(options).story;
    EXPECT_THAT(story,
                testing::StartsWith("From 23:00:00 on the accelerometer follows moving.csv"));
    EXPECT_THAT(story, testing::Not(testing::HasSubstr("is laid down")));
    options.motionAt = "2014-03-03T00:00";
    std::ostringstream out;
    EXPECT_THROW(playNight(options, out, out), BadInput);
}

TEST(ANightOnTheCommandLine, says_when_the_library_does_nothing) {
    const TemporaryFolder folder;
    const fs::path scenario = folder.path / "maps.toml";
    std::ofstream(scenario) << "[phone]\nbundle = \"com.apple.Maps\"\n";
    NightOptions options;
    options.scenario = scenario;
    EXPECT_THAT(play(options).story,
                testing::HasSubstr("The library is loaded into com.apple.Maps and does nothing"));
}

TEST(ANightOnTheCommandLine, says_that_a_monitor_that_never_waits_is_wrong) {
    const TemporaryFolder folder;
    const fs::path scenario = folder.path / "spinning.toml";
    std::ofstream(scenario) << "hours = 1\n[settings]\nEnabled = true\n[[event]]\nat = 22:40:00\n"
                               "settings = {EnableOnAC = true, ScanInterval = 0}\n";
    NightOptions options;
    options.scenario = scenario;
    const PlayedNight played = play(options);
    EXPECT_EQ(played.exitCode, 1);
    EXPECT_THAT(played.story, testing::HasSubstr("without waiting"));
}

} // namespace

} // namespace noctara
