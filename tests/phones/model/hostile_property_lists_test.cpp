/// Property lists that are damaged, or made to exhaust the memory or the stack of their reader.
#include "phones/model/property_list_file.h"

#include "tests/phones/model/property_list_samples.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {
namespace {

TEST(DamagedXml, is_refused_with_a_reason) {
    for (const char* text : {"hello",
                             " ",
                             "\n",
                             "<",
                             "<>",
                             "< true/>",
                             "<plist></plist>",
                             "<plist/>",
                             "<PLIST/>",
                             "</plist>",
                             "<foo/>",
                             "<plist><foo>1</foo></plist>",
                             "<plist>abc<true/></plist>",
                             "<plist><dict><true/></dict></plist>",
                             "<plist><dict><key>a</key></dict></plist>",
                             "<plist><dict><key>a</key><key>b</key><true/></dict></plist>",
                             "<plist><dict><key>a</key>b<true/></dict></plist>",
                             "<plist><dict><key>a</key><true/></plist>",
                             "<plist><key>a</key></plist>",
                             "<plist><true>a</true></plist>",
                             "<plist><true/><true/></plist>",
                             "<plist><true/>abc</plist>",
                             "<true/>abc",
                             "<true/><false/>",
                             "<plist><dict><![CDATA[ ]]></dict></plist>",
                             "<plist><string>a<true/></string></plist>",
                             "<plist><![CDATA[abc]]><true/></plist>",
                             "abc<plist><true/></plist>",
                             "<plist><array></dict></plist>",
                             "<plist></array></plist>",
                             "<plist><array><plist><true/></plist></array></plist>",
                             "<plist><string>a & b</string></plist>",
                             "<plist><string>&foo;</string></plist>",
                             "<plist><true/",
                             "<!-- ",
                             "<![CDATA[",
                             "<?xml",
                             "<!DOCTYPE",
                             "<!FOO><plist/>",
                             "(old, style)",
                             "{ old = style; }",
                             "bplist",
                             "bplist00",
                             "bplist01xxxxxxxxxxxxxxxxxxxxx"})
        EXPECT_NE(errorOf(text), "") << text;
    EXPECT_EQ(errorOf("hello"), "not a property list");
    EXPECT_EQ(errorOf(""), "empty");
    EXPECT_EQ(errorOf(std::string(5000, '\0')), "not a property list");
}

TEST(DamagedXml, cut_short_anywhere_is_refused) {
    const std::string whole = propertyListXml(everyType);
    ASSERT_EQ(errorOf(whole), "");
    const std::size_t end = whole.rfind('>');
    for (std::size_t size = 0; size <= end; ++size)
        ASSERT_NE(errorOf(whole.substr(0, size)), "") << size;
    EXPECT_EQ(errorOf(whole.substr(0, end)), "damaged or incomplete XML");
}

TEST(DamagedBinary, cut_short_anywhere_is_refused) {
    const std::string whole = binaryOf({byte(0xD1) + byte(1) + byte(2), byte(0x51) + "a",
                                        byte(0xA2) + byte(3) + byte(3), binaryReal(0x33, 5)});
    EXPECT_EQ(errorOf(whole), "");
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_NE(errorOf(whole.substr(0, size)), "") << size;
}

TEST(DamagedBinary, with_a_bad_trailer_is_refused) {
    const std::vector<void (*)(Trailer&)> damages{
        [](Trailer& trailer) { trailer.offsetSize = 0; },
        [](Trailer& trailer) { trailer.offsetSize = 9; },
        [](Trailer& trailer) { trailer.referenceSize = 0; },
        [](Trailer& trailer) { trailer.referenceSize = 255; },
        [](Trailer& trailer) { trailer.count = 0; },
        [](Trailer& trailer) { trailer.count = 1000; },
        [](Trailer& trailer) { trailer.count = std::uint64_t{1} << 62; },
        [](Trailer& trailer) { trailer.count = ~std::uint64_t{0}; },
        [](Trailer& trailer) { trailer.top = 2; },
        [](Trailer& trailer) { trailer.top = ~std::uint64_t{0}; },
        [](Trailer& trailer) { trailer.table = 0; },
        [](Trailer& trailer) { trailer.table = 100000; },
        [](Trailer& trailer) { trailer.table = ~std::uint64_t{0}; },
    };
    for (std::size_t i = 0; i < damages.size(); ++i)
        EXPECT_NE(errorOf(binaryOf({byte(0xA1) + byte(1), binaryTrue}, damages[i])), "") << i;
}

TEST(DamagedBinary, with_objects_that_reach_out_of_the_file_is_refused) {
    const std::string huge = byte(0x13) + bigEndian(~std::uint64_t{0} / 2, 8);
    for (const std::string& object :
         {byte(0xA1) + byte(7), byte(0x5F) + byte(0x10) + byte(200), byte(0x5F) + huge,
          byte(0x4F) + huge, byte(0x6F) + huge, byte(0xAF) + huge, byte(0xDF) + huge,
          byte(0x5F) + byte(0x14) + std::string(16, '\0'), byte(0x13), byte(0x33), byte(0x8F),
          byte(0x5F), byte(0xAF) + byte(0x13), byte(0x15) + std::string(32, '\1')})
        EXPECT_NE(errorOf(binaryOf({object})), "");
}

TEST(DamagedBinary, with_objects_of_unknown_kinds_is_refused) {
    for (const unsigned marker :
         {0x00u, 0x0Cu, 0x0Fu, 0x21u, 0x32u, 0x70u, 0x90u, 0xB0u, 0xE0u, 0xFFu})
        EXPECT_NE(errorOf(binaryOf({byte(marker) + std::string(20, '\0')})), "") << marker;
}

TEST(DamagedBinary, with_a_key_that_is_not_text_is_refused) {
    EXPECT_NE(errorOf(binaryOf({byte(0xD1) + byte(1) + byte(2), byte(0x10) + byte(5), binaryTrue})),
              "");
    EXPECT_NE(errorOf(binaryOf({byte(0xD1) + byte(1) + byte(2), byte(0xA0), binaryTrue})), "");
}

TEST(DamagedBinary, with_a_date_out_of_range_is_refused) {
    using Limits = std::numeric_limits<double>;
    for (const double seconds : {1e300, -1e300, Limits::quiet_NaN(), Limits::infinity(), 3e11})
        EXPECT_EQ(errorOf(binaryOf({binaryReal(0x33, seconds)})), "an invalid date") << seconds;
}

TEST(DamagedBinary, with_text_that_is_not_utf_8_is_refused) {
    EXPECT_EQ(errorOf(binaryOf({byte(0x52) + "\xFF\xFE"})), "text that is not UTF-8");
}

TEST(DamagedBinary, with_a_nul_or_half_a_character_is_refused) {
    const auto utf16 = [](std::initializer_list<unsigned> units) {
        std::string text = byte(0x60 + static_cast<unsigned>(units.size()));
        for (const unsigned unit : units)
            text += bigEndian(unit, 2);
        return text;
    };
    for (const std::string& text :
         {byte(0x52) + "a" + byte(0), utf16({0x61, 0}), utf16({0xD83D}), utf16({0xDE00, 0xD83D}),
          utf16({0xD83D, 0x61}), utf16({0x61, 0xDE00})}) {
        EXPECT_EQ(errorOf(binaryOf({text})), "text with a NUL or an incomplete character");
        EXPECT_EQ(errorOf(binaryOf({byte(0xD1) + byte(1) + byte(2), text, binaryTrue})),
                  "text with a NUL or an incomplete character");
    }
    // The bytes after the text look like the other half.
    EXPECT_EQ(errorOf(binaryOf({utf16({0xD83D}), byte(0xDE) + byte(0)})),
              "text with a NUL or an incomplete character");
    EXPECT_EQ(errorOf(binaryOf({utf16({0xD83D, 0xDE00, 0x61})})), "");
}

TEST(DamagedBinary, with_any_one_byte_changed_is_refused_or_read) {
    const std::string whole =
        binaryOf({byte(0xD2) + byte(1) + byte(2) + byte(3) + byte(4), byte(0x51) + "a",
                  byte(0x61) + bigEndian(0xE9, 2), byte(0xA2) + byte(5) + byte(6),
                  byte(0x42) + "xy", binaryReal(0x33, 5), byte(0x11) + bigEndian(300, 2)});
    ASSERT_EQ(errorOf(whole), "");
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (unsigned value = 0; value < 256; ++value) {
            std::string damaged = whole;
            damaged[at] = static_cast<char>(value);
            errorOf(damaged);
        }
}

TEST(AHostileList, of_more_than_1_mib_is_refused) {
    const std::string justFits =
        "<plist><string>" + std::string((1 << 20) - 32, 'x') + "</string></plist>";
    ASSERT_EQ(justFits.size(), std::size_t{1} << 20);
    EXPECT_EQ(errorOf(justFits), "");
    EXPECT_EQ(errorOf(justFits + "\n"), "larger than 1 MiB");
}

TEST(AHostileList, of_xml_may_nest_64_levels_but_not_65) {
    const auto nested = [](std::string_view open, std::string_view close, std::size_t levels) {
        return listOf(repeated(open, levels) + "<true/>" + repeated(close, levels));
    };
    EXPECT_EQ(errorOf(nested("<array>", "</array>", 64)), "");
    EXPECT_EQ(errorOf(nested("<array>", "</array>", 65)), "nested deeper than 64 levels");
    EXPECT_EQ(errorOf(nested("<dict><key>a</key>", "</dict>", 64)), "");
    EXPECT_EQ(errorOf(nested("<dict><key>a</key>", "</dict>", 65)), "nested deeper than 64 levels");
    EXPECT_EQ(errorOf(nested("<array>", "</array>", 60000)), "nested deeper than 64 levels");
    EXPECT_EQ(errorOf(nested("<array><array/><dict />", "</array>", 63)), "");
}

TEST(AHostileList, of_unclosed_nested_xml_is_refused) {
    for (const std::string& text :
         {repeated("<array>", 149000), repeated("<array >", 130000),
          "<plist>" + repeated("<array><!--</array>-->", 40000),
          "<plist>" + repeated("<array><string><![CDATA[</array>]]></string>", 20000)})
        EXPECT_EQ(errorOf(text), "damaged or incomplete XML");
}

TEST(AHostileList, may_not_hide_closing_tags_from_the_count_of_its_levels) {
    for (const char* open :
         {"<array a=\"></array>\">", "<array><!-- > </array> -->", "<array><?a > </array> ?>",
          "<array><?a \"?></array>\"?>", "<array><!DOCTYPE plist [<!-- > </array> -->]>",
          "<array><!-- </plist> -->"})
        EXPECT_NE(errorOf("<plist>" + repeated(open, 65) + "<true/>" + repeated("</array>", 65) +
                          "</plist>"),
                  "")
            << open;
}

TEST(AHostileList, of_binary_arrays_may_nest_64_levels_but_not_65) {
    const auto nested = [](unsigned levels) {
        std::vector<std::string> objects;
        for (unsigned i = 0; i < levels; ++i)
            objects.push_back(byte(0xA1) + bigEndian(i + 1, 3));
        objects.push_back(binaryTrue);
        return binaryOf(objects, [](Trailer& trailer) { trailer.referenceSize = 3; });
    };
    EXPECT_EQ(errorOf(nested(64)), "");
    EXPECT_EQ(errorOf(nested(65)), "nested deeper than 64 levels");
    EXPECT_EQ(errorOf(nested(140000)), "nested deeper than 64 levels");
}

TEST(AHostileList, may_end_its_64_levels_with_an_empty_array) {
    const auto nested = [](unsigned levels) {
        std::vector<std::string> objects;
        for (unsigned i = 1; i < levels; ++i)
            objects.push_back(byte(0xA1) + byte(i));
        objects.push_back(byte(0xA0));
        return binaryOf(objects);
    };
    EXPECT_EQ(errorOf(nested(64)), "");
    EXPECT_EQ(errorOf(nested(65)), "nested deeper than 64 levels");
}

TEST(AHostileList, that_nests_too_deep_on_a_second_way_only_is_refused) {
    // The first reference leads to the middle of the chain, the second to its start.
    std::vector<std::string> objects{byte(0xA2) + byte(40) + byte(1)};
    for (unsigned i = 1; i <= 80; ++i)
        objects.push_back(byte(0xA1) + byte(i + 1));
    objects.push_back(binaryTrue);
    EXPECT_EQ(errorOf(binaryOf(objects)), "nested deeper than 64 levels");
}

TEST(AHostileList, with_a_reference_cycle_is_refused) {
    const std::string reason = "nested deeper than 64 levels";
    EXPECT_EQ(errorOf(binaryOf({byte(0xA1) + byte(0)})), reason);
    EXPECT_EQ(errorOf(binaryOf({byte(0xA1) + byte(1), byte(0xA2) + byte(2) + byte(0), binaryTrue})),
              reason);
    EXPECT_EQ(errorOf(binaryOf({byte(0xD1) + byte(1) + byte(0), byte(0x51) + "a"})), reason);
}

TEST(AHostileList, that_expands_exponentially_is_refused_at_once) {
    std::vector<std::string> objects;
    for (unsigned i = 0; i < 50; ++i)
        objects.push_back(byte(0xAA) + repeated(byte(i + 1), 10));
    objects.push_back(binaryTrue);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(errorOf(binaryOf(objects)), "expands to more than 16 MiB");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(AHostileList, that_copies_one_long_text_many_times_is_refused) {
    const std::string references = repeated(byte(1), 1000);
    EXPECT_EQ(errorOf(binaryOf(
                  {byte(0xAF) + byte(0x11) + bigEndian(1000, 2) + references,
                   byte(0x5F) + byte(0x12) + bigEndian(500000, 4) + std::string(500000, 'x')})),
              "expands to more than 16 MiB");
}

TEST(AHostileList, with_shared_values_that_stay_small_is_read) {
    EXPECT_EQ(*parsePropertyList(binaryOf({byte(0xA2) + byte(1) + byte(1),
                                           byte(0xA2) + byte(2) + byte(2), binaryTrue}))
                   .value,
              (PropertyList(Array{Array{true, true}, Array{true, true}})));
}

TEST(AHostileList, with_too_many_keys_in_one_dictionary_is_refused) {
    const auto dictionary = [](int keys) {
        std::string content;
        for (int i = 0; i < keys; ++i)
            content += "<key>" + std::to_string(i) + "</key><true/>";
        return listOf("<dict>" + content + "</dict>");
    };
    EXPECT_EQ(errorOf(dictionary(4096)), "");
    EXPECT_EQ(errorOf(dictionary(4097)), "more than 4096 keys in one dictionary");
}

} // namespace
} // namespace noctara
