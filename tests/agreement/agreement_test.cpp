/// The library makes the same calls, with the same arguments, on the stand-in phone and on the
/// emulated phone as the monitor of the simulated phone, in every ready-made night and in random
/// nights.
#include "input/temporary_folder.h"
#include "tests/agreement/agreement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace noctara {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const fs::path scenarios = fs::path(NOCTARA_SOURCE_DIR) / "scenarios";

/// The number of random nights in a run of the tests; scripts/agree plays any number. With
/// sanitizers a night takes half a minute.
#ifdef NOCTARA_SANITIZED
constexpr std::uint64_t randomScenarios = 6;
#else
constexpr std::uint64_t randomScenarios = 24;
#endif

class AllPhones : public testing::Test {
protected:
    /// Keeps the files of a play in which the phones did not agree.
    ~AllPhones() override {
        if (HasFailure())
            temporary.keep();
    }

    TemporaryFolder temporary{"noctara-agreement"};
    const fs::path folder = temporary.path;
};

class AllPhonesInAReadyMadeNight : public AllPhones,
                                   public testing::WithParamInterface<std::string> {};

TEST_P(AllPhonesInAReadyMadeNight, do_the_same) {
    const fs::path scenario = folder / (GetParam() + ".toml");
    fs::copy_file(scenarios / scenario.filename(), scenario);
    const Agreement agreement = playOnAll(scenario);
    EXPECT_FALSE(agreement.difference) << *agreement.difference;
    EXPECT_GT(agreement.lines, 1000U);
}

std::vector<std::string> readyMadeNights() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(scenarios))
        if (entry.path().extension() == ".toml")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, AllPhonesInAReadyMadeNight,
                         testing::ValuesIn(readyMadeNights()), [](const auto& night) {
                             std::string name = night.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST_F(AllPhones, go_into_the_sleep_state_in_the_typical_night) {
    const fs::path scenario = folder / "typical-night.toml";
    fs::copy_file(scenarios / scenario.filename(), scenario);
    EXPECT_EQ(playOnAll(scenario).sleepStates, 1U);
}

TEST_F(AllPhones, agree_on_a_reading_whose_length_one_rounding_more_or_less_would_change) {
    // Its length is 1.1 g, which is too long for a phone at rest. A fused multiply-add, which every
    // arm64 phone has, would make it 1.0999999999999999. With this sensitivity any tilt counts as
    // lying, so that the length alone decides.
    const fs::path scenario = folder / "boundary.toml";
    std::ofstream(scenario) << "hours = 0.2\n"
                               "[settings]\nEnabled = true\nScanInterval = 1\nScreenDown = true\n"
                               "Sensitivity = -1\nTimeLimit = false\n"
                               "[phone]\nposture = [0.6, 0.7, 0.6]\n";
    const Agreement agreement = playOnAll(scenario);
    EXPECT_FALSE(agreement.difference) << *agreement.difference;
    EXPECT_EQ(agreement.sleepStates, 0U);
    EXPECT_GT(agreement.lines, 1000U);
}

class AllPhonesInARandomNight : public AllPhones,
                                public testing::WithParamInterface<std::uint64_t> {};

TEST_P(AllPhonesInARandomNight, do_the_same) {
    const Agreement agreement = playOnAll(writeRandomScenario(GetParam(), folder));
    EXPECT_FALSE(agreement.difference)
        << *agreement.difference << "To play it again: scripts/agree 1 " << GetParam();
    EXPECT_GT(agreement.lines, 0U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, AllPhonesInARandomNight,
                         testing::Range(std::uint64_t{1}, randomScenarios + 1),
                         testing::PrintToStringParamName());

/// A program in place of another phone: a script that gets the scenario as $1 and the trace's
/// name as $3.
class AnotherProgramInItsPlace : public AllPhones {
protected:
    std::string whatIsWrong(const std::string& script, const std::string& placeOption = {}) {
        const fs::path file = folder / "program";
        std::ofstream(file) << script;
        const fs::path scenario = folder / "night.toml";
        std::ofstream(scenario) << "hours = 0.2\n[settings]\nScanInterval = 1\n";
        return playOnAll(scenario, {{"simulated", {NOCTARA_COMMAND, "night"}},
                                    {"other", {"sh", file.string()}, placeOption}})
            .difference.value_or("they agree");
    }

    const std::string playsToo = "'" NOCTARA_COMMAND "' night \"$@\"\n";
};

TEST_F(AnotherProgramInItsPlace, agrees_when_it_does_the_same) {
    EXPECT_EQ(whatIsWrong(playsToo), "they agree");
}

TEST_F(AnotherProgramInItsPlace, is_caught_when_it_alone_finds_something_wrong) {
    EXPECT_THAT(whatIsWrong(playsToo + "echo 'a radio is off'\nexit 1\n"),
                testing::AllOf(HasSubstr("one of the plays found something wrong"),
                               HasSubstr("a radio is off")));
}

TEST_F(AnotherProgramInItsPlace, is_caught_when_one_argument_differs) {
    EXPECT_THAT(whatIsWrong(playsToo + "sed -i '0,/ScanInterval : 5/s//ScanInterval : 6/' \"$3\"\n"
                                       "grep -q 'ScanInterval : 6' \"$3\" || exit 9\n"),
                testing::AllOf(HasSubstr("the traces differ"), HasSubstr("ScanInterval : 5"),
                               HasSubstr("ScanInterval : 6"), HasSubstr("night.toml --trace")));
}

TEST_F(AnotherProgramInItsPlace, is_asked_from_where_in_the_library_the_differing_call_came) {
    EXPECT_THAT(whatIsWrong("'" NOCTARA_EMULATED_SPRINGBOARD "' \"$@\"\n"
                            "sed -i '0,/ScanInterval : 5/s//ScanInterval : 6/' \"$3\"\n",
                            "--place-of-line"),
                testing::AllOf(HasSubstr("ScanInterval : 6"), HasSubstr(" was written in NSLog"),
                               HasSubstr("called by noctara::NoctaraThread::takeOverSettings")));
}

TEST_F(AnotherProgramInItsPlace, is_caught_when_it_leaves_out_the_last_line) {
    EXPECT_THAT(whatIsWrong(playsToo + "sed -i '$d' \"$3\"\n"), HasSubstr("> (it ends here)"));
}

TEST_F(AnotherProgramInItsPlace, is_caught_when_it_dies) {
    EXPECT_THAT(whatIsWrong(playsToo + "echo 'last words' >&2\nkill -SEGV $$\n"),
                testing::AllOf(HasSubstr("was ended by signal 11"), HasSubstr("last words")));
}

TEST_F(AnotherProgramInItsPlace, is_caught_when_it_refuses_the_scenario) {
    EXPECT_THAT(whatIsWrong(playsToo + "exit 2\n"), HasSubstr("exited with 2"));
}

TEST_F(AnotherProgramInItsPlace, is_caught_when_it_writes_no_trace) {
    EXPECT_THAT(whatIsWrong("exit 0\n"), HasSubstr("night.other.jsonl: was not written"));
}

TEST_F(AnotherProgramInItsPlace, is_caught_when_its_trace_is_cut_off_within_a_line) {
    EXPECT_THAT(whatIsWrong(playsToo + "truncate -s -5 \"$3\"\n"),
                HasSubstr("is no line of a trace"));
}

} // namespace

} // namespace noctara
