/// Conversions of property-list values, and the order of dictionaries.
#include "platform/property_list.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace noctara {
namespace {

std::vector<std::string> keysOf(const Dictionary& dictionary) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : dictionary)
        keys.push_back(key);
    return keys;
}

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(ATruthValue, of_a_boolean_is_the_boolean) {
    EXPECT_TRUE(PropertyList(true).boolValue());
    EXPECT_FALSE(PropertyList(false).boolValue());
}

TEST(ATruthValue, of_a_number_is_whether_it_is_not_zero) {
    EXPECT_TRUE(PropertyList(1).boolValue());
    EXPECT_TRUE(PropertyList(-7).boolValue());
    EXPECT_TRUE(PropertyList(std::int64_t{1} << 32).boolValue());
    EXPECT_FALSE(PropertyList(0).boolValue());
    EXPECT_TRUE(PropertyList(0.25).boolValue());
    EXPECT_TRUE(PropertyList(-1e-300).boolValue());
    EXPECT_TRUE(PropertyList(notANumber).boolValue());
    EXPECT_FALSE(PropertyList(0.0).boolValue());
    EXPECT_FALSE(PropertyList(-0.0).boolValue());
}

TEST(ATruthValue, of_a_string_is_true_for_yes_true_and_digits_but_zero) {
    for (const char* text : {"yes", "YES", "true", "T", "  -007", "0001", "-t", "+Y", "9", "\t\n1x",
                             "5 apples", "00y"})
        EXPECT_TRUE(PropertyList(text).boolValue()) << '"' << text << '"';
    for (const char* text : {"0", "n", "no", "false", "", "  ", "-", "+-1", "0000", "on", "x1",
                             "-0", "- 1", "0 1", ".5"})
        EXPECT_FALSE(PropertyList(text).boolValue()) << '"' << text << '"';
}

TEST(ATruthValue, of_anything_else_is_false) {
    EXPECT_FALSE(PropertyList(Date{1}).boolValue());
    EXPECT_FALSE(PropertyList(Data{1}).boolValue());
    EXPECT_FALSE(PropertyList(Array{true}).boolValue());
    EXPECT_FALSE(PropertyList(Dictionary{{"a", true}}).boolValue());
}

TEST(AnIntegerValue, of_a_boolean_is_zero_or_one) {
    EXPECT_EQ(PropertyList(true).intValue(), 1);
    EXPECT_EQ(PropertyList(false).intValue(), 0);
}

