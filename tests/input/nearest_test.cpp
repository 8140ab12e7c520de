/// The word that a user meant.
#include "input/nearest.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace noctara {
namespace {

constexpr std::array<std::string_view, 4> words{"night", "replay", "detect", "capabilities"};

std::string meantBy(std::string_view word) {
    return std::string(nearest(word, words).value_or("nothing"));
}

TEST(AMisspeltWord, stands_for_the_choice_that_is_at_most_two_changes_away) {
    EXPECT_EQ(meantBy("nihgt"), "night");
    EXPECT_EQ(meantBy("dtct"), "detect");
    EXPECT_EQ(meantBy("repplay"), "replay");
    EXPECT_EQ(meantBy("dct"), "nothing");
}

TEST(AMisspeltWord, may_have_other_capitals) {
    EXPECT_EQ(meantBy("NIGHTS"), "night");
}

TEST(AMisspeltWord, stands_for_the_nearest_of_several_choices) {
    constexpr std::array<std::string_view, 2> hours{"StopHour", "StartHour"};
    EXPECT_EQ(nearest("StrtHour", hours), "StartHour");
    EXPECT_EQ(nearest("StpHour", hours), "StopHour");
}

TEST(AMisspeltWord, may_be_the_beginning_of_a_choice) {
    EXPECT_EQ(meantBy("Cap"), "capabilities");
    EXPECT_EQ(meantBy("ca"), "nothing");
}

TEST(AMisspeltWord, does_not_stand_for_a_choice_with_which_it_shares_nothing) {
    constexpr std::array<std::string_view, 1> rate{"2G"};
    EXPECT_EQ(nearest("hz", rate), std::nullopt);
    EXPECT_EQ(nearest("", words), std::nullopt);
    EXPECT_EQ(nearest(std::string(1000, 'n'), words), std::nullopt);
    EXPECT_EQ(nearest("night", {}), std::nullopt);
}

} // namespace
} // namespace noctara
