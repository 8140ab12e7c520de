/// Colour and line breaks on a terminal, and none elsewhere.
#include "output/terminal_text.h"

#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace noctara {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string onTerminal(const std::string& text, std::size_t width) {
    std::ostringstream out;
    {
        const TerminalText terminal(out, width);
        out << text;
    }
    return out.str();
}

TEST(OnATerminal, lines_that_fit_stay_as_they_are) {
    const std::string text = "12345 7890\n\n  a  b\nunfinished";
    EXPECT_EQ(onTerminal(text, 10), text);
    EXPECT_EQ(onTerminal("0.0° off °\n", 10), "0.0° off °\n") << "characters count, not bytes";
}

TEST(OnATerminal, a_long_line_of_a_story_is_broken_below_its_text) {
    EXPECT_EQ(onTerminal("22:30:00  It plays the warning sound\n", 24),
              "22:30:00  It plays the\n          warning sound\n");
    EXPECT_EQ(onTerminal("          It plays the warning sound\n", 24),
              "          It plays the\n          warning sound\n");
}

TEST(OnATerminal, a_long_figure_is_broken_below_its_value) {
    EXPECT_EQ(onTerminal("  wake-ups  one kept ahead all night\n", 26),
              "  wake-ups  one kept ahead\n            all night\n");
}

TEST(OnATerminal, a_word_that_is_longer_than_a_row_stays_whole) {
    EXPECT_EQ(onTerminal("a word-that-is-longer-than-a-row b\n", 10),
              "a\nword-that-is-longer-than-a-row b\n");
}

TEST(OnATerminal, JSON_is_not_broken) {
    const std::string line = "{\"t\": 1, \"op\": \"sleep\", \"args\": [1]}\n";
    EXPECT_EQ(onTerminal(line, 10), line);
}

TEST(OnATerminal, headings_are_bold_and_take_no_columns) {
    std::ostringstream out;
    {
        const TerminalText terminal(out, 10);
        out << heading << "12345 7890" << plain << '\n' << alarm << "wrong" << plain << '\n';
    }
    EXPECT_EQ(out.str(), "\x1b[1m12345 7890\x1b[0m\n\x1b[1;31mwrong\x1b[0m\n");
    out.str("");
    out << heading << alarm << "text" << plain;
    EXPECT_EQ(out.str(), "text") << "not after the terminal";
}

/// What the command prints on a terminal of 60 columns.
std::string nightOnTerminal(const std::string& environment) {
    return run("script -qec \"stty cols 60; env " + environment +
               " '" NOCTARA_COMMAND
               "' night scenarios/held-during-a-call.toml\" /dev/null < /dev/null")
        .output;
}

TEST(TheStory, has_colours_and_short_lines_on_a_terminal_only) {
    const std::string story = nightOnTerminal("TERM=xterm");
    EXPECT_THAT(story, HasSubstr("\x1b[1mSaturday, 1 March 2014\x1b[0m\r\n"));
    std::istringstream lines(story);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 60U + 2 + 12) << line; // With ° and an escape sequence.
    for (const char* environment : {"TERM=dumb", "TERM=xterm NO_COLOR=1"})
        EXPECT_THAT(nightOnTerminal(environment), Not(HasSubstr("\x1b["))) << environment;
}

TEST(AQuietNight, has_the_summary_alone) {
    const std::string whole = run("'" NOCTARA_COMMAND "' night").output;
    const std::string summary = run("'" NOCTARA_COMMAND "' night --quiet").output;
    EXPECT_THAT(summary, HasSubstr("Figures of 9 h 30 min"));
    EXPECT_THAT(summary, Not(HasSubstr("22:30:00")));
    EXPECT_TRUE(whole.ends_with(summary)) << summary;
}

} // namespace
} // namespace noctara
