/// `noctara soak` from outside.
#include "input/temporary_folder.h"
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace {

using noctara::Played;

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

Played soak(const std::string& arguments) {
    return noctara::run("'" NOCTARA_COMMAND "' soak " + arguments + " 2>&1");
}

TEST(SoakOnTheCommandLine, plays_random_nights_and_says_what_was_checked) {
    const Played outcome = soak("--nights 3 --seed 40 --jobs 2");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output,
                StartsWith("3 random nights (seeds 40 to 42): every invariant holds.\n"));
    EXPECT_THAT(outcome.output, HasSubstr("  Only wake-ups of the monitor are scheduled"));
}

TEST(SoakOnTheCommandLine, checks_a_scenario) {
    const Played outcome = soak("scenarios/typical-night.toml");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "Every invariant holds in scenarios/typical-night.toml.\n");
}

TEST(SoakOnTheCommandLine, exits_with_1_for_a_scenario_that_fails_and_keeps_the_shortest) {
    const noctara::TemporaryFolder folder;
    const std::string scenario = (folder.path / "spins.toml").string();
    const std::string shortest = (folder.path / "shortest.toml").string();
    std::ofstream(scenario) << "[settings]\n[[event]]\nat = 23:00:00\nbutton = true\n"
                            << "[[event]]\nat = 23:30:00\nsettings = { ScanInterval = 0, "
                            << "TimeLimit = true, StartHour = 12, StopHour = 13 }\n";
    const Played outcome = soak(scenario);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.output, StartsWith(scenario + " fails. It breaks this invariant:\n"
                                                      "    A night can be played to its end.\n"));

    EXPECT_EQ(soak(scenario + " --save " + shortest).exitCode, 1);
    const Played again = soak(shortest);
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_THAT(again.output, HasSubstr("    A night can be played to its end.\n"));
    std::ifstream file(shortest);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    EXPECT_THAT(text, StartsWith("# " + scenario + ", shortened."));
    EXPECT_THAT(text, Not(HasSubstr("button")));
}

TEST(SoakOnTheCommandLine, refuses_bad_input) {
    const auto refusal = [](const std::string& arguments) {
        const Played outcome = soak(arguments);
        EXPECT_EQ(outcome.exitCode, 2) << arguments;
        EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 1);
        return outcome.output;
    };
    EXPECT_THAT(refusal("--nights 0"), HasSubstr("--nights"));
    EXPECT_THAT(refusal("--jobs many"), HasSubstr("--jobs"));
    EXPECT_THAT(refusal("nothing.toml"), HasSubstr("nothing.toml: no such file"));
    EXPECT_THAT(refusal("scenarios/typical-night.toml --seed 3"), HasSubstr("--seed"));
}

} // namespace
