/// The command from outside: exit codes, errors of one line, help.
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using noctara::Played;

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

Played run(const std::string& arguments, const std::string& redirections = "2>&1") {
    return noctara::run("'" NOCTARA_COMMAND "' " + arguments + ' ' + redirections);
}

/// A refusal is exit code 2 and one line that begins with the command's name.
std::string refusalOf(const std::string& arguments) {
    const Played outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << arguments;
    EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 1) << outcome.output;
    EXPECT_THAT(outcome.output, StartsWith("noctara: "));
    return outcome.output;
}

TEST(TheCommand, plays_the_typical_night_and_exits_with_0) {
    const Played outcome = run("night");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, HasSubstr("The phone is quiet."));
}

TEST(TheCommand, exits_with_1_when_coming_back_left_a_radio_off) {
    const Played outcome = run("night scenarios/held-during-a-call.toml");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.output,
                HasSubstr("\nNot back: the data rate is 2G since 06:50:05, and was 4G before. "));
}

TEST(TheCommand, explains_itself) {
    const Played outcome = run("night --help");
    EXPECT_EQ(outcome.exitCode, 0);
    for (const char* option : {"--log", "--trace FILE", "--settings FILE", "--root FOLDER",
                               "--motion RECORDING", "--motion-at TIME", "--start TIME",
                               "--end TIME", "--timezone ZONE", "--unit UNIT", "--axes AXES"})
        EXPECT_THAT(outcome.output, HasSubstr(option));
    EXPECT_THAT(outcome.output, HasSubstr("Exit codes: 0 fine"));
}

TEST(TheCommand, refuses_what_it_does_not_know) {
    EXPECT_THAT(refusalOf(""), HasSubstr("--help"));
    EXPECT_THAT(refusalOf("night --nope"), HasSubstr("--nope"));
    EXPECT_THAT(refusalOf("sleep"), HasSubstr("--help"));
    EXPECT_THAT(refusalOf("detect"), HasSubstr("RECORDING"));
    EXPECT_THAT(refusalOf("detect --unit furlong x.csv"),
                HasSubstr("\"furlong\" is none of: g, mg, m/s²"));
    EXPECT_THAT(refusalOf("night --motion-at 23:00"), HasSubstr("--motion"));
}

TEST(TheCommand, reads_compressed_files_and_standard_input) {
    const std::string recording = "time,x,y,z\\n0,0,0,-1\\n1,0,0,-1\\n";
    const auto detectFrom = [&](const std::string& pipe) {
        return noctara::run("printf '" + recording + "' | " + pipe +
                            "'" NOCTARA_COMMAND "' detect - 2>&1")
            .output;
    };
    EXPECT_THAT(detectFrom(""), HasSubstr("\n2 readings in 2.0 s"));
    EXPECT_THAT(detectFrom("gzip | "), HasSubstr("\n2 readings in 2.0 s"));

    const Played night =
        noctara::run("printf '<plist><dict><key>ScreenDown</key><false/></dict></plist>' | gzip | "
                     "'" NOCTARA_COMMAND "' night --settings - 2>&1");
    EXPECT_EQ(night.exitCode, 0);
    EXPECT_THAT(night.output, HasSubstr("The settings lack Enabled, ScanInterval, ActiveOnSleep"));

    EXPECT_THAT(refusalOf("night --settings - --motion - < /dev/null"),
                HasSubstr("standard input can be read only once"));
}

TEST(TheCommand, takes_the_units_that_it_prints) {
    for (const char* unit : {"g", "G", "mg", "m/s²", "m/s^2", "m/s2", "M/S2"})
        EXPECT_THAT(refusalOf("detect no-such.csv --unit '" + std::string(unit) + "'"),
                    HasSubstr("no such file"));
    EXPECT_THAT(refusalOf("detect x.csv --time-unit h"), HasSubstr("none of: s, ms, us, ns"));
}

TEST(TheCommand, takes_a_sensitivity_that_the_settings_page_does_not_offer) {
    EXPECT_THAT(refusalOf("detect no-such.csv --sensitivity -7"), HasSubstr("no such file"));
    EXPECT_THAT(refusalOf("detect no-such.csv --sensitivity 2147483648"), HasSubstr("too large"));
}

TEST(TheCommand, shows_no_control_characters_of_its_arguments) {
    for (const char* arguments :
         {"detect \"$(printf 'a\\033[31m.csv')\"", "\"$(printf 'a\\033[31m')\"",
          "night --motion \"$(printf 'a\\033[31m.csv')\""})
        EXPECT_THAT(refusalOf(arguments), testing::Not(HasSubstr("\x1b"))) << arguments;
}

TEST(TheCommand, names_the_file_the_line_and_the_column_of_a_wrong_scenario) {
    const std::string scenario = testing::TempDir() + "noctara_command_test.toml";
    FILE* const file = std::fopen(scenario.c_str(), "w");
    std::fputs("[phone]\nchargr = true\n", file);
    std::fclose(file);
    EXPECT_THAT(refusalOf("night '" + scenario + "'"),
                StartsWith("noctara: " + scenario + ":2:1: "));
    std::remove(scenario.c_str());
}

TEST(TheCommand, names_files_that_are_not_there) {
    EXPECT_THAT(refusalOf("night no-such.toml"), HasSubstr("no-such.toml"));
    EXPECT_THAT(refusalOf("detect no-such.csv"), HasSubstr("no-such.csv"));
    EXPECT_THAT(refusalOf("night --settings no-such.plist"), HasSubstr("no-such.plist"));
    EXPECT_THAT(refusalOf("capabilities no-such.toml"), HasSubstr("no-such.toml"));
}

TEST(TheCommand, exits_with_1_when_its_output_cannot_be_written) {
    for (const char* command : {"night", "capabilities"}) {
        const Played outcome = run(command, "2>&1 1>/dev/full");
        EXPECT_EQ(outcome.exitCode, 1) << command;
        EXPECT_THAT(outcome.output, HasSubstr("could not be written whole"));
    }
}

TEST(TheCommand, reports_the_capabilities_of_the_scenarios_phone) {
    const Played outcome = run("capabilities");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, StartsWith("Device: iPhone 4S\n720p: No\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\nwifi: Yes\n"));
    EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 62);
}

} // namespace
