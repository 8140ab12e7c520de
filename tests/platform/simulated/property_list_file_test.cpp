/// Property lists of this and other writers, damaged and hostile ones included.
#include "platform/simulated/property_list_file.h"

#include <bit>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctara {
namespace {

namespace fs = std::filesystem;

std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

std::string listOf(std::string_view content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" +
           std::string(content) + "</plist>\n";
}

std::string errorOf(std::string_view bytes) {
    const ParsedPropertyList parsed = parsePropertyList(bytes);
    EXPECT_NE(parsed.value.has_value(), !parsed.error.empty());
    return parsed.error;
}

/// The value of XML, or the string "refused: " and the error.
PropertyList valueOf(std::string_view content) {
    const ParsedPropertyList parsed = parsePropertyList(listOf(content));
    return parsed.value ? *parsed.value : PropertyList("refused: " + parsed.error);
}

PropertyList readBack(const PropertyList& value) {
    const ParsedPropertyList parsed = parsePropertyList(propertyListXml(value));
    return parsed.value ? *parsed.value : PropertyList("refused: " + parsed.error);
}

std::string bigEndian(std::uint64_t number, unsigned size) {
    std::string bytes;
    for (unsigned i = size; i-- > 0;)
        bytes += i < 8 ? static_cast<char>(number >> (8 * i) & 0xFF) : '\0';
    return bytes;
}

std::string byte(unsigned value) {
    return bigEndian(value, 1);
}

struct Trailer {
    unsigned offsetSize = 3;
    unsigned referenceSize = 1;
    std::uint64_t count = 0;
    std::uint64_t top = 0;
    std::uint64_t table = 0;
};

/// A binary list of these objects, each with its marker; `adjust` may falsify the trailer.
template <typename Adjust>
std::string binaryOf(const std::vector<std::string>& objects, Adjust adjust) {
    std::string bytes = "bplist00";
    std::vector<std::size_t> offsets;
    for (const auto& object : objects) {
        offsets.push_back(bytes.size());
        bytes += object;
    }
    Trailer trailer;
    trailer.count = objects.size();
    trailer.table = bytes.size();
    adjust(trailer);
    for (const std::size_t offset : offsets)
        bytes += bigEndian(offset, trailer.offsetSize);
    return bytes + std::string(6, '\0') + byte(trailer.offsetSize) + byte(trailer.referenceSize) +
           bigEndian(trailer.count, 8) + bigEndian(trailer.top, 8) + bigEndian(trailer.table, 8);
}

std::string binaryOf(const std::vector<std::string>& objects) {
    return binaryOf(objects, [](Trailer&) {});
}

std::string binaryReal(unsigned marker, double value) {
    return byte(marker) + bigEndian(std::bit_cast<std::uint64_t>(value), 8);
}

const std::string binaryTrue = byte(0x09);

class PropertyListFile : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "property-list-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        file = folder / "settings.plist";
    }

    void TearDown() override {
        if (!folder.empty())
            fs::remove_all(folder);
    }

    void put(std::string_view content) const { std::ofstream(file, std::ios::binary) << content; }

    std::string content() const {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder))
            all.push_back(entry.path().filename().string());
        return all;
    }

    /// Runs a shell command within the folder; true when it ended with 0.
    bool run(const std::string& command) const {
        return std::system(("cd '" + folder.string() + "' && " + command).c_str()) == 0;
    }

    static bool hasProgram(const std::string& name) {
        return std::system((name + " >/dev/null 2>&1").c_str()) == 0;
    }

    fs::path folder;
    fs::path file;
};

const Dictionary everyType{
    {"yes", true},
    {"no", false},
    {"integer", -42},
    {"real", 0.1},
    {"text", "<&>\"' \xF0\x9F\x98\x80\nnext"},
    {"date", Date{1330837567}},
    {"data", Data{0, 1, 2, 255}},
    {"array", Array{1, "two", Array{}, Dictionary{{"three", 3}}}},
    {"empty", Dictionary{}},
};

// What is written reads back equal.

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

// XML of other writers.

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
    EXPECT_EQ(valueOf("<!-- <array> \" --><array><!-- </array> --><?note <x> ?></array>"),
              PropertyList("refused: not a property list"));
    EXPECT_EQ(valueOf("<!-- <array> \" --><array><!-- </array> --><?note x?><true/></array>"),
              PropertyList(Array{true}));
    EXPECT_EQ(valueOf("<string>a<![CDATA[<b>&amp;\"</b>]]>c<!-- </string> -->d</string>"),
              PropertyList("a<b>&amp;\"</b>cd"));
}

