/// Files that the command writes for the user.
#include "output/output_file.h"

#include "input/bad_input.h"
#include "input/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace noctara {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

class AnOutputFile : public testing::Test {
protected:
    bool write(const fs::path& place, const std::string& text) {
        OutputFile output("--trace", place, {});
        output.stream() << text;
        return output.keep();
    }

    void writeWithoutKeeping(const fs::path& place) {
        OutputFile output("--trace", place, {});
        output.stream() << "half" << std::flush;
    }

    std::string refusalOf(const fs::path& place, const std::vector<fs::path>& inputs = {}) {
        try {
            OutputFile("--trace", place, inputs);
        } catch (const BadInput& refusal) {
            return refusal.what();
        }
        return "";
    }

    static std::string text(const fs::path& place) {
        std::stringstream all;
        all << std::ifstream(place).rdbuf();
        return all.str();
    }

    std::size_t files() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder.path), fs::directory_iterator()));
    }

    const TemporaryFolder folder;
    const fs::path file = folder.path / "night.jsonl";
};

TEST_F(AnOutputFile, is_there_once_it_is_kept) {
    EXPECT_TRUE(write(file, "new"));
    EXPECT_EQ(text(file), "new");
    EXPECT_EQ(files(), 1U);
}

TEST_F(AnOutputFile, leaves_nothing_if_it_is_not_kept) {
    writeWithoutKeeping(file);
    EXPECT_EQ(files(), 0U);
    std::ofstream(file) << "older";
    writeWithoutKeeping(file);
    EXPECT_EQ(text(file), "older");
    EXPECT_EQ(files(), 1U);
}

TEST_F(AnOutputFile, keeps_the_permissions_of_the_file_that_it_replaces) {
    std::ofstream(file) << "older";
    fs::permissions(file, fs::perms(0640));
    EXPECT_TRUE(write(file, "new"));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
}

TEST_F(AnOutputFile, has_the_permissions_of_a_new_file) {
    const mode_t before = umask(027);
    EXPECT_TRUE(write(file, "new"));
    umask(before);
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
}

TEST_F(AnOutputFile, replaces_what_a_link_points_to_even_if_that_is_missing) {
    for (const char* link : {"link", "link to link"}) {
        fs::create_symlink(std::string(link) == "link" ? "night.jsonl" : "link",
                           folder.path / link);
        fs::remove(file);
        for (const std::string bytes : {"new", "newer"}) {
            EXPECT_TRUE(write(folder.path / link, bytes));
            EXPECT_TRUE(fs::is_symlink(folder.path / link));
            EXPECT_EQ(text(file), bytes);
        }
    }
}

TEST_F(AnOutputFile, is_written_directly_into_a_pipe) {
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    std::string read;
    std::thread reader([&] { read = text(file); });
    EXPECT_TRUE(write(file, "through the pipe"));
    reader.join();
    EXPECT_EQ(read, "through the pipe");
    EXPECT_TRUE(fs::is_fifo(file));
}

TEST_F(AnOutputFile, does_not_replace_a_file_that_is_named_by_a_descriptor) {
    const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT, 0600);
    EXPECT_TRUE(write("/dev/fd/" + std::to_string(descriptor), "new"));
    close(descriptor);
    EXPECT_EQ(text(file), "new");
    EXPECT_EQ(files(), 1U);
}

TEST_F(AnOutputFile, on_a_full_device_is_not_kept) {
    EXPECT_FALSE(write("/dev/full", "new"));
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST_F(AnOutputFile, is_refused_where_it_cannot_be_written) {
    EXPECT_THAT(refusalOf(folder.path), HasSubstr("Is a directory"));
    EXPECT_THAT(
        refusalOf(folder.path / "missing/night.jsonl"),
        HasSubstr("cannot be written (No such file or directory); give a file in a folder"));
    EXPECT_THAT(refusalOf(file / ""), HasSubstr("--trace: "));
    std::ofstream(file) << "an input";
    EXPECT_THAT(refusalOf(folder.path / "." / "night.jsonl", {file}),
                HasSubstr("is an input of this command"));
    EXPECT_EQ(files(), 1U);
}

TEST_F(AnOutputFile, is_refused_in_a_folder_or_over_a_file_that_the_user_cannot_write) {
    if (geteuid() == 0)
        GTEST_SKIP() << "root can write everywhere";
    std::ofstream(file) << "older";
    fs::permissions(file, fs::perms(0400));
    EXPECT_THAT(refusalOf(file), HasSubstr("Permission denied"));
    fs::permissions(folder.path, fs::perms(0500));
    EXPECT_THAT(refusalOf(folder.path / "other"), HasSubstr("Permission denied"));
    fs::permissions(folder.path, fs::perms(0700));
}

} // namespace
} // namespace noctara
