/// Settings on the command line: --set, --sweep and --json.
#include "command/night_command.h"
#include "command/setting_sweep.h"
#include "input/bad_input.h"
#include "input/temporary_folder.h"
#include "phones/model/property_list_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

NightOptions typicalNightWith(std::vector<std::string> set) {
    NightOptions options;
    options.set = std::move(set);
    return options;
}

std::string toldNight(const NightOptions& options) {
    std::ostringstream out;
    std::ostringstream complaints;
    playNight(options, out, complaints);
    return out.str();
}

std::vector<std::string> sweptLines(const std::string& values, NightInputOptions night = {}) {
    std::ostringstream out;
    std::ostringstream complaints;
    EXPECT_EQ(sweepSetting({std::move(night), values}, out, complaints), 0);
    std::istringstream text(out.str());
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

std::string refusalOfSweep(const std::string& values) {
    std::ostringstream out;
    try {
        sweepSetting({{}, values}, out, out);
    } catch (const BadInput& error) {
        return error.what();
    }
    ADD_FAILURE() << values << " was not refused";
    return "";
}

TEST(SettingsOnTheCommandLine, change_those_of_the_scenario) {
    const std::string told = toldNight(typicalNightWith({"ScreenDown=off", "Sensitivity=2"}));
    EXPECT_THAT(told, HasSubstr("lying screen up (sensitivity 2)"));
    EXPECT_THAT(told, HasSubstr("from 21:00 to 7:00"));
    EXPECT_THAT(told, HasSubstr("Never quiet: the phone lay still with the screen down"));
}

TEST(SettingsOnTheCommandLine, add_to_the_defaults_where_there_is_no_settings_file) {
    const TemporaryFolder folder;
    std::ofstream(folder.path / "empty.toml") << "hours = 1\n";
    NightOptions options = typicalNightWith({"Sensitivity=3"});
    options.scenario = folder.path / "empty.toml";
    EXPECT_THAT(toldNight(options), HasSubstr("Settings: a reading every 5 s; lying screen down "
                                              "(sensitivity 3); when quiet: airplane mode."));
}

TEST(SettingsOnTheCommandLine, change_a_settings_file_below_the_root) {
    const TemporaryFolder folder;
    NightOptions options = typicalNightWith({"ScanInterval=3"});
    options.root = folder.path;
    toldNight(options);
    options.set = {"Sensitivity=1"};
    EXPECT_THAT(toldNight(options),
                HasSubstr("a reading every 15 s; lying screen down (sensitivity 1)"));
    const auto file = readPropertyListFile(
        folder.path / "private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist");
    EXPECT_EQ(*file.value->as<Dictionary>()->find("Sensitivity"), PropertyList(1));
}

TEST(SettingsOnTheCommandLine, may_be_odd) {
    EXPECT_THAT(toldNight(typicalNightWith({"Sensitivity=-5"})), HasSubstr("allows no tilt"));
}

TEST(SettingsOnTheCommandLine, are_refused_without_a_value) {
    EXPECT_THROW(toldNight(typicalNightWith({"Sensitivity"})), BadInput);
    EXPECT_THROW(toldNight(typicalNightWith({"=3"})), BadInput);
    EXPECT_THROW(toldNight(typicalNightWith({"Sensitivity="})), BadInput);
}

TEST(ASweep, prints_a_line_for_each_value) {
    EXPECT_THAT(
        sweptLines("StopHour=21..23"),
        ElementsAre("StopHour  quiet         from      back      times  readings  result",
                    "21        never         -         -             0         0  never quiet: "
                    "outside the window",
                    "22        never         -         -             0         0  never quiet: "
                    "outside the window",
                    StartsWith("23        ")));
}

TEST(ASweep, compares_nights_that_differ_in_the_setting_alone) {
    const auto lines = sweptLines("ScreenDown=on..off");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1], "on          7 h 20 min    23:30:05  06:50:09      1      5103  everything "
                        "came back");
    EXPECT_THAT(lines[2], HasSubstr("never quiet: the wrong side up"));
}

TEST(ASweep, tells_what_did_not_come_back) {
    NightInputOptions night;
    night.scenario = NOCTARA_SOURCE_DIR "/scenarios/held-during-a-call.toml";
    const auto lines = sweptLines("AirplaneSwitch=off..on", night);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_THAT(lines[1], HasSubstr("not back: the data rate is 2G since 06:50:05"));
    EXPECT_THAT(lines[2], HasSubstr("everything came back"));
}

TEST(ASweep, runs_downwards_as_well) {
    const auto lines = sweptLines("Sensitivity=9..7");
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_THAT(lines[1], StartsWith("9 "));
    EXPECT_THAT(lines[3], StartsWith("7 "));
}

TEST(ASweep, refuses_what_is_no_range_of_a_setting) {
    EXPECT_THAT(refusalOfSweep("Sensitivity=3"), HasSubstr("has no \"..\""));
    EXPECT_THAT(refusalOfSweep("Sensitivity"), HasSubstr("has no equals sign"));
    EXPECT_THAT(refusalOfSweep("Sensitvity=0..9"), HasSubstr("did you mean \"Sensitivity\"?"));
    EXPECT_THAT(refusalOfSweep("Sensitivity=0..x"), HasSubstr("accepted: a whole number"));
    EXPECT_THAT(refusalOfSweep("ScreenDown=0..9"), HasSubstr("accepted: on, off"));
    EXPECT_THAT(refusalOfSweep("ScanInterval=0..9999999"), HasSubstr("more than 1000 values"));
}

TEST(TheSummaryAsJson, has_the_verdict_its_reasons_and_the_figures) {
    NightOptions options = typicalNightWith({"ScreenDown=off"});
    options.json = true;
    const auto summary = nlohmann::json::parse(toldNight(options));
    EXPECT_EQ(summary["verdict"], "neverQuiet");
    EXPECT_THAT(summary["text"], StartsWith("Never quiet: the phone lay still"));
    EXPECT_EQ(summary["reason"], "wrongSide");
    EXPECT_EQ(summary["reasons"][0]["reason"], "wrongSide");
    EXPECT_EQ(summary["reasons"][0]["seconds"], 26400);
    EXPECT_EQ(summary["advice"]["settings"]["ScreenDown"], true);
    EXPECT_EQ(summary["firstQuiet"], nullptr);
    EXPECT_EQ(summary["duration"], 34200);
}

TEST(TheSummaryAsJson, is_an_array_for_a_sweep) {
    std::ostringstream out;
    sweepSetting({{}, "Sensitivity=4..5", true}, out, out);
    const auto nights = nlohmann::json::parse(out.str());
    ASSERT_EQ(nights.size(), 2U);
    EXPECT_EQ(nights[0]["setting"], "Sensitivity");
    EXPECT_EQ(nights[0]["value"], "4");
    EXPECT_EQ(nights[1]["verdict"], "quiet");
}

} // namespace

} // namespace noctara