TEST(AnXmlList, may_hold_character_references) {
    EXPECT_EQ(valueOf("<string>&lt;&amp;&gt;&quot;&apos;&#65;&#x1F600;</string>"),
              PropertyList("<&>\"'A\xF0\x9F\x98\x80"));
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
                  "an integer that is not one")
            << text;
    EXPECT_EQ(errorOf(listOf("<integer/>")), "not a property list");
    EXPECT_EQ(errorOf(listOf("<integer>5<!-- -->6</integer>")), "not a property list");
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
                  "a real that is not one")
            << text;
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
          "0000-01-01T00:00:00Z", "10000-01-01T00:00:00Z", "2012-03-04T05:06:07Zx"})
        EXPECT_EQ(errorOf(listOf("<date>" + std::string(text) + "</date>")),
                  "a date that is not one")
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

TEST(AnXmlList, with_more_than_one_value_is_refused) {
    EXPECT_EQ(errorOf("<plist><true/><false/></plist>"), "more than one value");
    EXPECT_EQ(errorOf("<plist><array/><true/></plist>"), "more than one value");
    EXPECT_EQ(errorOf(repeated("<array/>", 100000)), "more than one value");
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
    EXPECT_EQ(errorOf(listOf(std::string("<string>a\0b</string>", 20))), "not a property list");
}

// Damage.

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
    const std::size_t end = whole.find("</plist>") + std::string("</plist>").size();
    for (std::size_t size = 0; size < end; ++size)
        ASSERT_NE(errorOf(whole.substr(0, size)), "") << size;
    EXPECT_EQ(errorOf(whole.substr(0, end)), "");
}

TEST(DamagedXml, that_hides_tags_in_quotations_or_a_dtd_is_refused) {
    for (const char* text :
         {"<?x \" ?> \" ?><plist><true/></plist>", "<!DOCTYPE plist [ > ]><plist><true/></plist>",
          "<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>&a;</string></plist>",
          "<plist a=\">\"><true/></plist>", "<plist a='\"'><true/></plist>",
          "<plist a='\"' b='\"'><true/></plist>", "<plist a='><true/></plist>",
          "<plist <true/></plist>"})
        EXPECT_EQ(errorOf(text), "not a property list") << text;
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
        EXPECT_EQ(errorOf(binaryOf({byte(0xA1) + byte(1), binaryTrue}, damages[i])),
                  "damaged binary property list")
            << i;
}

TEST(DamagedBinary, with_objects_that_reach_out_of_the_file_is_refused) {
    const std::string huge = byte(0x13) + bigEndian(~std::uint64_t{0} / 2, 8);
    for (const std::string& object :
         {byte(0xA1) + byte(7), byte(0x5F) + byte(0x10) + byte(200), byte(0x5F) + huge,
          byte(0x4F) + huge, byte(0x6F) + huge, byte(0xAF) + huge, byte(0xDF) + huge,
          byte(0x5F) + byte(0x14) + std::string(16, '\0'), byte(0x13), byte(0x33), byte(0x8F),
          byte(0x5F), byte(0xAF) + byte(0x13), byte(0x15) + std::string(32, '\1')})
        EXPECT_EQ(errorOf(binaryOf({object})), "damaged binary property list");
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
        EXPECT_EQ(errorOf(binaryOf({binaryReal(0x33, seconds)})),
                  "a date outside the years 1 to 9999")
            << seconds;
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
        EXPECT_EQ(errorOf(binaryOf({text})), "text with a NUL or half a character");
        EXPECT_EQ(errorOf(binaryOf({byte(0xD1) + byte(1) + byte(2), text, binaryTrue})),
                  "text with a NUL or half a character");
    }
    // What lies behind the text looks like the other half.
    EXPECT_EQ(errorOf(binaryOf({utf16({0xD83D}), byte(0xDE) + byte(0)})),
              "text with a NUL or half a character");
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

// Hostile lists.

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
}

TEST(AHostileList, of_unclosed_nested_xml_is_refused) {
    EXPECT_EQ(errorOf(repeated("<array>", 149000)), "nested deeper than 64 levels");
    EXPECT_EQ(errorOf(repeated("<array >", 130000)), "nested deeper than 64 levels");
    EXPECT_EQ(errorOf("<plist>" + repeated("<array foo><!--</array>-->", 40000)),
              "nested deeper than 64 levels");
    EXPECT_EQ(errorOf("<plist>" + repeated("<array><string><![CDATA[</array>]]></string>", 20000)),
              "nested deeper than 64 levels");
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
    // The first reference leads straight to the chain's middle, the second through all of it.
    std::vector<std::string> objects{byte(0xA2) + byte(40) + byte(1)};
    for (unsigned i = 1; i <= 80; ++i)
        objects.push_back(byte(0xA1) + byte(i + 1));
    objects.push_back(binaryTrue);
    EXPECT_EQ(errorOf(binaryOf(objects)), "nested deeper than 64 levels");
}

