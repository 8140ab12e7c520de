/// A changed property list differs in one value only.
#include "phones/model/property_list_edit.h"

#include "tests/phones/model/property_list_samples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace noctara {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

Dictionary read(const std::string& bytes) {
    return *parsePropertyList(bytes).value->as<Dictionary>();
}

/// A dictionary with one key, in binary form. `value` has its marker.
std::string binaryWith(const std::string& value) {
    return binaryOf({byte(0xD1) + byte(1) + byte(2), byte(0x51) + "k", value});
}

TEST(AChangedList, has_the_new_value_and_all_others) {
    Dictionary expected = everyType;
    expected.set("TimeLimit", true);
    const auto added = changedPropertyList(propertyListXml(everyType), "TimeLimit", true);
    EXPECT_EQ(read(*added), expected);
    expected.set("TimeLimit", 7);
    const auto replaced = changedPropertyList(*added, "TimeLimit", 7);
    EXPECT_EQ(read(*replaced), expected);
    EXPECT_EQ(read(*changedPropertyList(*replaced, "TimeLimit", std::nullopt)), everyType);
}

TEST(AChangedList, keeps_its_form) {
    EXPECT_THAT(*changedPropertyList(listOf("<dict/>"), "a", 1), StartsWith("<?xml"));
    EXPECT_THAT(*changedPropertyList(binaryWith(byte(0x09)), "a", 1), StartsWith("bplist00"));
}

TEST(AChangedList, keeps_each_type_in_binary_form) {
    for (const auto& value :
         {byte(0x08), byte(0x09), byte(0x10) + byte(5), byte(0x13) + bigEndian(~0ULL, 8),
          byte(0x14) + bigEndian(~0ULL, 16), byte(0x22) + bigEndian(0x3DCCCCCD, 4),
          byte(0x23) + bigEndian(0x3FB999999999999A, 8),
          byte(0x33) + bigEndian(0x41B787CF9C6A7EF9, 8), byte(0x42) + "ab", byte(0x52) + "ab",
          byte(0x61) + bigEndian(0x00E4, 2), byte(0x80) + byte(7)}) {
        const auto changed = changedPropertyList(binaryWith(value), "new", true);
        ASSERT_TRUE(changed);
        EXPECT_THAT(*changed, HasSubstr(value));
        EXPECT_EQ(read(*changed).size(), 2U);
    }
}

TEST(AChangedList, keeps_the_value_of_a_real_whose_width_may_change) {
    const std::string wide = binaryWith(byte(0x23) + bigEndian(0x8000000000000000, 8));
    const Dictionary changed = read(*changedPropertyList(wide, "new", true));
    EXPECT_EQ(*changed.find("k"), PropertyList(0.0));
    EXPECT_THAT(propertyListXml(changed), HasSubstr("<real>-0.0</real>"));
}

TEST(AChangedList, keeps_unsigned_integers_and_the_sign_of_zero_in_xml) {
    const auto changed = changedPropertyList(
        listOf("<dict><key>a</key><integer>18446744073709551615</integer><key>b</key>"
               "<real>-0.0</real></dict>"),
        "c", false);
    EXPECT_THAT(*changed, HasSubstr("<integer>18446744073709551615</integer>"));
    EXPECT_THAT(*changed, HasSubstr("<real>-0.0</real>"));
    EXPECT_THAT(*changed, HasSubstr("<false/>"));
}

TEST(AChangedList, is_absent_if_there_is_no_dictionary_to_change) {
    for (const auto& bytes : {std::string(), std::string("junk"), listOf("<array/>"),
                              binaryOf({byte(0xA0)}), binaryOf({byte(0x80) + byte(1)})})
        EXPECT_FALSE(changedPropertyList(bytes, "a", 1));
}

TEST(AChangedList, is_absent_if_it_could_not_be_read_as_the_same) {
    const std::string nan = byte(0x23) + bigEndian(0x7FF8000000000000, 8);
    EXPECT_FALSE(changedPropertyList(binaryWith(nan), "a", 1)) << "NaN equals nothing";
    EXPECT_FALSE(changedPropertyList(listOf("<dict/>"), "a", std::string(1 << 20, 'x')))
        << "more than 1 MiB";
}

} // namespace
} // namespace noctara
