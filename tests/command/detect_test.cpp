/// What `noctara detect` prints about a recording: the numbers and the advice.
#include "command/detect_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>
#include <string>

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

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
    ADetection() { recording.medianStep = 0.25; }

    /// Four readings a second.
    void keeps(const Acceleration& acceleration, int readings) {
        for (int i = 0; i < readings; ++i)
            recording.samples.push_back(
                {static_cast<double>(recording.samples.size()) / 4, acceleration});
    }

    std::string report(std::int32_t sensitivity = 5, bool wholeTable = false) const {
        DetectOptions options;
        options.sensitivity = sensitivity;
        options.wholeTable = wholeTable;
        std::ostringstream out;
        detect(recording, options, out);
        return out.str();
    }

    std::string wholeReport(std::int32_t sensitivity = 5) const {
        return report(sensitivity, true);
    }

    Recording recording;
};

TEST_F(ADetection, tells_angle_length_and_verdict_of_each_second) {
    keeps(screenUp(1.5), 4);
    keeps(screenDown(0.5), 4);
    keeps(screenUp(3), 4);
    keeps(screenUp(0, 1.2), 1);
    EXPECT_THAT(wholeReport(),
                HasSubstr(" second  off vertical   length  at Sensitivity 5: less than "
                          "2.10° off passes\n"
                          "      0         1.50°  1.000 g  screen up\n"
                          "      1         0.50°  1.000 g  screen down\n"
                          "      2         3.00°  1.000 g  tilted\n"
                          "      3         0.00°  1.200 g  moving\n"));
}

TEST_F(ADetection, judges_the_seconds_by_the_chosen_sensitivity) {
    keeps(screenUp(3), 4);
    EXPECT_THAT(wholeReport(3), HasSubstr("3.00°  1.000 g  screen up\n"));
    EXPECT_THAT(wholeReport(4), HasSubstr("3.00°  1.000 g  tilted\n"));
    EXPECT_THAT(wholeReport(-1), HasSubstr("at Sensitivity -1: any tilt passes\n"));
    EXPECT_THAT(wholeReport(-2), HasSubstr("at Sensitivity -2: no tilt passes\n"));
    EXPECT_THAT(wholeReport(-2), HasSubstr("3.00°  1.000 g  tilted\n"));
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
}

TEST_F(ADetection, gives_the_advice_before_any_number) {
    keeps(screenUp(3), 120);
    recording.remarks = {"unit: g, as --unit says"};
    EXPECT_THAT(report(), StartsWith("Use Sensitivity 2. With 5, the default, this phone would "
                                     "never be detected.\n"));
    const std::string text = report();
    EXPECT_LT(text.find("Set ScreenDown off"), text.find("120 readings in 30.0 s, 4 a second\n"
                                                         "  unit: g, as --unit says\n"));
    EXPECT_LT(text.find("unit: g"), text.find("Readings that pass\n"));
    EXPECT_LT(text.find("Readings that pass"), text.find("         seconds  "));
}

TEST_F(ADetection, folds_the_seconds_in_which_the_verdict_is_the_same) {
    keeps(screenUp(1.5, 0.99), 4);
    keeps(screenUp(1.25, 1.01), 4);
    keeps(screenUp(3), 8);
    keeps(screenUp(0, 1.2), 1);
    EXPECT_THAT(
        report(),
        testing::EndsWith(
            "         seconds      off vertical              length  at Sensitivity 5: less "
            "than 2.10° off passes\n"
            "          0 to 1    1.25° to 1.50°    0.990 to 1.010 g  screen up\n"
            "          2 to 3             3.00°             1.000 g  tilted\n"
            "               4             0.00°             1.200 g  moving\n"));
}

TEST_F(ADetection, prints_a_still_night_in_a_few_lines) {
    for (int second = 0; second < 30'000; ++second)
        recording.samples.push_back({static_cast<double>(second), screenDown(0.5)});
    const auto linesIn = [](const std::string& text) {
        return std::count(text.begin(), text.end(), '\n');
    };
    EXPECT_LT(linesIn(report()), 25);
    EXPECT_GT(linesIn(wholeReport()), 30'000);
}

TEST_F(ADetection, says_in_the_table_that_a_still_phone_has_a_bad_sensor) {
    keeps(screenUp(1, 0.85), 60);
    EXPECT_THAT(report(), HasSubstr("0.850 g  still, but not 1 g long\n"));
    EXPECT_THAT(report(), StartsWith("No Sensitivity detects this phone: it keeps still, but reads "
                                     "0.85 g instead of 1 g"));
}

TEST_F(ADetection, calls_a_jolt_of_a_still_phone_a_movement) {
    keeps(screenUp(1), 40);
    keeps(screenUp(1, 1.5), 1);
    EXPECT_THAT(wholeReport(), HasSubstr("     10         1.00°  1.500 g  moving\n"));
}

TEST_F(ADetection, leaves_long_gaps_out_of_the_table) {
    keeps(screenUp(1), 1);
    recording.samples.push_back({86400.5, screenUp(2)});
    recording.samples.push_back({86401, screenUp(2)});
    recording.samples.push_back({86401.5, screenUp(2)});
    EXPECT_THAT(wholeReport(), HasSubstr("      0         1.00°  1.000 g  screen up\n"
                                         "      -  no reading until 86400.50 s\n"
                                         "  86401         2.00°  1.000 g  screen up\n"));
    EXPECT_THAT(report(), HasSubstr("               -  no reading until 86400.50 s\n"));
}

} // namespace
} // namespace noctara
