/// What `noctara detect` prints about a recording: the numbers and the advice.
#include "command/detect_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>
#include <string>

using testing::HasSubstr;
using testing::Not;

namespace noctara {
namespace {

constexpr double radiansPerDegree = std::numbers::pi / 180;

Acceleration screenUp(double degreesOff, double length = 1.0) {
    return {length * std::sin(degreesOff * radiansPerDegree), 0,
            -length * std::cos(degreesOff * radiansPerDegree)};
}

Acceleration screenDown(double degreesOff) {
    const Acceleration up = screenUp(degreesOff);
    return {up.x, up.y, -up.z};
}

class ADetection : public testing::Test {
protected:
    /// Four readings a second.
    void keeps(const Acceleration& acceleration, int readings) {
        for (int i = 0; i < readings; ++i)
            recording.samples.push_back(
                {static_cast<double>(recording.samples.size()) / 4, acceleration});
    }

    std::string report(std::int32_t sensitivity = 5) const {
        std::ostringstream out;
        detect(recording, sensitivity, out);
        return out.str();
    }

    Recording recording;
};

TEST_F(ADetection, tells_angle_length_and_verdict_of_each_second) {
    keeps(screenUp(1.5), 4);
    keeps(screenDown(0.5), 4);
    keeps(screenUp(3), 4);
    keeps(screenUp(0, 1.2), 1);
    EXPECT_THAT(report(), HasSubstr(" second  off vertical   length  at Sensitivity 5: less than "
                                    "2.10° off passes\n"
                                    "      0         1.50°  1.000 g  screen up\n"
                                    "      1         0.50°  1.000 g  screen down\n"
                                    "      2         3.00°  1.000 g  tilted\n"
                                    "      3         0.00°  1.200 g  moving\n"
                                    "\n"));
}

TEST_F(ADetection, judges_the_seconds_by_the_chosen_sensitivity) {
    keeps(screenUp(3), 4);
    EXPECT_THAT(report(3), HasSubstr("3.00°  1.000 g  screen up\n"));
    EXPECT_THAT(report(4), HasSubstr("3.00°  1.000 g  tilted\n"));
    EXPECT_THAT(report(-1), HasSubstr("at Sensitivity -1: any tilt passes\n"));
    EXPECT_THAT(report(-2), HasSubstr("at Sensitivity -2: no tilt passes\n"));
    EXPECT_THAT(report(-2), HasSubstr("3.00°  1.000 g  tilted\n"));
}

TEST_F(ADetection, tells_the_share_of_readings_for_each_sensitivity_and_posture) {
    keeps(screenUp(4), 3);
    keeps(screenDown(1.3), 1);
    const std::string text = report();
    EXPECT_THAT(text, HasSubstr("\n           0     12.61°     75.00 %      25.00 %\n"));
    EXPECT_THAT(text, HasSubstr("\n           2      4.20°     75.00 %      25.00 %\n"));
    EXPECT_THAT(text, HasSubstr("\n           3      3.15°      0.00 %      25.00 %\n"));
    EXPECT_THAT(text, HasSubstr("\n           9      1.26°      0.00 %       0.00 %\n"));
}

TEST_F(ADetection, does_not_call_nearly_all_all) {
    keeps(screenUp(0), 29999);
    keeps(screenUp(20), 1);
    EXPECT_THAT(report(), HasSubstr("     99.99 %       0.00 %\n"));
    EXPECT_THAT(report(), Not(HasSubstr("100.00 %")));
    EXPECT_THAT(report(), HasSubstr("with the screen up in 99.99 % of the readings.\n"));
}

TEST_F(ADetection, names_the_sensitivity_that_suits_a_phone_on_a_slope) {
    keeps(screenUp(1.3), 60);
    EXPECT_THAT(report(), HasSubstr("\nThe phone lies still with the screen up all the time.\n"
                                    "Lying so, it reads 1.3° off the vertical (median), 1.3° at "
                                    "worst.\n"
                                    "Sensitivity up to 8 detects it at every reading.\n"
                                    "Sensitivity 9 detects it at 0.00 % of them.\n"));
}

TEST_F(ADetection, tells_every_reading_from_nearly_every_one) {
    keeps(screenDown(1), 199);
    keeps(screenDown(5), 1);
    EXPECT_THAT(report(), HasSubstr("Lying so, it reads 1.0° off the vertical (median), 5.0° at "
                                    "worst.\n"
                                    "Sensitivity up to 1 detects it at every reading, up to 9 at "
                                    "nearly every one (99.50 %).\n"));
}

TEST_F(ADetection, recommends_any_sensitivity_for_a_flat_phone) {
    keeps(screenDown(0.1), 10);
    EXPECT_THAT(report(), HasSubstr("with the screen down all the time.\n"));
    EXPECT_THAT(report(), HasSubstr("Any Sensitivity from 0 to 9 detects it at every reading.\n"));
}

TEST_F(ADetection, tells_of_both_postures) {
    keeps(screenDown(0.1), 6);
    keeps(screenUp(10), 1);
    keeps(screenUp(40), 9);
    const std::string text = report();
    EXPECT_THAT(text, HasSubstr("with the screen down in only 37.50 % of the readings.\n"
                                "With the screen up it does so in 6.25 %.\n"));
    EXPECT_THAT(text, HasSubstr("detects it at every such reading.\n"));
}

TEST_F(ADetection, says_that_a_carried_phone_never_lies) {
    for (int second = 0; second < 15; ++second) {
        keeps(screenUp(40 + second, 0.7 + 0.04 * second), 4);
    }
    EXPECT_THAT(report(), HasSubstr("\nIn none of these 15 seconds does the phone lie still: no "
                                    "reading passes at any Sensitivity.\n"));
}

TEST_F(ADetection, says_that_a_still_phone_is_too_tilted) {
    keeps(screenUp(34.2), 20);
    EXPECT_THAT(report(), HasSubstr("\nThe phone keeps still, but 34.2° off the vertical; "
                                    "Sensitivity 0, the widest, allows 12.6°.\n"));
}

TEST_F(ADetection, says_that_a_still_phone_has_a_bad_sensor_or_another_unit) {
    keeps(screenUp(1, 0.85), 20);
    EXPECT_THAT(report(), HasSubstr("0.850 g  still, but not 1 g long\n"));
    EXPECT_THAT(report(), HasSubstr("\nThe phone keeps still, but reads 0.85 g instead of 1 g; "
                                    "0.9 to 1.1 g pass.\n"));
}

TEST_F(ADetection, calls_a_jolt_of_a_still_phone_a_movement) {
    keeps(screenUp(1), 40);
    keeps(screenUp(1, 1.5), 1);
    EXPECT_THAT(report(), HasSubstr("     10         1.00°  1.500 g  moving\n"));
}

TEST_F(ADetection, leaves_long_gaps_out_of_the_table) {
    keeps(screenUp(1), 1);
    recording.samples.push_back({86400.5, screenUp(2)});
    recording.samples.push_back({86401, screenUp(2)});
    EXPECT_THAT(report(), HasSubstr("      0         1.00°  1.000 g  screen up\n"
                                    "      -  no reading until 86400.50 s\n"
                                    "  86401         2.00°  1.000 g  screen up\n\n"));
}

TEST_F(ADetection, repeats_what_was_assumed) {
    keeps(screenUp(1), 8);
    recording.remarks = {"unit: g, as --unit says"};
    EXPECT_THAT(report(), testing::StartsWith("8 readings in 2.0 s, 4 a second\n"
                                              "  unit: g, as --unit says\n\n"));
}

TEST_F(ADetection, does_not_take_a_dead_sensor_for_a_flat_phone) {
    keeps({0, 0, 0}, 4);
    EXPECT_THAT(report(), HasSubstr("\nThe phone keeps still, but reads 0 g instead of 1 g"));
}

} // namespace
} // namespace noctara