TEST(AHostileList, with_a_reference_cycle_is_refused) {
    const std::string reason = "a value that contains itself";
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

// The binary form.

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

// Files.

TEST_F(PropertyListFile, that_was_written_reads_back_equal) {
    ASSERT_TRUE(writePropertyListFile(file, everyType));
    const ParsedPropertyList parsed = readPropertyListFile(file);
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(*parsed.value, PropertyList(everyType));
    EXPECT_EQ(content(), propertyListXml(everyType));
    EXPECT_EQ(names(), std::vector<std::string>{"settings.plist"});
}

TEST_F(PropertyListFile, that_is_missing_is_no_such_file) {
    EXPECT_EQ(readPropertyListFile(file).error, "no such file");
    EXPECT_EQ(readPropertyListFile(folder / "none" / "x").error, "no such file");
    EXPECT_FALSE(readPropertyListFile(file).value);
}

TEST_F(PropertyListFile, that_is_empty_is_refused) {
    put("");
    EXPECT_EQ(readPropertyListFile(file).error, "empty");
}

TEST_F(PropertyListFile, that_is_a_folder_is_refused) {
    EXPECT_EQ(readPropertyListFile(folder).error, "a folder, not a file");
}

TEST_F(PropertyListFile, that_is_a_named_pipe_is_refused_without_waiting) {
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(readPropertyListFile(file).error, "not a regular file");
}

TEST_F(PropertyListFile, beneath_a_file_is_refused_with_the_system_error) {
    put("x");
    EXPECT_EQ(readPropertyListFile(file / "below").error, "Not a directory");
}

TEST_F(PropertyListFile, of_more_than_1_mib_is_refused) {
    put("<plist><string>" + std::string(1 << 20, 'x') + "</string></plist>");
    EXPECT_EQ(readPropertyListFile(file).error, "larger than 1 MiB");
}

TEST_F(PropertyListFile, keeps_its_mode_when_it_is_written_again) {
    put("old");
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    ASSERT_TRUE(writePropertyListFile(file, {{"a", 1}}));
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(PropertyListFile, when_new_has_the_mode_of_any_new_file) {
    const mode_t before = ::umask(027);
    const bool written = writePropertyListFile(file, {{"a", 1}});
    ::umask(before);
    ASSERT_TRUE(written);
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(PropertyListFile, is_replaced_not_overwritten) {
    put("old");
    fs::create_hard_link(file, folder / "other-name");
    ASSERT_TRUE(writePropertyListFile(file, {{"a", 1}}));
    std::ifstream stream(folder / "other-name");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), "old");
}

TEST_F(PropertyListFile, of_a_bare_name_is_written_in_the_current_folder) {
    const fs::path before = fs::current_path();
    fs::current_path(folder);
    const bool written = writePropertyListFile("settings.plist", {{"a", 1}});
    fs::current_path(before);
    EXPECT_TRUE(written);
    EXPECT_TRUE(readPropertyListFile(file).value);
}

TEST_F(PropertyListFile, in_a_missing_folder_is_not_written) {
    EXPECT_FALSE(writePropertyListFile(folder / "none" / "settings.plist", {{"a", 1}}));
    EXPECT_FALSE(fs::exists(folder / "none"));
    EXPECT_TRUE(names().empty());
}

TEST_F(PropertyListFile, in_place_of_a_folder_is_not_written) {
    fs::create_directory(file);
    EXPECT_FALSE(writePropertyListFile(file, {{"a", 1}}));
    EXPECT_TRUE(fs::is_directory(file));
    EXPECT_EQ(names(), std::vector<std::string>{"settings.plist"});
}

TEST_F(PropertyListFile, is_as_it_was_after_a_write_that_failed_midway) {
    ASSERT_TRUE(writePropertyListFile(file, {{"a", "old"}}));
    const std::string old = content();

    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = before;
    small.rlim_cur = 4096;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool written = writePropertyListFile(file, {{"a", std::string(20000, 'x')}});
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);

    EXPECT_FALSE(written);
    EXPECT_EQ(content(), old);
    EXPECT_EQ(names(), std::vector<std::string>{"settings.plist"});
}

TEST_F(PropertyListFile, that_could_not_be_read_back_is_not_written) {
    ASSERT_TRUE(writePropertyListFile(file, {{"a", "old"}}));
    const std::string old = content();
    PropertyList deep = true;
    for (int i = 0; i < 64; ++i)
        deep = Array{deep};
    EXPECT_FALSE(writePropertyListFile(file, {{"a", std::string(1 << 20, 'x')}}));
    EXPECT_FALSE(writePropertyListFile(file, {{"a", deep}}));
    EXPECT_FALSE(writePropertyListFile(file, {{"a", "\xFF"}}));
    EXPECT_EQ(content(), old);
    EXPECT_EQ(names(), std::vector<std::string>{"settings.plist"});
}

