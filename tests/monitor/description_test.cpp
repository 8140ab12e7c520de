/// The text form of values in log lines.
#include "monitor/description.h"

#include <gtest/gtest.h>

namespace noctara {
namespace {

/// The text of a value behind the key "a".
std::string described(const PropertyList& value) {
    const std::string text = description(Dictionary{{"a", value}});
    const std::string before = "{\n    a = ";
    const std::string after = ";\n}";
    EXPECT_TRUE(text.starts_with(before) && text.ends_with(after)) << text;
    return text.substr(before.size(), text.size() - before.size() - after.size());
}

TEST(ADescription, of_an_empty_dictionary_is_a_pair_of_braces) {
    EXPECT_EQ(description(Dictionary()), "{\n}");
}

TEST(ADescription, has_a_line_for_each_key_sorted_by_key) {
    EXPECT_EQ(description(Dictionary{{"b", 2}, {"a", 1}, {"B", 3}, {"3GSwitch", 0}}),
              "{\n    3GSwitch = 0;\n    B = 3;\n    a = 1;\n    b = 2;\n}");
}

TEST(ADescription, shows_truths_as_digits) {
    EXPECT_EQ(described(true), "1");
    EXPECT_EQ(described(false), "0");
}

TEST(ADescription, shows_numbers_and_quotes_reals) {
    EXPECT_EQ(described(-21), "\"-21\"");
    EXPECT_EQ(described(std::int64_t{1} << 62), "4611686018427387904");
    EXPECT_EQ(described(0.5), "\"0.5\"");
    EXPECT_EQ(described(-2.75), "\"-2.75\"");
    EXPECT_EQ(described(3.0), "3");
}

TEST(ADescription, quotes_text_unless_it_is_one_plain_word) {
    EXPECT_EQ(described("Word3"), "Word3");
    EXPECT_EQ(described(""), "\"\"");
    EXPECT_EQ(described("two words"), "\"two words\"");
    EXPECT_EQ(described("com.apple.mobiletimer"), "\"com.apple.mobiletimer\"");
    EXPECT_EQ(described("under_score"), "\"under_score\"");
    EXPECT_EQ(described("say \"hi\" \\ \n"), "\"say \\\"hi\\\" \\\\ \\n\"");
}

TEST(ADescription, escapes_what_is_not_plain_ascii) {
    EXPECT_EQ(described("tab\tline\nend"), "\"tab\\tline\\nend\"");
    EXPECT_EQ(described("Caf\xc3\xa9"), "\"Caf\\U00e9\"");
    EXPECT_EQ(described("\xe2\x82\xac"), "\"\\U20ac\"");
    EXPECT_EQ(described("\xf0\x9f\x8c\x99"), "\"\\Ud83c\\Udf19\"");
    EXPECT_EQ(described("\x01"), "\"\\U0001\"");
    EXPECT_EQ(described("cut \xf0\x9f"), "\"cut \\U00f0\\U009f\"");
}

TEST(ADescription, quotes_keys_like_text) {
    EXPECT_EQ(description(Dictionary{{"launch-app-x", true}, {"", 1}}),
              "{\n    \"\" = 1;\n    \"launch-app-x\" = 1;\n}");
}

TEST(ADescription, shows_data_in_groups_of_four_bytes) {
    EXPECT_EQ(described(Data{}), "<>");
    EXPECT_EQ(described(Data{0, 255, 16, 1}), "<00ff1001>");
    EXPECT_EQ(described(Data{1, 2, 3, 4, 5}), "<01020304 05>");
}

TEST(ADescription, quotes_dates) {
    EXPECT_EQ(described(Date{1393713000}), "\"2014-03-01 22:30:00 +0000\"");
}

TEST(ADescription, of_nested_values_stands_behind_a_margin_of_its_own) {
    EXPECT_EQ(description(Dictionary{{"list", Array{1, "two words"}},
                                     {"inner", Dictionary{{"deep", true}, {"none", Array{}}}}}),
              "{\n"
              "    inner =     {\n"
              "        deep = 1;\n"
              "        none =         (\n"
              "        );\n"
              "    };\n"
              "    list =     (\n"
              "        1,\n"
              "        \"two words\"\n"
              "    );\n"
              "}");
    EXPECT_EQ(described(Array{Dictionary{{"a", 1}}, Array{2}}), "    (\n"
                                                                "                {\n"
                                                                "            a = 1;\n"
                                                                "        },\n"
                                                                "                (\n"
                                                                "            2\n"
                                                                "        )\n"
                                                                "    )");
}

TEST(ADescription, of_a_date_is_in_utc_without_the_fraction_of_a_second) {
    EXPECT_EQ(description(Date{0}), "1970-01-01 00:00:00 +0000");
    EXPECT_EQ(description(Date{1393713000.999}), "2014-03-01 22:30:00 +0000");
    EXPECT_EQ(description(Date{1456704000}), "2016-02-29 00:00:00 +0000");
    EXPECT_EQ(description(Date{-0.5}), "1969-12-31 23:59:59 +0000");
}

TEST(ADescription, of_no_object_is_null_in_parentheses) {
    EXPECT_STREQ(nullDescription, "(null)");
}

} // namespace
} // namespace noctara
