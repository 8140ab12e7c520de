/// The Sensitivity that is advised for the phone of a recording.
#include "recording/sensitivity_advice.h"

#include "recording/recording_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <numbers>
#include <sstream>
#include <string>

namespace noctara {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Outcome = SensitivityAdvice::Outcome;

class AnAdvice : public testing::Test {
protected:
    static Acceleration up(double degreesOff, double length = 1.0) {
        const double radians = degreesOff * std::numbers::pi / 180;
        return {length * std::sin(radians), 0, -length * std::cos(radians)};
    }

    static Acceleration down(double degreesOff) {
        const Acceleration screenUp = up(degreesOff);
        return {screenUp.x, screenUp.y, -screenUp.z};
    }

    void keeps(const Acceleration& acceleration, double seconds) {
        const double end = now + seconds;
        for (; now < end - 1e-9; now += step)
            recording.samples.push_back({now, acceleration});
    }

    /// Turns about an axis, a full turn in ten seconds.
    void moves(double seconds) {
        const double end = now + seconds;
        for (; now < end - 1e-9; now += step)
            recording.samples.push_back({now, up(now * 36)});
    }

    SensitivityAdvice advice() {
        recording.medianStep = step;
        return adviceFrom(recording);
    }
    std::vector<std::string> lines() { return linesOf(advice()); }

    Recording recording;
    double step = 0.25;
    double now = 0;
};

TEST_F(AnAdvice, is_to_keep_the_default_for_a_flat_phone) {
    keeps(down(0.9), 30);
    EXPECT_EQ(advice().outcome, Outcome::found);
    EXPECT_THAT(lines(), ElementsAre("Keep Sensitivity 5, the default: the phone lies at most 0.9° "
                                     "off, and 2.1° are allowed (1.2° of room).",
                                     "Set ScreenDown on, because the phone lies with the screen "
                                     "down."));
}

TEST_F(AnAdvice, is_the_strictest_sensitivity_that_leaves_room) {
    keeps(up(3.0), 30);
    EXPECT_EQ(advice().sensitivity, 2) << "3 allows 3.15°, which leaves less than a tenth";
    EXPECT_NEAR(advice().roomDegrees, 1.2, 0.01);
    EXPECT_THAT(lines(),
                ElementsAre("Use Sensitivity 2. With 5, the default, this phone would never be "
                            "detected.",
                            "The phone lies at most 3.0° off, and Sensitivity 2 allows 4.2° (1.2° "
                            "of room).",
                            "Set ScreenDown off, because the phone lies with the screen up."));
}

TEST_F(AnAdvice, stays_clear_of_the_worst_reading) {
    step = 0.01;
    for (int second = 0; second < 30; ++second) {
        keeps(up(2.2), 0.99);
        keeps(up(3.9), 0.01);
    }
    EXPECT_EQ(advice().sensitivity, 1);
    EXPECT_NEAR(advice().worstDegreesOff, 3.9, 1e-3);
}

TEST_F(AnAdvice, counts_readings_as_long_as_the_monitor_sees_them) {
    step = 0.01;
    for (int second = 0; second < 100; ++second) {
        keeps(up(2.0), 0.25);
        keeps(up(2.6), 0.75);
    }
    EXPECT_NEAR(advice().passingAtDefault, 0.25, 0.01);

    recording.samples.clear();
    now = 0;
    for (int second = 0; second < 100; ++second) {
        recording.samples.push_back({now, up(2.0)});
        recording.samples.push_back({now + 0.9, up(2.6)});
        now += 1;
    }
    EXPECT_NEAR(advice().passingAtDefault, 0.9, 0.01) << "a sample lasts until the next one";
}

TEST_F(AnAdvice, judges_the_default_by_three_readings_in_a_row) {
    for (int i = 0; i < 30; ++i) {
        keeps(up(2.0), 3);
        keeps(up(2.6), 3);
    }
    EXPECT_NEAR(advice().passingAtDefault, 0.5, 0.02);
    EXPECT_EQ(advice().detectedAtDefault, 0) << "three readings take four seconds";
    EXPECT_THAT(lines()[0], HasSubstr("almost never be detected (50"));
    EXPECT_THAT(lines()[0], HasSubstr(" % of readings pass, and three in a row are needed)."));
}

TEST_F(AnAdvice, ignores_samples_that_are_replaced_at_the_same_instant) {
    for (int i = 0; i < 100; ++i, now += step) {
        recording.samples.push_back({now, up(3.5)});
        recording.samples.push_back({now, up(1)});
    }
    EXPECT_EQ(advice().sensitivity, 5);
}

TEST_F(AnAdvice, says_that_the_posture_rests_on_assumed_axes) {
    keeps(up(1), 30);
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("axes"))));
    recording.axesAreAssumed = true;
    EXPECT_THAT(lines(), Contains("That it is up, and not down, rests on the assumed axes (--axes "
                                  "says otherwise)."));
}

TEST_F(AnAdvice, for_a_phone_on_a_slope_is_to_lay_it_flatter) {
    keeps(up(34.2), 30);
    EXPECT_EQ(advice().outcome, Outcome::tooTilted);
    EXPECT_THAT(lines(), ElementsAre("No Sensitivity detects this phone: it keeps still, but 34.2° "
                                     "off the vertical; Sensitivity 0, the widest, allows 12.6°.",
                                     "Lay the phone flatter, and record again."));
}

TEST_F(AnAdvice, does_not_promise_a_tolerance_that_the_worst_reading_exceeds) {
    for (int i = 0; i < 10; ++i) {
        keeps(up(12), 3);
        keeps(up(13), 1);
    }
    EXPECT_EQ(advice().outcome, Outcome::tooTilted);
    EXPECT_THAT(lines()[0], HasSubstr("at times 13.0° off"));
}

