/// Valid and invalid characters of UTF-8.
#include "platform/utf8.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace noctara {
namespace {

TEST(ACharacter, is_taken_off_the_text) {
    const std::vector<std::pair<std::string, char32_t>> characters{
        {"a", 'a'},
        {std::string(1, '\0'), 0},
        {"\x7F", 0x7F},
        {"\xC2\x80", 0x80},
        {"\xDF\xBF", 0x7FF},
        {"\xE0\xA0\x80", 0x800},
        {"\xED\x9F\xBF", 0xD7FF},
        {"\xEE\x80\x80", 0xE000},
        {"\xEF\xBF\xBF", 0xFFFF},
        {"\xF0\x90\x80\x80", 0x10000},
        {"\xF4\x8F\xBF\xBF", 0x10FFFF},
    };
    for (const auto& [bytes, character] : characters) {
        const std::string whole = bytes + "z";
        std::string_view text = whole;
        EXPECT_EQ(takeUtf8(text), character);
        EXPECT_EQ(text, "z");
        EXPECT_TRUE(isUtf8(whole));
    }
}

TEST(ACharacter, that_is_not_well_formed_stays_where_it_is) {
    for (const char* bytes :
         {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3z", "\xC3\xC3", "\xE0\x9F\xBF",
          "\xE2\x82", "\xE2\x82\xFF", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF",
          "\xF0\x9F\x98", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
        std::string_view text = bytes;
        EXPECT_EQ(takeUtf8(text), std::nullopt) << bytes;
        EXPECT_EQ(text, bytes);
        EXPECT_FALSE(isUtf8(std::string("before ") + bytes)) << bytes;
    }
}

TEST(NoText, is_utf_8_without_a_character) {
    std::string_view text;
    EXPECT_EQ(takeUtf8(text), std::nullopt);
    EXPECT_TRUE(isUtf8(text));
}

} // namespace
} // namespace noctara
