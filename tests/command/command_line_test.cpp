/// The command line: its faults, in one voice for all subcommands, and the help.
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>

namespace {

using noctara::Played;

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

Played noctaraRuns(const std::string& arguments, const std::string& redirections = "2>&1") {
    return noctara::run("'" NOCTARA_COMMAND "' " + arguments + ' ' + redirections);
}

/// The fault of a command line: one line, exit code 2, and the way to the help.
std::string faultOf(const std::string& arguments) {
    const Played outcome = noctaraRuns(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << arguments;
    EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 1) << outcome.output;
    EXPECT_THAT(outcome.output, StartsWith("noctara: "));
    return outcome.output;
}

TEST(ACommandLine, without_a_subcommand_is_told_which_there_are) {
    EXPECT_THAT(faultOf(""),
                StartsWith("noctara: the subcommand is missing; give one of: night, "));
    EXPECT_THAT(faultOf("furlong"), HasSubstr("\"furlong\" is no subcommand; give one of: night"));
}

TEST(ACommandLine, with_a_misspelt_word_is_told_the_nearest) {
    EXPECT_THAT(faultOf("nigth"), HasSubstr("\"nigth\" is no subcommand; did you mean night?"));
    EXPECT_THAT(faultOf("night --tarce x"),
                HasSubstr("\"--tarce\" is no option of noctara night; did you mean --trace?"));
    EXPECT_THAT(faultOf("night --setings=x.plist"),
                HasSubstr("\"--setings\" is no option of noctara night; did you mean --settings?"));
    EXPECT_THAT(faultOf("help nigth"), HasSubstr("did you mean night?"));
    EXPECT_THAT(faultOf("night --furlong"), Not(HasSubstr("did you mean")));
}

TEST(ACommandLine, with_a_file_alone_is_told_the_subcommand_that_reads_it) {
    EXPECT_THAT(faultOf("my.toml"), HasSubstr("write noctara night my.toml"));
    EXPECT_THAT(faultOf("my.jsonl"), HasSubstr("write noctara replay my.jsonl"));
    EXPECT_THAT(faultOf("my.csv"), HasSubstr("write noctara detect my.csv"));
}

TEST(ACommandLine, with_a_wrong_number_is_told_why_it_is_wrong) {
    EXPECT_THAT(faultOf("detect x.csv --rate x"),
                StartsWith("noctara: detect: --rate: \"x\" is not a number; write --rate HZ "));
    EXPECT_THAT(faultOf("night --motion x.csv --rate x"),
                StartsWith("noctara: night: --rate: \"x\" is not a number; write --rate HZ "));
    EXPECT_THAT(faultOf("detect x.csv --sensitivity 5.5"), HasSubstr("is not a whole number"));
    EXPECT_THAT(faultOf("detect x.csv --sensitivity 99999999999"), HasSubstr("is too large"));
}

TEST(ACommandLine, with_a_value_that_is_missing_empty_or_too_many_is_told_so) {
    EXPECT_THAT(faultOf("night --trace"),
                StartsWith("noctara: night: --trace: the value is missing; write --trace FILE "));
    EXPECT_THAT(faultOf("night --trace ''"), HasSubstr("--trace: the value is empty; "));
    EXPECT_THAT(faultOf("detect x.csv --sensitivity ''"), HasSubstr("the value is empty"));
    EXPECT_THAT(faultOf("night ''"), HasSubstr("SCENARIO: the value is empty"));
    EXPECT_THAT(faultOf("night --trace a --trace b"), HasSubstr("--trace is given 2 times"));
    EXPECT_THAT(faultOf("night --log=5"), HasSubstr("--log takes no value; leave out \"5\""));
    EXPECT_THAT(faultOf("night a.toml b.toml"), HasSubstr("\"b.toml\" is one argument too many"));
    EXPECT_THAT(faultOf("detect"), HasSubstr("RECORDING is missing; write noctara detect RECORD"));
}

TEST(ACommandLine, with_an_option_that_would_be_ignored_is_refused) {
    for (const std::string option : {"--unit mg", "--axes ios", "--rate 50", "--motion-at 23:00"})
        EXPECT_THAT(faultOf("night " + option),
                    HasSubstr(option.substr(0, option.find(' ')) +
                              " has no effect without --motion; add --motion RECORDING"));
}

TEST(ACommandLine, never_speaks_with_the_voice_of_a_library) {
    for (const char* arguments :
         {"", "sleep", "night --nope", "night --rate", "night --log=5", "detect --rate x y",
          "night --trace a --trace b", "detect", "night --unit g"}) {
        const std::string fault = faultOf(arguments);
        for (const char* words : {"not expected", "required", "requires", "Could not", "At Most"})
            EXPECT_THAT(fault, Not(HasSubstr(words))) << arguments;
    }
}

TEST(ACommandLine, with_an_unknown_time_zone_is_told_the_nearest_or_that_of_the_city) {
    EXPECT_THAT(faultOf("night --timezone Europe/Pari"), HasSubstr("mean \"Europe/Paris\"?"));
    EXPECT_THAT(faultOf("night --timezone berlin"), HasSubstr("mean \"Europe/Berlin\"?"));
    EXPECT_THAT(faultOf("night --timezone Atlantis"), HasSubstr("write an IANA name"));
}

TEST(ACommandLine, that_names_a_file_with_control_characters_is_told_of_it_on_one_line) {
    const std::string fault = faultOf("night \"$(printf 'no\\n\\033[31mfile')\"");
    EXPECT_THAT(fault, StartsWith("noctara: no\\n\\x1b[31mfile: no such file"));
}

TEST(TheHelp, of_a_subcommand_is_printed_in_two_ways) {
    EXPECT_EQ(noctaraRuns("help night").output, noctaraRuns("night --help").output);
    EXPECT_EQ(noctaraRuns("help").output, noctaraRuns("--help").output);
    EXPECT_EQ(noctaraRuns("help night").exitCode, 0);
}

TEST(TheVersion, is_that_of_the_project) {
    const Played outcome = noctaraRuns("--version");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, testing::MatchesRegex("noctara [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(ATraceOnStandardOutput, is_not_mixed_with_the_story) {
    const std::string trace = noctaraRuns("night --trace -", "2>/dev/null").output;
    EXPECT_THAT(trace, StartsWith("{\"t\":"));
    EXPECT_THAT(trace, EndsWith("}\n"));
    EXPECT_EQ(noctaraRuns("night --trace -", "2>&1 >/dev/null").output,
              noctaraRuns("night").output);
    EXPECT_THAT(
        noctaraRuns("night --trace -", "2>/dev/null | '" NOCTARA_COMMAND "' replay -").output,
        HasSubstr("The phone is quiet."));
}

TEST(AnEventAfterTheEnd, is_not_played_and_told_of_on_standard_error) {
    const std::string late = noctaraRuns("night --end 06:00", "2>&1 >/dev/null").output;
    EXPECT_EQ(late, "1 event is after the end of the night and is not played\n");
    EXPECT_EQ(noctaraRuns("night --end 23:00", "2>&1 >/dev/null").output,
              "2 events are after the end of the night and are not played\n");
    EXPECT_EQ(noctaraRuns("night", "2>&1 >/dev/null").output, "");
}

TEST(AScenarioThatIsNotToml, is_refused_in_the_words_of_the_command) {
    const std::string file = testing::TempDir() + "noctara_not_toml.toml";
    std::ofstream(file) << "x = " << std::string(300, '[');
    EXPECT_THAT(faultOf("night '" + file + "'"), HasSubstr("nested too deeply"));
    std::ofstream(file) << "x = ";
    EXPECT_THAT(faultOf("night '" + file + "'"), HasSubstr(":1:5: this is not TOML: "));
    std::remove(file.c_str());
}

} // namespace
