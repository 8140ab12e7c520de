/// Tilt, tolerance, and which readings count as lying still.
#include "monitor/posture.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace noctara {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

double tilt(double x, double y, double z) {
    return computeTiltAngle(nullptr, x, y, z);
}

double lengthOf(double x, double y, double z) {
    double length = -1;
    computeTiltAngle(&length, x, y, z);
    return length;
}

TEST(ATilt, is_the_angle_from_the_positive_z_axis) {
    EXPECT_EQ(tilt(0, 0, 1), 0.0);
    EXPECT_EQ(tilt(0, 0, 0.25), 0.0);
    EXPECT_EQ(tilt(0, 0, -1), std::acos(-1.0));
    EXPECT_EQ(tilt(1, 0, 0), std::acos(0.0));
    EXPECT_EQ(tilt(0, -2, 0), std::acos(0.0));
    EXPECT_DOUBLE_EQ(tilt(0, 1, 1), std::acos(0.0) / 2);
    EXPECT_DOUBLE_EQ(tilt(std::sin(0.2), 0, std::cos(0.2)), 0.2);
    EXPECT_DOUBLE_EQ(tilt(0, -0.6, -0.8), std::acos(-0.8));
}

TEST(ATilt, comes_with_the_length_of_the_vector) {
    EXPECT_EQ(lengthOf(2, 3, 6), 7.0);
    EXPECT_EQ(lengthOf(-2, -3, -6), 7.0);
    EXPECT_EQ(lengthOf(0, 0, -1.05), 1.05);
}

TEST(ATilt, sums_the_squares_from_x_to_z) {
    // Any other order changes the last bit of the length.
    EXPECT_EQ(lengthOf(-0.7, 0.27, 0.74), 1.0538026380684384);
    EXPECT_EQ(lengthOf(0.74, 0.27, -0.7), 1.0538026380684382);
}

TEST(ATilt, of_the_zero_vector_is_zero_with_length_zero) {
    EXPECT_EQ(tilt(0, 0, 0), 0.0);
    EXPECT_EQ(lengthOf(0, 0, 0), 0.0);
    EXPECT_EQ(lengthOf(-0.0, 0, -0.0), 0.0);
}

TEST(ATilt, of_what_is_no_number_is_no_number) {
    EXPECT_TRUE(std::isnan(tilt(notANumber, 0, 1)));
    EXPECT_TRUE(std::isnan(tilt(0, 0, infinity)));
    EXPECT_TRUE(std::isnan(lengthOf(0, notANumber, 1)));
    EXPECT_EQ(lengthOf(0, 0, -infinity), infinity);
}

TEST(ATolerance, narrows_with_the_sensitivity) {
    EXPECT_EQ(postureTolerance(0), 0.22);
    EXPECT_EQ(postureTolerance(1), 0.11);
    EXPECT_EQ(postureTolerance(2), 0.22 / 3);
    EXPECT_EQ(postureTolerance(3), 0.055);
    EXPECT_EQ(postureTolerance(4), 0.044);
    EXPECT_EQ(postureTolerance(5), 0.22 / 6);
    EXPECT_EQ(postureTolerance(9), 0.022);
}

TEST(ATolerance, is_infinite_at_minus_one_and_negative_below) {
    EXPECT_EQ(postureTolerance(-1), infinity);
    EXPECT_EQ(postureTolerance(-2), -0.22);
    EXPECT_EQ(postureTolerance(-3), -0.11);
}

TEST(ATolerance, of_the_largest_sensitivity_is_that_of_the_wrapped_sum) {
    EXPECT_EQ(postureTolerance(std::numeric_limits<std::int32_t>::max()), 0.22 / -2147483648.0);
    EXPECT_EQ(postureTolerance(std::numeric_limits<std::int32_t>::min()), 0.22 / -2147483647.0);
}

TEST(APosture, with_the_screen_down_is_near_the_z_axis) {
    EXPECT_TRUE(liesInPosture(0, 1, 0.22, true));
    EXPECT_TRUE(liesInPosture(std::nextafter(0.22, 0), 1, 0.22, true));
    EXPECT_FALSE(liesInPosture(0.22, 1, 0.22, true));
    EXPECT_TRUE(liesInPosture(-5, 1, 0.22, true));
    EXPECT_FALSE(liesInPosture(pi, 1, 0.22, true));
}

TEST(APosture, with_the_screen_up_is_near_pi_on_both_sides) {
    const double lowest = 3.1415927 - 0.22;
    const double highest = 3.1415927 + 0.22;
    EXPECT_TRUE(liesInPosture(std::acos(-1.0), 1, 0.22, false));
    EXPECT_TRUE(liesInPosture(std::nextafter(lowest, 4), 1, 0.22, false));
    EXPECT_FALSE(liesInPosture(lowest, 1, 0.22, false));
    EXPECT_TRUE(liesInPosture(std::nextafter(highest, 0), 1, 0.22, false));
    EXPECT_FALSE(liesInPosture(highest, 1, 0.22, false));
    EXPECT_FALSE(liesInPosture(0, 1, 0.22, false));
}

TEST(APosture, takes_pi_to_be_3_1415927) {
    EXPECT_EQ(pi, 3.1415927);
    EXPECT_EQ(degreesPerRadian, 180 / 3.1415927);
    // 4.6e-8 below that pi, and so out of a narrower cone.
    EXPECT_FALSE(liesInPosture(std::acos(-1.0), 1, 4.0e-8, false));
    EXPECT_TRUE(liesInPosture(std::acos(-1.0), 1, 5.0e-8, false));
}

TEST(APosture, is_at_rest_only_strictly_between_0_9_and_1_1_g) {
    for (const double length : {std::nextafter(0.9, 1), 1.0, 1.05, std::nextafter(1.1, 1)}) {
        EXPECT_TRUE(liesInPosture(0, length, 0.22, true)) << length;
        EXPECT_TRUE(liesInPosture(pi, length, 0.22, false)) << length;
    }
    for (const double length : {0.0, 0.9, 1.1, 1.3, infinity, -1.0}) {
        EXPECT_FALSE(liesInPosture(0, length, 0.22, true)) << length;
        EXPECT_FALSE(liesInPosture(pi, length, 0.22, false)) << length;
    }
}

TEST(APosture, of_any_tilt_is_right_within_an_infinite_tolerance) {
    for (const double angle : {0.0, 1.0, pi})
        for (const bool screenDown : {true, false}) {
            EXPECT_TRUE(liesInPosture(angle, 1, infinity, screenDown)) << angle;
            EXPECT_FALSE(liesInPosture(angle, 1.2, infinity, screenDown)) << angle;
        }
}

TEST(APosture, is_never_right_within_a_negative_tolerance) {
    for (const double angle : {0.0, 1.0, std::acos(-1.0), pi}) {
        EXPECT_FALSE(liesInPosture(angle, 1, -0.22, true)) << angle;
        EXPECT_FALSE(liesInPosture(angle, 1, -0.22, false)) << angle;
    }
}

TEST(APosture, of_what_is_no_number_is_never_right) {
    for (const bool screenDown : {true, false}) {
        EXPECT_FALSE(liesInPosture(notANumber, 1, 0.22, screenDown));
        EXPECT_FALSE(liesInPosture(notANumber, 1, infinity, screenDown));
        EXPECT_FALSE(liesInPosture(screenDown ? 0 : pi, notANumber, 0.22, screenDown));
        EXPECT_FALSE(liesInPosture(screenDown ? 0 : pi, 1, notANumber, screenDown));
    }
}

} // namespace
} // namespace noctara
