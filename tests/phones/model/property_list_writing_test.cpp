/// A property list that is written and read again is equal, also at the limits of the types.
#include "phones/model/property_list_file.h"

#include "tests/phones/model/property_list_samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace noctara {
namespace {

PropertyList readBack(const PropertyList& value) {
    const ParsedPropertyList parsed = parsePropertyList(propertyListXml(value));
    return parsed.value ? *parsed.value : PropertyList("refused: " + parsed.error);
}

TEST(AWrittenList, reads_back_equal_with_every_type) {
    EXPECT_EQ(readBack(everyType), everyType);
}

TEST(AWrittenList, reads_back_equal_with_any_value_at_the_top) {
    for (const auto& [key, value] : everyType)
        EXPECT_EQ(readBack(value), value) << key;
}

TEST(AWrittenList, keeps_integers_from_the_least_to_the_greatest) {
    using Limits = std::numeric_limits<std::int64_t>;
    for (const std::int64_t integer : {Limits::min(), Limits::min() + 1, std::int64_t{-5},
                                       std::int64_t{0}, std::int64_t{1} << 40, Limits::max()})
        EXPECT_EQ(readBack(integer), PropertyList(integer)) << integer;
}

TEST(AWrittenList, keeps_every_digit_of_a_real) {
    using Limits = std::numeric_limits<double>;
    for (const double real :
         {0.1, 1e300, -1e-300, 1.0 / 3, 0.0, -1.5, 123456789.125, Limits::max(), Limits::min(),
          Limits::denorm_min(), Limits::infinity(), -Limits::infinity(), 3.0})
        EXPECT_EQ(readBack(real), PropertyList(real)) << real;
}

TEST(AWrittenList, keeps_minus_zero_as_an_equal_zero) {
    EXPECT_EQ(readBack(-0.0), PropertyList(0.0));
}

TEST(AWrittenList, keeps_the_sign_of_each_zero_that_was_read) {
    const std::string zeros = "<array>\n"
                              "\t<real>0.0</real>\n"
                              "\t<real>-0.0</real>\n"
                              "\t<array>\n"
                              "\t\t<real>-0.0</real>\n"
                              "\t\t<real>-1.5</real>\n"
                              "\t</array>\n"
                              "\t<string>&lt;real&gt;0.0&lt;/real&gt;</string>\n"
                              "\t<real>0.0</real>\n"
                              "\t<real>-0.0</real>\n"
                              "</array>";
    const ParsedPropertyList parsed = parsePropertyList(listOf(zeros));
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(*parsed.value->as<Array>()->begin(), PropertyList(0.0));
    EXPECT_NE(propertyListXml(*parsed.value).find(zeros), std::string::npos);
}

TEST(AWrittenList, keeps_all_bits_of_an_unsigned_integer_that_was_read) {
    const ParsedPropertyList parsed =
        parsePropertyList(listOf("<integer>18446744073709551615</integer>"));
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(*parsed.value, PropertyList(-1));
    EXPECT_NE(propertyListXml(*parsed.value).find("<integer>18446744073709551615</integer>"),
              std::string::npos);
}

TEST(AWrittenList, keeps_a_real_that_is_not_a_number) {
    const PropertyList value = readBack(std::numeric_limits<double>::quiet_NaN());
    ASSERT_NE(value.as<double>(), nullptr);
    EXPECT_TRUE(std::isnan(*value.as<double>()));
}

TEST(AWrittenList, keeps_text_as_it_is) {
    for (const char* text : {"", " ", "  blanks around  ", "<&>\"'", "&amp;", "]]>", "<!-- -->",
                             "line\nnext\r\nlast\ttab", "\xF0\x9F\x98\x80 \xC3\xA9 \xE6\x97\xA5",
                             "\x01\x1F\x7F", "</string></plist>"})
        EXPECT_EQ(readBack(text), PropertyList(text)) << text;
}

TEST(AWrittenList, keeps_unusual_keys_and_their_order) {
    const Dictionary dictionary{{"z", 1},        {"", 2},        {"a", 3},
                                {"<&>\"'", 4},   {" blank ", 5}, {"\n", 6},
                                {"\xC3\xA9", 7}, {"CF$UID", 8},  {"A", 9}};
    EXPECT_EQ(readBack(dictionary), PropertyList(dictionary));
}

TEST(AWrittenList, keeps_empty_containers_and_empty_data) {
    EXPECT_EQ(readBack(Dictionary{}), PropertyList(Dictionary{}));
    EXPECT_EQ(readBack(Array{}), PropertyList(Array{}));
    EXPECT_EQ(readBack(Data{}), PropertyList(Data{}));
    EXPECT_EQ(readBack(Array{Array{}, Dictionary{}, Data{}, 1}),
              PropertyList(Array{Array{}, Dictionary{}, Data{}, 1}));
}

TEST(AWrittenList, keeps_data_of_many_lines) {
    Data data;
    for (int i = 0; i < 1000; ++i)
        data.push_back(static_cast<std::uint8_t>(i * 7));
    const Dictionary dictionary{{"outer", Dictionary{{"data", data}}}};
    EXPECT_EQ(readBack(dictionary), PropertyList(dictionary));
}

TEST(AWrittenList, keeps_dates_of_any_year_up_to_9999) {
    for (const double seconds : {0.0, -1.0, 978307199.0, 978307200.0, 978307201.0, 3e9, 4e9, -2e9,
                                 64092211200.0, -62135596800.0, 253402300799.0})
        EXPECT_EQ(readBack(Date{seconds}), PropertyList(Date{seconds})) << seconds;
}

TEST(AWrittenList, holds_dates_down_to_the_whole_second) {
    EXPECT_EQ(readBack(Date{1330837567.75}), PropertyList(Date{1330837567}));
    EXPECT_EQ(readBack(Date{-0.25}), PropertyList(Date{-1}));
}

TEST(AWrittenList, clamps_dates_outside_the_years_1_to_9999) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(readBack(Date{1e300}), PropertyList(Date{253402300799}));
    EXPECT_EQ(readBack(Date{-1e300}), PropertyList(Date{-62135596800}));
    EXPECT_EQ(readBack(Date{notANumber}), PropertyList(Date{-62135596800}));
}

TEST(AWrittenList, shows_a_date_as_an_iso_8601_instant) {
    EXPECT_NE(propertyListXml(Date{1330837567}).find("<date>2012-03-04T05:06:07Z</date>"),
              std::string::npos);
}

} // namespace
} // namespace noctara
