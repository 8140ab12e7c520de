/// The option --report, from outside.
#include "input/temporary_folder.h"
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace noctara {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

class TheOptionReport : public testing::Test {
protected:
    static Played noctara(const std::string& arguments) {
        return run("'" NOCTARA_COMMAND "' " + arguments + " 2>&1");
    }

    std::string place(const char* name) const { return (folder.path / name).string(); }

    std::string written(const char* name) const {
        std::ostringstream text;
        text << std::ifstream(folder.path / name).rdbuf();
        return text.str();
    }

    TemporaryFolder folder;
};

TEST_F(TheOptionReport, writes_a_page_about_a_night) {
    EXPECT_EQ(noctara("night --report '" + place("night.html") + "'").exitCode, 0);
    const std::string page = written("night.html");
    EXPECT_THAT(page, StartsWith("<!doctype html>"));
    EXPECT_THAT(page, HasSubstr("\"kind\":\"night\""));
    EXPECT_LT(page.size(), 1'500'000);
}

TEST_F(TheOptionReport, leaves_the_story_and_the_trace_as_they_are) {
    const Played plain = noctara("night --trace '" + place("plain.jsonl") + "'");
    const Played reported = noctara("night --trace '" + place("reported.jsonl") + "' --report '" +
                                    place("night.html") + "'");
    EXPECT_EQ(plain.output, reported.output);
    EXPECT_EQ(written("plain.jsonl"), written("reported.jsonl"));
}

TEST_F(TheOptionReport, writes_the_same_page_about_a_replayed_trace) {
    noctara("night --trace '" + place("trace.jsonl") + "' --report '" + place("night.html") + "'");
    const Played replayed = noctara("replay '" + place("trace.jsonl") +
                                    "' --scenario scenarios/typical-night.toml --report '" +
                                    place("replayed.html") + "'");
    EXPECT_EQ(replayed.exitCode, 0) << replayed.output;
    EXPECT_EQ(written("night.html"), written("replayed.html"));
}

TEST_F(TheOptionReport, writes_a_page_about_a_recording) {
    std::ofstream(folder.path / "walk.csv") << "t,x,y,z\n0,0,0,-1\n0.1,0,0,-1\n";
    EXPECT_EQ(noctara("detect '" + place("walk.csv") + "' --report '" + place("walk.html") + "'")
                  .exitCode,
              0);
    EXPECT_THAT(written("walk.html"), HasSubstr("\"kind\":\"recording\""));
}

TEST_F(TheOptionReport, refuses_a_file_that_is_an_input_or_another_output) {
    for (const std::string& arguments :
         {"night --report '" + place("none/night.html") + "'",
          "night --trace '" + place("a") + "' --report '" + place("./a") + "'",
          std::string("night scenarios/first-night.toml --report scenarios/first-night.toml")}) {
        const Played refused = noctara(arguments);
        EXPECT_EQ(refused.exitCode, 2) << arguments;
        EXPECT_THAT(refused.output, StartsWith("noctara: night: --report: \""));
    }
    EXPECT_TRUE(fs::is_empty(folder.path));
    EXPECT_EQ(noctara("night --report -").exitCode, 2);
}

TEST_F(TheOptionReport, says_when_the_page_cannot_be_written_whole) {
    const Played full = noctara("night --report /dev/full");
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_THAT(full.output, HasSubstr("Something is wrong: the report \"/dev/full\""));
}

} // namespace
} // namespace noctara
