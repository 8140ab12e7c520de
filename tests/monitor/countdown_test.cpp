/// The rule of three readings.
#include "monitor/countdown.h"

#include <gtest/gtest.h>

namespace noctara {
namespace {

constexpr bool lies = true;
constexpr bool elsewhere = false;
constexpr bool awake = false;
constexpr bool inSleepState = true;

TEST(ACountdown, starts_at_zero) {
    const Countdown countdown;
    EXPECT_EQ(countdown.count(), 0);
    EXPECT_FALSE(countdown.underWay());
}

TEST(ACountdown, stays_at_zero_while_the_readings_agree_with_the_state) {
    Countdown countdown;
    for (int i = 0; i < 10; ++i) {
        EXPECT_FALSE(countdown.add(elsewhere, awake));
        EXPECT_FALSE(countdown.add(lies, inSleepState));
        EXPECT_EQ(countdown.count(), 0);
        EXPECT_FALSE(countdown.underWay());
    }
}

TEST(ACountdown, changes_the_state_with_the_third_reading_in_a_row_in_either_direction) {
    for (const bool state : {awake, inSleepState}) {
        Countdown countdown;
        EXPECT_FALSE(countdown.add(!state, state));
        EXPECT_EQ(countdown.count(), 1);
        EXPECT_TRUE(countdown.underWay());
        EXPECT_FALSE(countdown.add(!state, state));
        EXPECT_EQ(countdown.count(), 2);
        EXPECT_TRUE(countdown.underWay());
        EXPECT_TRUE(countdown.add(!state, state)) << "state " << state;
    }
}

TEST(ACountdown, starts_anew_after_a_change_of_the_state) {
    Countdown countdown;
    for (const bool state : {awake, inSleepState, awake}) {
        EXPECT_EQ(countdown.count(), 0);
        EXPECT_FALSE(countdown.underWay());
        EXPECT_FALSE(countdown.add(!state, state));
        EXPECT_FALSE(countdown.add(!state, state));
        EXPECT_TRUE(countdown.add(!state, state));
    }
}

TEST(ACountdown, is_dropped_at_one_reading_that_agrees) {
    for (const int readings : {1, 2}) {
        Countdown countdown;
        for (int i = 0; i < readings; ++i)
            countdown.add(lies, awake);
        EXPECT_FALSE(countdown.add(elsewhere, awake));
        EXPECT_EQ(countdown.count(), 0);
        EXPECT_FALSE(countdown.underWay());
        EXPECT_FALSE(countdown.add(lies, awake));
        EXPECT_FALSE(countdown.add(lies, awake));
        EXPECT_TRUE(countdown.add(lies, awake)) << "after " << readings;
    }
}

} // namespace
} // namespace noctara
