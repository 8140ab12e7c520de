/// The shares of readings that pass the monitor's check.
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

PostureShares sharesOf(const std::vector<Acceleration>& readings) {
    PostureShares shares;
    for (const Acceleration& reading : readings)
        shares.add(PostureReading(reading));
    return shares;
}

PostureShares sharesOf(const Recording& recording) {
    PostureShares shares;
    for (const auto& sample : recording.samples)
        shares.add(PostureReading(sample.acceleration));
    return shares;
}

TEST(PostureShares, count_the_readings_that_pass_in_each_posture) {
    const auto shares =
        sharesOf({screenUp(1), screenUp(4), screenUp(0, 1.2), screenDown(2), screenUp(90)});
    EXPECT_DOUBLE_EQ(shares.of(false)[0], 0.4);
    EXPECT_DOUBLE_EQ(shares.of(false)[3], 0.2);
    EXPECT_DOUBLE_EQ(shares.of(true)[0], 0.2);
    EXPECT_DOUBLE_EQ(shares.of(true)[9], 0.0);
}

TEST(APostureReading, tells_tilt_and_length_apart) {
    const PostureReading tilted(screenUp(34));
    EXPECT_TRUE(tilted.hasLengthAtRest());
    EXPECT_FALSE(tilted.lies(0, false));
    EXPECT_NEAR(tilted.degreesOffVertical(), 34, 1e-3);
    const PostureReading light({0, 0, 0.8});
    EXPECT_FALSE(light.hasLengthAtRest());
    EXPECT_TRUE(light.nearerToScreenDown());
}

TEST(PostureShares, of_real_phones_agree_with_independent_measurements) {
    const auto folder =
        std::filesystem::path(NOCTARA_SOURCE_DIR).parent_path() / "shared" / "recordings";
    if (!std::filesystem::is_directory(folder))
        GTEST_SKIP() << "the recordings are not here: " << folder;

    std::ostringstream complaints;
    const auto atRest = readRecording(folder / "at-rest-screen-up.csv", {}, complaints);
    EXPECT_EQ(atRest.samples.size(), 12411U);
    const auto resting = sharesOf(atRest).of(false);
    EXPECT_NEAR(resting[0], 1.0000, 0.00005);
    EXPECT_NEAR(resting[2], 0.9999, 0.00005);
    EXPECT_NEAR(resting[5], 0.9997, 0.00005);
    EXPECT_NEAR(resting[9], 0.9927, 0.00005);
    EXPECT_EQ(sharesOf(atRest).of(true), BySensitivity{});

    const auto walking = readRecording(folder / "walking-stairs.csv", {}, complaints);
    EXPECT_EQ(walking.samples.size(), 23770U);
    EXPECT_EQ(sharesOf(walking).of(false), BySensitivity{});
    EXPECT_EQ(complaints.str(), "");
}

} // namespace
} // namespace noctara
