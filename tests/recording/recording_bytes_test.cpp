/// Recordings that are compressed, or that come from a pipe.
#include "recording/recording_file.h"

#include "tests/recording/a_recording.h"

#include <fstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

namespace noctara {
namespace {

class ARecordingInBytes : public ARecording {
protected:
    static std::string compressed(const std::string& text) {
        z_stream stream{};
        deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
        std::string bytes(deflateBound(&stream, text.size()), '\0');
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
        stream.avail_in = static_cast<uInt>(text.size());
        stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
        stream.avail_out = static_cast<uInt>(bytes.size());
        deflate(&stream, Z_FINISH);
        bytes.resize(stream.total_out);
        deflateEnd(&stream);
        return bytes;
    }

    const std::string text = "time,x,y,z\n0.5,-0.1,0,-1\n0.7,-0.1,0,-1\n";
};

TEST_F(ARecordingInBytes, is_decompressed) {
    expectTiltedScreenUp(read(compressed(text)), 0.2);
    expectTiltedScreenUp(read(compressed(text.substr(0, 15)) + compressed(text.substr(15))), 0.2);
}

TEST_F(ARecordingInBytes, is_refused_if_the_compressed_data_is_damaged) {
    std::string bytes = compressed(text);
    EXPECT_EQ(refusalOf(bytes.substr(0, bytes.size() - 12)),
              ": cannot be read: the gzip data ends too early; give the CSV file that the logger "
              "exports");
    bytes[12] = static_cast<char>(~bytes[12]);
    EXPECT_THAT(refusalOf(bytes), testing::HasSubstr("the gzip data is damaged"));
}

TEST_F(ARecordingInBytes, may_come_from_a_pipe_although_it_is_read_twice) {
    for (const std::string& bytes : {text, compressed(text)}) {
        std::filesystem::remove(path);
        ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
        std::thread writer([&] { std::ofstream(path, std::ios::binary) << bytes; });
        const Recording recording = readRecording(path, {}, complaints);
        writer.join();
        expectTiltedScreenUp(recording, 0.2);
    }
}

TEST_F(ARecordingInBytes, has_lines_across_the_blocks_in_which_it_is_read) {
    std::string many = "time,x,y,z\n";
    for (int i = 0; i < 50'000; ++i)
        many += std::to_string(i) + ",0,0," + (i % 3 == 0 ? "-1\n" : "-1.000000\r\n");
    many.pop_back();
    EXPECT_EQ(read(many).samples.size(), 50'000U);
    EXPECT_EQ(complaints.str(), "");
}

TEST_F(ARecordingInBytes, is_read_as_samples_without_being_in_memory) {
    std::ofstream(path) << text;
    RecordingFile file(path, {}, complaints);
    EXPECT_EQ(file.summary().samples, 2U);
    EXPECT_NEAR(file.summary().lastSeconds, 0.2, 1e-9);
    EXPECT_NEAR(file.summary().medianStep, 0.2, 1e-6);
    EXPECT_TRUE(file.summary().axesAreAssumed);
    Recording recording;
    file.forEachSample([&](const auto& sample) { recording.samples.push_back(sample); });
    expectTiltedScreenUp(recording, 0.2);
}

} // namespace
} // namespace noctara
