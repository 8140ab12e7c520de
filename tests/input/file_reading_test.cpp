/// Reading of files that a user names, and quotation of their text in messages.
#include "input/file_reading.h"

#include "input/bad_input.h"
#include "input/temporary_folder.h"

#include <sys/stat.h>

#include <fstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace noctara {
namespace {

class AFile : public testing::Test {
protected:
    std::string read(const std::string& content) const {
        std::ofstream(file, std::ios::binary) << content;
        return readFile(file, 1);
    }

    static std::string refusalOf(const std::filesystem::path& file) {
        try {
            readFile(file, 1);
        } catch (const UnreadableFile& refusal) {
            return refusal.what();
        }
        return "";
    }

    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path / "file";
};

TEST_F(AFile, is_read_whole) {
    EXPECT_EQ(read(""), "");
    EXPECT_EQ(read(std::string("a\0\r\n\xFF", 5)), std::string("a\0\r\n\xFF", 5));
    const std::string mebibyte(1 << 20, 'x');
    EXPECT_EQ(read(mebibyte), mebibyte);
}

TEST_F(AFile, may_be_a_pipe) {
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    std::thread writer([this] { std::ofstream(file) << "from the pipe"; });
    const std::string content = readFile(file, 1);
    writer.join();
    EXPECT_EQ(content, "from the pipe");
}

TEST_F(AFile, that_is_a_pipe_can_be_refused_and_its_writer_goes_on) {
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    std::thread writer([this] { std::ofstream(file) << "from the pipe"; });
    std::string refusal;
    std::string content;
    try {
        content = readFile(file, 1, Pipes::refused);
    } catch (const UnreadableFile& error) {
        refusal = error.what();
        content = readFile(file, 1);
    }
    writer.join();
    EXPECT_EQ(refusal, "not a regular file");
    EXPECT_EQ(content, "from the pipe");
}

TEST_F(AFile, of_the_system_is_read_whole_although_its_size_is_0) {
    std::string maximum;
    std::ifstream("/proc/sys/kernel/pid_max") >> maximum;
    EXPECT_EQ(readFile("/proc/sys/kernel/pid_max", 1), maximum + '\n');
}

TEST_F(AFile, that_cannot_be_read_is_refused_with_the_reason) {
    EXPECT_EQ(refusalOf(file), "no such file");
    EXPECT_EQ(refusalOf(folder.path), "a folder, not a file");
    std::ofstream(file, std::ios::binary) << std::string((1 << 20) + 1, 'x');
    EXPECT_EQ(refusalOf(file), "larger than 1 MiB");
    EXPECT_EQ(refusalOf(file / "below"), "Not a directory");
    EXPECT_EQ(refusalOf("/dev/zero"), "larger than 1 MiB");
}

TEST(AUsersText, is_shown_in_quotes_without_control_characters) {
    EXPECT_EQ(inQuotes("caf\xC3\xA9"), "\"caf\xC3\xA9\"");
    EXPECT_EQ(inQuotes("a\tb\x7F\xC2\x9B\x9B\xE9z"), "\"a?b????z\"");
}

TEST(AUsersText, is_cut_after_a_whole_character) {
    EXPECT_EQ(inQuotes(std::string(40, 'x')), '"' + std::string(40, 'x') + '"');
    EXPECT_EQ(inQuotes(std::string(41, 'x')), '"' + std::string(40, 'x') + "...\"");
    EXPECT_EQ(inQuotes(std::string(39, 'x') + "\xC3\xA9"), '"' + std::string(39, 'x') + "...\"");
}

} // namespace
} // namespace noctara
