/// Reading of XML and binary property lists of other programs.
#include "phones/model/property_list_file.h"

#include "tests/phones/model/property_list_samples.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace noctara {
namespace {

/// The value of XML, or the string "refused: " and the error.
PropertyList valueOf(std::string_view content) {
    const ParsedPropertyList parsed = parsePropertyList(listOf(content));
    return parsed.value ? *parsed.value : PropertyList("refused: " + parsed.error);
}

TEST(AnXmlList, in_the_style_of_the_platform_is_read) {
    const ParsedPropertyList parsed =
        parsePropertyList("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                          "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                          "<plist version=\"1.0\">\n"
                          "<dict>\n"
                          "\t<key>Enabled</key>\n\t<true/>\n"
                          "\t<key>ScanInterval</key>\n\t<integer>3</integer>\n"
                          "\t<key>wake</key>\n"
                          "\t<array>\n"
                          "\t\t<dict>\n"
                          "\t\t\t<key>scheduledby</key>\n\t\t\t<string>com.example</string>\n"
                          "\t\t\t<key>time</key>\n\t\t\t<date>2012-03-04T05:06:07Z</date>\n"
                          "\t\t</dict>\n"
                          "\t</array>\n"
                          "\t<key>blob</key>\n\t<data>\n\tAAEC\n\t/w==\n\t</data>\n"
                          "\t<key>ratio</key>\n\t<real>0.5</real>\n"
                          "</dict>\n"
                          "</plist>\n");
    ASSERT_TRUE(parsed.value) << parsed.error;
    const Dictionary entry{{"scheduledby", "com.example"}, {"time", Date{1330837567}}};
    EXPECT_EQ(*parsed.value, (Dictionary{{"Enabled", true},
                                         {"ScanInterval", 3},
                                         {"wake", Array{entry}},
                                         {"blob", Data{0, 1, 2, 255}},
                                         {"ratio", 0.5}}));
}

TEST(AnXmlList, may_begin_with_a_byte_order_mark_blanks_or_the_value_itself) {
    for (const char* text : {"\xEF\xBB\xBF<plist><true/></plist>", " \n<plist><true/></plist>",
                             "<true/>", "<?xml version='1.0'?><plist><true></true></plist>"}) {
        const ParsedPropertyList parsed = parsePropertyList(text);
        ASSERT_TRUE(parsed.value) << text << ": " << parsed.error;
        EXPECT_EQ(*parsed.value, PropertyList(true)) << text;
    }
}

TEST(AnXmlList, may_hold_comments_and_character_data_that_look_like_tags) {
    EXPECT_EQ(valueOf("<!-- <array> \" --><array><!-- </array> --><?note x?><true/></array>"),
              PropertyList(Array{true}));
    EXPECT_EQ(valueOf("<string>a<![CDATA[<b>&amp;\"</b>]]>c<!-- </string> -->d</string>"),
              PropertyList("a<b>&amp;\"</b>cd"));
}

TEST(AnXmlList, may_hold_character_references) {
    EXPECT_EQ(valueOf("<string>&lt;&amp;&gt;&quot;&apos;&#65;&#x1F600;</string>"),
              PropertyList("<&>\"'A\xF0\x9F\x98\x80"));
    EXPECT_EQ(valueOf("<string>&#x00000041;&#0000000066;&amp;amp;</string>"),
              PropertyList("AB&amp;"));
    EXPECT_EQ(valueOf("<dict><key>a&amp;b</key><integer>&#53;</integer></dict>"),
              PropertyList(Dictionary{{"a&b", 5}}));
}

TEST(AnXmlList, with_a_reference_that_is_not_one_is_refused) {
    for (const char* text :
         {"&", "a &", "&amp", "&;", "&foo;", "&ampfoo;", "&ltx;", "&#;", "&#x;", "&# 65;", "&#+65;",
          "&#-1;", "&#x0x41;", "&#X41;", "&#0;", "&#x110000;", "&#4294967361;", "a & b;"})
        EXPECT_EQ(errorOf(listOf("<string>" + std::string(text) + "</string>")),
                  "not a property list")
            << text;
}

TEST(AnXmlList, has_integers_in_decimal_and_hexadecimal) {
    EXPECT_EQ(valueOf("<integer>-5</integer>"), PropertyList(-5));
    EXPECT_EQ(valueOf("<integer>+7</integer>"), PropertyList(7));
    EXPECT_EQ(valueOf("<integer>\n 42 </integer>"), PropertyList(42));
    EXPECT_EQ(valueOf("<integer>0x1F</integer>"), PropertyList(31));
    EXPECT_EQ(valueOf("<integer>-0x1F</integer>"), PropertyList(-31));
    EXPECT_EQ(valueOf("<integer>-9223372036854775808</integer>"),
              PropertyList(std::numeric_limits<std::int64_t>::min()));
}

TEST(AnXmlList, has_no_octal_integers) {
    EXPECT_EQ(valueOf("<integer>010</integer>"), PropertyList(10));
    EXPECT_EQ(valueOf("<integer>08</integer>"), PropertyList(8));
    EXPECT_EQ(valueOf("<integer>-0012</integer>"), PropertyList(-12));
    EXPECT_EQ(valueOf("<integer> +09 </integer>"), PropertyList(9));
    EXPECT_EQ(valueOf("<integer>000</integer>"), PropertyList(0));
    EXPECT_EQ(valueOf("<integer>-0</integer>"), PropertyList(0));
}

TEST(AnXmlList, keeps_the_low_64_bits_of_an_unsigned_integer) {
    EXPECT_EQ(valueOf("<integer>9223372036854775808</integer>"),
              PropertyList(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(valueOf("<integer>18446744073709551615</integer>"), PropertyList(-1));
}

TEST(AnXmlList, with_an_integer_over_64_bits_is_refused) {
    for (const char* integer : {"18446744073709551616", "99999999999999999999999",
                                "-9223372036854775809", "0x10000000000000000"})
        EXPECT_EQ(errorOf(listOf("<integer>" + std::string(integer) + "</integer>")),
                  "an integer over 64 bits")
            << integer;
}

TEST(AnXmlList, with_an_integer_that_is_not_one_is_refused) {
    for (const char* text : {"abc", "", " ", "12abc", "1.5", "- 5", "+-5", "0x", "--5"})
        EXPECT_EQ(errorOf(listOf("<integer>" + std::string(text) + "</integer>")),
                  "an invalid integer")
            << text;
    EXPECT_EQ(errorOf(listOf("<integer/>")), "an invalid integer");
}

TEST(AnXmlList, has_reals_of_every_kind) {
    EXPECT_EQ(valueOf("<real> -1.5 </real>"), PropertyList(-1.5));
    EXPECT_EQ(valueOf("<real>+2</real>"), PropertyList(2.0));
    EXPECT_EQ(valueOf("<real>1E-3</real>"), PropertyList(1e-3));
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(valueOf("<real>+infinity</real>"), PropertyList(infinity));
    EXPECT_EQ(valueOf("<real>-inf</real>"), PropertyList(-infinity));
    const PropertyList notANumber = valueOf("<real>nan</real>");
    ASSERT_NE(notANumber.as<double>(), nullptr);
    EXPECT_TRUE(std::isnan(*notANumber.as<double>()));
}

TEST(AnXmlList, with_a_real_that_is_not_one_is_refused) {
    for (const char* text : {"abc", "", "1,5", "1.5x", "+-1", "0x1p4"})
        EXPECT_EQ(errorOf(listOf("<real>" + std::string(text) + "</real>")),
                  "an invalid real number")
            << text;
}

TEST(AnXmlList, has_data_in_lines_and_without_padding) {
    EXPECT_EQ(valueOf("<data/>"), PropertyList(Data{}));
    EXPECT_EQ(valueOf("<data>\n\tAA\n\tEC/w== </data>"), PropertyList(Data{0, 1, 2, 255}));
    EXPECT_EQ(valueOf("<data>AAE</data>"), PropertyList(Data{0, 1}));
}

TEST(AnXmlList, with_data_that_is_not_base64_is_refused) {
    for (const char* text : {"A", "AA*A", "AA==AA", "AAA==", "AA.."})
        EXPECT_EQ(errorOf(listOf("<data>" + std::string(text) + "</data>")), "invalid data")
            << text;
}

TEST(AnXmlList, keeps_blanks_line_ends_and_control_characters_of_text) {
    for (const char* text : {" ", " a ", "\n", "a\r\nb\rc", "\x01\x1F\x7F", "\xEF\xBF\xBF"}) {
        EXPECT_EQ(valueOf("<string>" + std::string(text) + "</string>"), PropertyList(text));
        EXPECT_EQ(valueOf("<dict><key>" + std::string(text) + "</key><true/></dict>"),
                  PropertyList(Dictionary{{text, true}}));
    }
}

TEST(AnXmlList, has_dates_far_from_now) {
    EXPECT_EQ(valueOf("<date>4001-01-01T00:00:00Z</date>"), PropertyList(Date{64092211200}));
    EXPECT_EQ(valueOf("<date>0001-01-01T00:00:00Z</date>"), PropertyList(Date{-62135596800}));
    EXPECT_EQ(valueOf("<date> 1999-12-31T23:59:59Z\n</date>"), PropertyList(Date{946684799}));
}

TEST(AnXmlList, with_a_date_that_is_not_one_is_refused) {
    for (const char* text :
         {"abc", "", "2012-13-01T00:00:00Z", "2012-02-30T00:00:00Z", "2012-03-04T24:00:00Z",
          "2012-03-04T05:06:60Z", "2012-03-04", "2012-03-04T05:06:07", "2012-03-04T05:06:07.5Z",
          "0000-01-01T00:00:00Z", "10000-01-01T00:00:00Z", "2012-03-04T05:06:07Zx",
          "2012- 3- 4T 5: 6: 7Z", "+201-03-04T05:06:07Z", "2012-03-04T05:06:-7Z"})
        EXPECT_EQ(errorOf(listOf("<date>" + std::string(text) + "</date>")), "an invalid date")
            << text;
}

TEST(AnXmlList, keeps_the_order_of_its_keys) {
    EXPECT_EQ(valueOf("<dict><key>b</key><true/><key>a</key><true/><key>c</key><true/></dict>"),
              PropertyList(Dictionary{{"b", true}, {"a", true}, {"c", true}}));
}

TEST(AnXmlList, with_a_key_twice_keeps_the_last_value_in_the_first_place) {
    EXPECT_EQ(valueOf("<dict><key>a</key><integer>1</integer><key>b</key><true/>"
                      "<key>a</key><integer>2</integer></dict>"),
              PropertyList(Dictionary{{"a", 2}, {"b", true}}));
}

TEST(AnXmlList, ends_with_its_closing_tag) {
    EXPECT_EQ(*parsePropertyList("<plist><true/></plist>junk <array>").value, PropertyList(true));
    EXPECT_EQ(*parsePropertyList("<plist><true/></plist>" + std::string(50, '\0')).value,
              PropertyList(true));
}

TEST(AnXmlList, with_text_that_is_not_utf_8_is_refused) {
    for (const char* text : {"\xFF\xFE", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                             "\xE9t\xE9", "\x80", "\xE0\x80\x80", "\xF0\x80\x80\x80"}) {
        EXPECT_EQ(errorOf(listOf("<string>" + std::string(text) + "</string>")),
                  "text that is not UTF-8");
        EXPECT_EQ(errorOf(listOf("<dict><key>" + std::string(text) + "</key><true/></dict>")),
                  "text that is not UTF-8");
    }
    EXPECT_EQ(errorOf(listOf("<string>&#xD800;</string>")), "text that is not UTF-8");
}

TEST(AnXmlList, with_a_nul_byte_is_refused) {
    EXPECT_EQ(errorOf(listOf(std::string("<string>a\0b</string>", 20))),
              "damaged or incomplete XML");
}

TEST(ABinaryList, has_every_type) {
    const std::string whole = binaryOf(
        {byte(0xAF) + byte(0x10) + byte(16) + "\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C" +
             "\x0D\x0E\x0F\x10",
         byte(0x08), byte(0x09), byte(0x10) + byte(255), byte(0x12) + bigEndian(0xFFFFFFFF, 4),
         byte(0x13) + bigEndian(~std::uint64_t{4}, 8),
         byte(0x14) + bigEndian(0, 8) + bigEndian(~std::uint64_t{0}, 8),
         byte(0x22) + bigEndian(std::bit_cast<std::uint32_t>(1.5F), 4), binaryReal(0x23, 1.0 / 3),
         binaryReal(0x33, 352530367.25), byte(0x42) + byte(0) + byte(255), byte(0x52) + "hi",
         byte(0x63) + bigEndian(0xE9, 2) + bigEndian(0xD83D, 2) + bigEndian(0xDE00, 2),
         byte(0x81) + bigEndian(300, 2), byte(0xC1) + byte(2), byte(0xD0),
         byte(0x5F) + byte(0x10) + byte(0)});
    const ParsedPropertyList parsed = parsePropertyList(whole);
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(
        *parsed.value,
        PropertyList(Array{false, true, 255, std::int64_t{0xFFFFFFFF}, -5, -1, 1.5, 1.0 / 3,
                           Date{1330837567.25}, Data{0, 255}, "hi", "\xC3\xA9\xF0\x9F\x98\x80",
                           Dictionary{{"CF$UID", 300}}, Array{true}, Dictionary{}, ""}));
}

TEST(ABinaryList, keeps_the_fraction_of_dates_before_2001) {
    EXPECT_EQ(*parsePropertyList(binaryOf({binaryReal(0x33, -1.75)})).value,
              PropertyList(Date{978307200 - 1.75}));
    EXPECT_EQ(*parsePropertyList(binaryOf({binaryReal(0x33, 63e9)})).value,
              PropertyList(Date{978307200 + 63e9}));
}

TEST(ABinaryList, with_a_key_twice_keeps_the_last_value_in_the_first_place) {
    EXPECT_EQ(
        *parsePropertyList(binaryOf({byte(0xD3) + "\x01\x02\x01\x03\x04\x03", byte(0x51) + "a",
                                     byte(0x51) + "b", byte(0x10) + byte(7), binaryTrue}))
             .value,
        PropertyList(Dictionary{{"a", 7}, {"b", true}}));
    EXPECT_EQ(*parsePropertyList(binaryOf({byte(0xD2) + "\x01\x01\x02\x03", byte(0x51) + "a",
                                           binaryTrue, byte(0x08)}))
                   .value,
              PropertyList(Dictionary{{"a", false}}));
}

} // namespace
} // namespace noctara