TEST(AnIntegerValue, of_an_integer_is_its_low_32_bits) {
    EXPECT_EQ(PropertyList(-5).intValue(), -5);
    EXPECT_EQ(PropertyList((std::int64_t{1} << 32) + 7).intValue(), 7);
    EXPECT_EQ(PropertyList(std::int64_t{0x80000000}).intValue(),
              std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(PropertyList(std::numeric_limits<std::int64_t>::max()).intValue(), -1);
    EXPECT_EQ(PropertyList(std::numeric_limits<std::int64_t>::min()).intValue(), 0);
}

TEST(AnIntegerValue, of_a_real_is_truncated_and_clamped) {
    using Limits = std::numeric_limits<std::int32_t>;
    EXPECT_EQ(PropertyList(1.9).intValue(), 1);
    EXPECT_EQ(PropertyList(-1.9).intValue(), -1);
    EXPECT_EQ(PropertyList(2147483647.5).intValue(), Limits::max());
    EXPECT_EQ(PropertyList(1e20).intValue(), Limits::max());
    EXPECT_EQ(PropertyList(-1e20).intValue(), Limits::min());
    EXPECT_EQ(PropertyList(infinity).intValue(), Limits::max());
    EXPECT_EQ(PropertyList(-infinity).intValue(), Limits::min());
    EXPECT_EQ(PropertyList(notANumber).intValue(), 0);
}

TEST(AnIntegerValue, of_a_string_is_its_leading_decimal_integer_clamped) {
    using Limits = std::numeric_limits<std::int32_t>;
    const std::vector<std::pair<const char*, std::int32_t>> expectations{
        {"12abc", 12},
        {"-5", -5},
        {"+5", 5},
        {" 42", 42},
        {"\t\n 42 ", 42},
        {"0012", 12},
        {"3.9", 3},
        {"2147483647", Limits::max()},
        {"2147483648", Limits::max()},
        {"-2147483648", Limits::min()},
        {"99999999999", Limits::max()},
        {"-99999999999", Limits::min()},
        {"99999999999999999999999999", Limits::max()},
        {"-99999999999999999999999999", Limits::min()},
        {"0x10", 0},
        {"abc", 0},
        {"+-5", 0},
        {"--5", 0},
        {"- 5", 0},
        {"-", 0},
        {"", 0},
        {"  ", 0},
        {"yes", 0},
    };
    for (const auto& [text, integer] : expectations)
        EXPECT_EQ(PropertyList(text).intValue(), integer) << '"' << text << '"';
}

TEST(AnIntegerValue, of_anything_else_is_zero) {
    EXPECT_EQ(PropertyList(Date{1}).intValue(), 0);
    EXPECT_EQ(PropertyList(Data{1}).intValue(), 0);
    EXPECT_EQ(PropertyList(Array{1}).intValue(), 0);
    EXPECT_EQ(PropertyList(Dictionary{{"a", 1}}).intValue(), 0);
}

TEST(APropertyList, is_seen_as_its_own_type_only) {
    PropertyList integer(3);
    EXPECT_EQ(integer, PropertyList(std::int64_t{3}));
    EXPECT_EQ(integer.as<bool>(), nullptr);
    EXPECT_EQ(integer.as<double>(), nullptr);
    ASSERT_NE(integer.as<std::int64_t>(), nullptr);
    *integer.as<std::int64_t>() = 4;
    EXPECT_EQ(integer, PropertyList(4));
}

TEST(APropertyList, differs_from_one_of_another_type_with_the_same_truth) {
    EXPECT_FALSE(PropertyList(true) == PropertyList(1));
    EXPECT_FALSE(PropertyList(1) == PropertyList(1.0));
    EXPECT_FALSE(PropertyList("1") == PropertyList(1));
    EXPECT_FALSE(PropertyList(Date{1}) == PropertyList(1.0));
}

struct Note final : PhoneObject {};

TEST(APropertyList, carries_the_object_that_it_was_made_of) {
    const auto note = std::make_shared<Note>();
    const PropertyList value(3, note);
    EXPECT_EQ(value.madeOf<Note>(), note.get());
    EXPECT_EQ(PropertyList(value).madeOf<Note>(), note.get());
    EXPECT_EQ(value, PropertyList(3));
    EXPECT_EQ(PropertyList(3).madeOf<Note>(), nullptr);
}

TEST(APropertyList, carries_no_object_of_another_phone) {
    struct Other final : PhoneObject {};
    EXPECT_EQ(PropertyList(3, std::make_shared<Other>()).madeOf<Note>(), nullptr);
}

TEST(APropertyList, that_is_changed_no_longer_carries_an_object) {
    PropertyList value(3, std::make_shared<Note>());
    *value.as<std::int64_t>() = 4;
    EXPECT_EQ(value.madeOf<Note>(), nullptr);
}

TEST(ADictionary, that_becomes_a_new_one_keeps_nothing_of_the_old_one) {
    Dictionary dictionary{{"old", 1}};
    dictionary = Dictionary{{"new", 2}, {"newer", 3}};
    EXPECT_EQ(keysOf(dictionary), (std::vector<std::string>{"new", "newer"}));
}

TEST(ADictionary, keeps_the_order_of_insertion) {
    Dictionary dictionary;
    EXPECT_TRUE(dictionary.empty());
    dictionary.set("b", 1);
    dictionary.set("a", 2);
    dictionary.set("", 3);
    EXPECT_EQ(keysOf(dictionary), (std::vector<std::string>{"b", "a", ""}));
    EXPECT_EQ(dictionary.size(), 3u);
    EXPECT_FALSE(dictionary.empty());
}

TEST(ADictionary, replaces_a_value_in_its_place) {
    Dictionary dictionary{{"b", 1}, {"a", 2}};
    dictionary.set("b", "new");
    EXPECT_EQ(dictionary, (Dictionary{{"b", "new"}, {"a", 2}}));
}

TEST(ADictionary, made_with_a_key_twice_keeps_the_last_value_in_the_first_place) {
    const Dictionary dictionary{{"a", 1}, {"b", 2}, {"a", 3}};
    EXPECT_EQ(keysOf(dictionary), (std::vector<std::string>{"a", "b"}));
    ASSERT_NE(dictionary.find("a"), nullptr);
    EXPECT_EQ(*dictionary.find("a"), PropertyList(3));
}

TEST(ADictionary, finds_keys_by_their_exact_text) {
    const Dictionary dictionary{{"Debug", true}};
    EXPECT_NE(dictionary.find("Debug"), nullptr);
    EXPECT_EQ(dictionary.find("debug"), nullptr);
    EXPECT_EQ(dictionary.find("Debu"), nullptr);
    EXPECT_EQ(dictionary.find(""), nullptr);
}

TEST(ADictionary, forgets_a_removed_key_and_says_whether_there_was_one) {
    Dictionary dictionary{{"a", 1}, {"b", 2}, {"c", 3}};
    EXPECT_TRUE(dictionary.remove("b"));
    EXPECT_FALSE(dictionary.remove("b"));
    EXPECT_EQ(dictionary, (Dictionary{{"a", 1}, {"c", 3}}));
    dictionary.set("b", 4);
    EXPECT_EQ(keysOf(dictionary), (std::vector<std::string>{"a", "c", "b"}));
}

TEST(ADictionary, equals_one_with_the_same_entries_in_the_same_order) {
    const Dictionary dictionary{{"a", 1}, {"b", Array{true, "x"}}};
    EXPECT_EQ(dictionary, (Dictionary{{"a", 1}, {"b", Array{true, "x"}}}));
    EXPECT_FALSE(dictionary == (Dictionary{{"b", Array{true, "x"}}, {"a", 1}}));
    EXPECT_FALSE(dictionary == (Dictionary{{"a", 1}, {"b", Array{true, "y"}}}));
    EXPECT_FALSE(dictionary == (Dictionary{{"a", 1}}));
}

TEST(ADictionary, copied_is_independent_of_the_original) {
    Dictionary original{{"inner", Dictionary{{"a", 1}}}};
    const Dictionary copy = original;
    original.set("inner", 2);
    EXPECT_EQ(copy, (Dictionary{{"inner", Dictionary{{"a", 1}}}}));
}

} // namespace
} // namespace noctara