// Files of other programs.

const Dictionary plainTypes{
    {"zeta", true},
    {"alpha", -42},
    {"real", 0.1},
    {"text", "<&>\"' \xF0\x9F\x98\x80 \xC3\xA9"},
    {"date", Date{1330837567}},
    {"data", Data{0, 1, 2, 255}},
    {"array", Array{1, "two", Array{}, Dictionary{{"three", 3}}}},
    {"large", std::int64_t{1} << 40},
};

TEST_F(PropertyListFile, made_binary_by_plistutil_is_read) {
    if (!hasProgram("plistutil --version"))
        GTEST_SKIP() << "plistutil is not installed";
    ASSERT_TRUE(writePropertyListFile(file, plainTypes));
    ASSERT_TRUE(run("plistutil -i settings.plist -f bin -o binary.plist"));
    file = folder / "binary.plist";
    ASSERT_EQ(content().substr(0, 8), "bplist00");
    const ParsedPropertyList parsed = readPropertyListFile(file);
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(*parsed.value, PropertyList(plainTypes));
}

class PythonPropertyListFile : public PropertyListFile {
protected:
    void SetUp() override {
        PropertyListFile::SetUp();
        if (!hasProgram("python3 -c 'import plistlib'"))
            GTEST_SKIP() << "python3 with plistlib is not installed";
    }

    void runPython(const std::string& script) const {
        std::ofstream(folder / "script.py") << script;
        ASSERT_TRUE(run("python3 script.py"));
    }

    void dump(const std::string& format) const {
        runPython("import datetime, plistlib\n"
                  "value = {'zeta': True, 'alpha': -42, 'real': 0.1,\n"
                  "    'text': '<&>\"\\' \\U0001F600 \\u00e9',\n"
                  "    'date': datetime.datetime(2012, 3, 4, 5, 6, 7),\n"
                  "    'data': bytes([0, 1, 2, 255]),\n"
                  "    'array': [1, 'two', [], {'three': 3}], 'large': 1 << 40}\n"
                  "with open('settings.plist', 'wb') as file:\n"
                  "    plistlib.dump(value, file, sort_keys=False, fmt=plistlib." +
                  format + ")\n");
    }
};

TEST_F(PythonPropertyListFile, made_as_xml_is_read) {
    dump("FMT_XML");
    const ParsedPropertyList parsed = readPropertyListFile(file);
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(*parsed.value, PropertyList(plainTypes));
}

TEST_F(PythonPropertyListFile, made_binary_is_read) {
    dump("FMT_BINARY");
    ASSERT_EQ(content().substr(0, 8), "bplist00");
    const ParsedPropertyList parsed = readPropertyListFile(file);
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(*parsed.value, PropertyList(plainTypes));
}

TEST_F(PythonPropertyListFile, made_binary_with_thousands_of_objects_is_read) {
    runPython("import plistlib\n"
              "with open('settings.plist', 'wb') as file:\n"
              "    plistlib.dump([{'n': n, 's': str(n)} for n in range(5000)], file,\n"
              "        fmt=plistlib.FMT_BINARY)\n");
    const ParsedPropertyList parsed = readPropertyListFile(file);
    ASSERT_TRUE(parsed.value) << parsed.error;
    const auto* array = parsed.value->as<Array>();
    ASSERT_NE(array, nullptr);
    ASSERT_EQ(array->size(), 5000u);
    EXPECT_EQ((*array)[4321], PropertyList(Dictionary{{"n", 4321}, {"s", "4321"}}));
}

TEST_F(PythonPropertyListFile, reads_what_is_written_here) {
    ASSERT_TRUE(writePropertyListFile(file, plainTypes));
    runPython("import datetime, plistlib\n"
              "with open('settings.plist', 'rb') as file:\n"
              "    value = plistlib.load(file)\n"
              "assert list(value) == ['zeta', 'alpha', 'real', 'text', 'date', 'data', 'array',\n"
              "    'large']\n"
              "assert value == {'zeta': True, 'alpha': -42, 'real': 0.1,\n"
              "    'text': '<&>\"\\' \\U0001F600 \\u00e9',\n"
              "    'date': datetime.datetime(2012, 3, 4, 5, 6, 7),\n"
              "    'data': bytes([0, 1, 2, 255]),\n"
              "    'array': [1, 'two', [], {'three': 3}], 'large': 1 << 40}, value\n");
}

} // namespace
} // namespace noctara
