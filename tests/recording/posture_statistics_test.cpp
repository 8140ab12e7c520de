/// Statistics of the posture of the phone in a recording.
#include "recording/posture_statistics.h"

#include "recording/recording_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <numbers>
#include <sstream>
#include <vector>

namespace noctara {
namespace {

Acceleration screenUp(double degreesOff, double length = 1.0) {
    const double radians = degreesOff * std::numbers::pi / 180;
    return {length * std::sin(radians), 0, -length * std::cos(radians)};
}

Acceleration screenDown(double degreesOff) {
    const Acceleration up = screenUp(degreesOff);
    return {up.x, up.y, -up.z};
}

PostureStatistics statisticsOf(const std::vector<Acceleration>& readings) {
    Recording recording;
    for (const Acceleration& reading : readings)
        recording.samples.push_back({static_cast<double>(recording.samples.size()), reading});
    return computePostureStatistics(recording);
}

TEST(PostureStatistics, count_the_readings_that_pass_in_each_posture) {
    const auto statistics =
        statisticsOf({screenUp(1), screenUp(4), screenUp(0, 1.2), screenDown(2), screenUp(90)});
    EXPECT_DOUBLE_EQ(statistics.screenUp[0], 0.4);
    EXPECT_DOUBLE_EQ(statistics.screenUp[3], 0.2);
    EXPECT_DOUBLE_EQ(statistics.screenDown[0], 0.2);
    EXPECT_DOUBLE_EQ(statistics.screenDown[9], 0.0);
}

TEST(PostureStatistics, describe_the_posture_in_which_more_readings_pass) {
    const auto statistics =
        statisticsOf({screenDown(1), screenDown(5), screenDown(1.5), screenUp(1), screenUp(40)});
    ASSERT_TRUE(statistics.lying);
    EXPECT_TRUE(statistics.lying->screenDown);
    EXPECT_NEAR(statistics.lying->medianDegreesOff, 1.5, 1e-3);
    EXPECT_NEAR(statistics.lying->worstDegreesOff, 5, 1e-3);
    EXPECT_DOUBLE_EQ(statistics.lying->passing[0], 1);
    EXPECT_DOUBLE_EQ(statistics.lying->passing[5], 2.0 / 3);
    EXPECT_EQ(statistics.lying->highestPassing(1.0), 1);
    EXPECT_EQ(statistics.lying->highestPassing(0.6), 7);
    EXPECT_EQ(statistics.lying->highestPassing(0.1), 9);
}

TEST(PostureStatistics, have_no_posture_of_a_phone_that_never_lies) {
    EXPECT_FALSE(statisticsOf({screenUp(40), screenUp(90), screenUp(0, 1.2)}).lying);
}

TEST(PostureStatistics, find_the_reading_that_a_still_phone_keeps_to) {
    std::vector<Acceleration> readings(10, screenUp(34, 0.8));
    readings.push_back(screenUp(80, 2));
    const auto steady = statisticsOf(readings).steady;
    ASSERT_TRUE(steady);
    EXPECT_NEAR(steady->degreesOffVertical(), 34, 1e-3);
    EXPECT_NEAR(steady->length, 0.8, 1e-9);
    EXPECT_FALSE(steady->hasLengthAtRest());
}

TEST(PostureStatistics, have_no_steady_reading_of_a_moved_phone) {
    std::vector<Acceleration> readings(8, screenUp(0));
    readings.push_back(screenUp(10));
    EXPECT_FALSE(statisticsOf(readings).steady);
}

TEST(PostureStatistics, of_real_phones_agree_with_independent_measurements) {
    const auto folder =
        std::filesystem::path(NOCTARA_SOURCE_DIR).parent_path() / "shared" / "recordings";
    if (!std::filesystem::is_directory(folder))
        GTEST_SKIP() << "the recordings are not here: " << folder;

    std::ostringstream complaints;
    const auto atRest = readRecording(folder / "at-rest-screen-up.csv", {}, complaints);
    EXPECT_EQ(atRest.samples.size(), 12411U);
    const auto resting = computePostureStatistics(atRest);
    EXPECT_NEAR(resting.screenUp[0], 1.0000, 0.00005);
    EXPECT_NEAR(resting.screenUp[2], 0.9999, 0.00005);
    EXPECT_NEAR(resting.screenUp[5], 0.9997, 0.00005);
    EXPECT_NEAR(resting.screenUp[9], 0.9927, 0.00005);
    EXPECT_EQ(resting.screenDown, BySensitivity{});

    const auto walking = readRecording(folder / "walking-stairs.csv", {}, complaints);
    EXPECT_EQ(walking.samples.size(), 23770U);
    EXPECT_EQ(computePostureStatistics(walking).screenUp, BySensitivity{});
    EXPECT_EQ(complaints.str(), "");
}

} // namespace
} // namespace noctara