TEST_F(AnAdvice, is_the_widest_sensitivity_for_a_phone_that_it_hardly_allows) {
    keeps(up(12.5), 30);
    EXPECT_EQ(advice().sensitivity, 0);
    EXPECT_THAT(lines()[1], HasSubstr("(0.1° of room)"));
}

TEST_F(AnAdvice, for_a_phone_of_another_length_than_1_g_names_the_unit_and_the_sensor) {
    keeps(up(1, 0.85), 30);
    EXPECT_EQ(advice().outcome, Outcome::notOneG);
    EXPECT_THAT(lines()[0], HasSubstr("it keeps still, but reads 0.85 g instead of 1 g"));
    EXPECT_THAT(lines()[1], HasSubstr("badly calibrated, or the unit is wrong (--unit"));
    recording.samples.clear();
    keeps({0, 0, 0}, 30);
    EXPECT_EQ(advice().outcome, Outcome::notOneG) << "a dead sensor is no flat phone";
}

TEST_F(AnAdvice, is_not_given_for_a_moving_phone) {
    moves(60);
    EXPECT_EQ(advice().outcome, Outcome::moving);
    EXPECT_THAT(lines(), ElementsAre("No advice: the phone moves all the time.",
                                     "Lay the phone where it lies at night and record at least 30 "
                                     "seconds without touching it."));
}

TEST_F(AnAdvice, is_not_given_for_too_little_of_a_phone_at_rest) {
    keeps(up(1), 6);
    EXPECT_EQ(advice().outcome, Outcome::tooFew);
    EXPECT_THAT(lines()[0], HasSubstr("at rest for 5 seconds; 10 seconds are needed"));
    moves(60);
    EXPECT_EQ(advice().outcome, Outcome::moving);
    EXPECT_THAT(lines()[0], StartsWith("No advice: the phone moves; it keeps still for "));
}

TEST_F(AnAdvice, is_not_given_for_too_few_readings) {
    step = 5;
    keeps(up(1), 40);
    EXPECT_THAT(lines(), ElementsAre("No advice: there are only 8 readings of the phone at rest; "
                                     "10 are needed.",
                                     "Lay the phone where it lies at night and record at least 60 "
                                     "seconds without touching it."));
    keeps(up(1), 20);
    EXPECT_EQ(advice().outcome, Outcome::found);
    recording.samples.resize(1);
    EXPECT_EQ(advice().outcome, Outcome::tooFew);
}

TEST_F(AnAdvice, rests_on_the_part_in_which_the_phone_lies_still) {
    moves(30);
    keeps(up(1), 20);
    moves(30);
    EXPECT_EQ(advice().sensitivity, 5);
    EXPECT_NEAR(advice().stillSeconds, 20, 2);
    EXPECT_THAT(lines().back(), HasSubstr("of 79 seconds; the rest is left out"));
}

TEST_F(AnAdvice, joins_the_parts_in_which_the_phone_lies_still) {
    for (int i = 0; i < 3; ++i) {
        keeps(down(1 + i), 6);
        moves(10);
    }
    EXPECT_EQ(advice().outcome, Outcome::found);
    EXPECT_EQ(advice().sensitivity, 2) << "the last part is 3.0° off";
}

TEST_F(AnAdvice, leaves_out_a_second_in_which_the_phone_is_touched) {
    step = 0.01;
    keeps(up(1), 20.5);
    keeps(up(6), 0.03);
    keeps(up(1), 20.47);
    EXPECT_EQ(advice().sensitivity, 5);
    EXPECT_LT(advice().worstDegreesOff, 1.1);
    EXPECT_NEAR(advice().stillSeconds, 40, 0.5);
}

TEST_F(AnAdvice, takes_the_noise_of_a_sensor_for_no_movement) {
    step = 0.01;
    unsigned dice = 1;
    const auto noise = [&dice] {
        double sum = 0;
        for (int i = 0; i < 12; ++i)
            sum += static_cast<double>((dice = dice * 1664525 + 1013904223) >> 8) / (1 << 24);
        return (sum - 6) * 0.02;
    };
    for (int i = 0; i < 3000; ++i)
        keeps({noise(), noise(), -1 + noise()}, 0.01);
    EXPECT_EQ(advice().outcome, Outcome::found);
    EXPECT_GT(advice().stillSeconds, 29);
}

TEST_F(AnAdvice, does_not_take_a_gap_for_rest) {
    keeps(up(1), 6);
    now += 3600;
    keeps(up(1), 2);
    EXPECT_EQ(advice().outcome, Outcome::moving);
    EXPECT_LT(advice().stillSeconds, 10);
}

TEST_F(AnAdvice, for_real_phones_is_what_they_need) {
    const auto folder =
        std::filesystem::path(NOCTARA_SOURCE_DIR).parent_path() / "shared" / "recordings";
    if (!std::filesystem::is_directory(folder))
        GTEST_SKIP() << "the recordings are not here: " << folder;
    std::ostringstream complaints;
    recording = readRecording(folder / "at-rest-screen-up.csv", {}, complaints);
    EXPECT_EQ(advice().sensitivity, 5);
    EXPECT_FALSE(advice().screenDown);
    EXPECT_NEAR(advice().worstDegreesOff, 1.4, 0.05) << "the touch at the end is left out";
    recording = readRecording(folder / "walking-stairs.csv", {}, complaints);
    EXPECT_EQ(advice().outcome, Outcome::moving);
}

} // namespace
} // namespace noctara
