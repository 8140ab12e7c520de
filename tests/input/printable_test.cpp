/// Text that is printed contains nothing that controls a terminal.
#include "input/printable.h"

#include <gtest/gtest.h>

namespace noctara {
namespace {

TEST(PrintableText, is_as_it_was_if_it_controls_nothing) {
    EXPECT_EQ(printable(""), "");
    EXPECT_EQ(printable("lying screen down, 0.0° off — Zürich 日本"),
              "lying screen down, 0.0° off — Zürich 日本");
}

TEST(PrintableText, has_escape_sequences_for_control_characters) {
    EXPECT_EQ(printable("a\nb\tc\rd"), "a\\nb\\tc\\x0dd");
    EXPECT_EQ(printable("\x1b[31mred\x7f"), "\\x1b[31mred\\x7f");
    EXPECT_EQ(printable("\xC2\x85\xC2\x9B"), "\\u0085\\u009b") << "C1 controls";
    EXPECT_EQ(printable("\xE2\x80\xA8"), "\\u2028") << "a line separator";
}

TEST(PrintableText, has_escape_sequences_for_characters_that_change_its_direction) {
    EXPECT_EQ(printable("\xE2\x80\xAE"
                        "abc\xE2\x81\xA6"),
              "\\u202eabc\\u2066");
    EXPECT_EQ(printable("\xD8\x9C\xE2\x80\x8F"), "\\u061c\\u200f");
}

TEST(PrintableText, has_escape_sequences_for_bytes_that_are_not_utf8) {
    EXPECT_EQ(printable("\xFF\xC2"), "\\xff\\xc2");
    EXPECT_EQ(printable("\x9B"
                        "31m"),
              "\\x9b31m")
        << "a control of 8-bit terminals";
}

} // namespace
} // namespace noctara
