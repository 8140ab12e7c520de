/// Files that a user names, compressed or not.
#include "input/input_file.h"

#include "input/bad_input.h"
#include "input/temporary_folder.h"

#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <zlib.h>

namespace noctara {
namespace {

class AnInput : public testing::Test {
protected:
    void compress(const std::string& text) const {
        gzFile out = gzopen(file.c_str(), "wb9");
        gzwrite(out, text.data(), static_cast<unsigned>(text.size()));
        gzclose(out);
    }

    std::string refusal() const {
        try {
            readInput(file, 1);
        } catch (const UnreadableFile& error) {
            return error.what();
        }
        return "it was read";
    }

    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path / "file";
};

TEST_F(AnInput, is_decompressed_if_it_is_gzip) {
    compress("settings");
    EXPECT_EQ(readInput(file, 1), "settings");
    std::ofstream(file) << "plain \x1f\x8b text";
    EXPECT_EQ(readInput(file, 1), "plain \x1f\x8b text");
    std::ofstream(file).close();
    EXPECT_EQ(readInput(file, 1), "");
}

TEST_F(AnInput, is_refused_if_it_expands_beyond_the_limit) {
    compress(std::string(1 << 20, 'x'));
    EXPECT_EQ(readInput(file, 1).size(), 1U << 20);
    compress(std::string(40 << 20, 'x'));
    EXPECT_LT(std::filesystem::file_size(file), 100'000U);
    EXPECT_EQ(refusal(), "larger than 1 MiB");
}

TEST_F(AnInput, that_cannot_be_read_is_refused_with_the_reason) {
    EXPECT_EQ(refusal(), "no such file");
    std::filesystem::create_directory(file);
    EXPECT_EQ(refusal(), "a folder, not a file");
}

TEST_F(AnInput, can_be_read_again) {
    compress("twice");
    InputFile input(file, 1, InputFile::Passes::several);
    for (int pass = 0; pass < 2; ++pass) {
        std::string bytes(10, '\0');
        EXPECT_EQ(input.read(bytes.data(), bytes.size()), 5U);
        EXPECT_EQ(input.read(bytes.data(), bytes.size()), 0U);
        input.rewind();
    }
}

TEST_F(AnInput, is_named_with_escaped_control_characters) {
    EXPECT_EQ(shownName("a\x1b[31m\n.csv"), "a\\x1b[31m\\n.csv");
    EXPECT_EQ(shownName("caf\xC3\xA9.csv"), "caf\xC3\xA9.csv");
    EXPECT_EQ(shownName("-"), "standard input");
}

} // namespace
} // namespace noctara
