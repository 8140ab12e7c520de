/// Text in the cells of a terminal.
#include "live/text_cells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace noctara {

namespace {

using testing::ElementsAre;

TEST(TextInCells, has_a_question_mark_for_each_control_character) {
    EXPECT_EQ(showable("a\x1b[31mb\tc\x7f"), "a?[31mb?c?");
    EXPECT_EQ(showable("\xc2\x9b"
                       "31m"),
              "?31m");
    EXPECT_EQ(showable("\xff°é"), "?°é");
}

TEST(TextInCells, counts_wide_and_combining_characters) {
    EXPECT_EQ(cellsOf("abc"), 3);
    EXPECT_EQ(cellsOf("0.0°"), 4);
    EXPECT_EQ(cellsOf("目覚まし"), 8);
    EXPECT_EQ(cellsOf("e\u0301"), 1);
}

TEST(TextInCells, is_cut_with_an_ellipsis) {
    EXPECT_EQ(cutTo("screen down", 11), "screen down");
    EXPECT_EQ(cutTo("screen down", 8), "screen …");
    EXPECT_EQ(cutTo("目覚まし", 4), "目…");
    EXPECT_EQ(cutTo("screen down", 0), "");
}

TEST(TextInCells, fills_its_cells) {
    EXPECT_EQ(fitted("on", 5), "on   ");
    EXPECT_EQ(fitted("目覚まし", 4), "目… ");
}

TEST(TextInCells, is_broken_at_spaces) {
    EXPECT_THAT(wrapped("one two three", 7, 2), ElementsAre("one two", "  three"));
    EXPECT_THAT(wrapped("one", 7, 2), ElementsAre("one"));
    EXPECT_THAT(wrapped("", 7, 2), ElementsAre(""));
}

TEST(TextInCells, is_broken_within_a_word_that_is_too_long) {
    EXPECT_THAT(wrapped("abcdefghij", 4, 1), ElementsAre("abcd", " efg", " hij"));
}

TEST(TextInCells, keeps_the_time_of_a_story_line_with_its_first_words) {
    EXPECT_THAT(wrapped("23:30:05  abcdefghijklmno", 20, 10),
                ElementsAre("23:30:05  abcdefghij", "          klmno"));
}

TEST(TextInCells, has_as_many_cells_in_ascii) {
    EXPECT_EQ(inAscii("0.0° █━· ♪"), "0.0o #=. s");
    EXPECT_EQ(inAscii("目"), "??");
}

} // namespace

} // namespace noctara
