/// Recordings that are given as text and read from a file.
#pragma once

#include "input/bad_input.h"
#include "recording/recording_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace noctara {

class ARecording : public testing::Test {
protected:
    ~ARecording() override { std::filesystem::remove_all(path); }

    Recording read(const std::string& text, const RecordingOptions& options = {}) {
        std::ofstream(path, std::ios::binary) << text;
        complaints.str("");
        return readRecording(path, options, complaints);
    }

    /// The error message, without the name of the file.
    std::string refusalOf(const std::string& text, const RecordingOptions& options = {}) {
        try {
            read(text, options);
        } catch (const BadInput& refusal) {
            return withoutName(refusal.what());
        }
        return "it was read";
    }

    std::string withoutName(const std::string& line) const {
        EXPECT_THAT(line, testing::StartsWith(path.string()));
        return line.substr(path.string().size());
    }

    std::vector<std::string> complaintLines() const {
        std::istringstream in(complaints.str());
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);)
            lines.push_back(withoutName(line));
        return lines;
    }

    /// Each test has its own file, because tests may run concurrently in several processes.
    static std::filesystem::path ownPath() {
        std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
        std::replace(name.begin(), name.end(), '/', '-');
        return std::filesystem::path(testing::TempDir()) / (name + ".csv");
    }

    std::filesystem::path path = ownPath();
    std::ostringstream complaints;
};

inline void expectReading(const Acceleration& a, double x, double y, double z) {
    EXPECT_NEAR(a.x, x, 1e-9);
    EXPECT_NEAR(a.y, y, 1e-9);
    EXPECT_NEAR(a.z, z, 1e-9);
}

/// Two readings of a phone lying screen up, tilted towards x, in the monitor's axes.
inline void expectTiltedScreenUp(const Recording& recording, double secondsBetween) {
    ASSERT_EQ(recording.samples.size(), 2U);
    EXPECT_EQ(recording.samples[0].seconds, 0);
    EXPECT_NEAR(recording.samples[1].seconds, secondsBetween, 1e-6);
    for (const auto& sample : recording.samples)
        expectReading(sample.acceleration, -0.1, 0, -1);
}

} // namespace noctara
