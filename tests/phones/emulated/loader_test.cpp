/// What the emulated phone's loader does with a damaged library: it refuses it with a message, or
/// loads it.
#include "input/file_reading.h"
#include "input/temporary_folder.h"
#include "night/scenario_file.h"
#include "phones/emulated/emulated_phone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <openssl/sha.h>
#include <span>

namespace noctara::emulated {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

/// A library whose bytes can be changed, with or without a new signature.
class ALibrarysFile : public testing::Test {
protected:
    static constexpr std::size_t headerSize = 32;
    static constexpr std::size_t pageSize = 4096;
    static constexpr std::size_t hashSize = SHA256_DIGEST_LENGTH;

    std::uint32_t littleEndian(std::size_t at) const {
        std::uint32_t value = 0;
        std::memcpy(&value, &file[at], sizeof value);
        return value;
    }

    std::uint32_t bigEndian(std::size_t at) const {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value = value << 8 | static_cast<unsigned char>(file[at + i]);
        return value;
    }

    std::size_t endOfCommands() const { return headerSize + littleEndian(20); }

    /// The offset of the content of a load command of this type.
    std::size_t command(std::uint32_t type) const {
        for (std::size_t at = headerSize; at < endOfCommands(); at += littleEndian(at + 4))
            if (littleEndian(at) == type)
                return at + 8;
        return 0;
    }

    void change(std::size_t at, unsigned bits) {
        file[at] = static_cast<char>(static_cast<unsigned char>(file[at]) ^ bits);
    }

    /// Hashes the page of a byte anew.
    void sign(std::size_t at) {
        const std::size_t directory = signature + bigEndian(signature + 16);
        const std::size_t hashes = directory + bigEndian(directory + 16);
        const std::size_t start = at / pageSize * pageSize;
        SHA256(reinterpret_cast<const unsigned char*>(&file[start]),
               std::min(pageSize, signature - start),
               reinterpret_cast<unsigned char*>(&file[hashes + at / pageSize * hashSize]));
    }

    std::string reading() const {
        try {
            readMachO(std::as_bytes(std::span(file)));
        } catch (const BadLibrary& error) {
            return error.what();
        }
        return "it is read";
    }

    /// Loads the file into a process, which does not run.
    std::string loading() const {
        std::ofstream(copy, std::ios::binary) << file;
        try {
            const EmulatedPhone phone(parseScenario("hours = 1", "night.toml"),
                                      makeMemoryFileStore(), {copy, 0x4000, {}});
        } catch (const BadLibrary& error) {
            return error.what();
        }
        return "it is loaded";
    }

    /// Changes every `step`th byte of a part, one at a time, and looks at the file each time.
    template <typename Look>
    void sweep(std::size_t start, std::size_t end, std::size_t step, Look look) {
        ASSERT_LT(start, end);
        for (std::size_t at = start; at < end; at += step) {
            for (const unsigned bits : {0x01U, 0xffU}) {
                change(at, bits);
                sign(at);
                look(at);
                change(at, bits);
            }
            sign(at);
        }
    }

    std::string file = readFile(NOCTARA_DYLIB, 64);
    const std::size_t signature = littleEndian(command(0x1d));
    const std::size_t linkInformation = littleEndian(command(0x80000022));

private:
    TemporaryFolder temporary{"noctara-loader"};
    const std::filesystem::path copy = temporary.path / "Noctara.dylib";
};

TEST_F(ALibrarysFile, is_loaded_as_it_is_and_when_it_is_signed_again) {
    EXPECT_EQ(loading(), "it is loaded");
    sign(0);
    EXPECT_EQ(loading(), "it is loaded");
}

TEST_F(ALibrarysFile, is_refused_if_a_byte_of_the_code_is_changed) {
    change(0x8000, 1);
    EXPECT_EQ(reading(), "page 8 differs from its signed hash");
    sign(0x8000);
    EXPECT_EQ(reading(), "it is read");
}

TEST_F(ALibrarysFile, is_refused_if_any_part_that_is_signed_is_changed) {
    for (std::size_t at = endOfCommands(); at < signature; at += pageSize / 2) {
        change(at, 1);
        EXPECT_EQ(reading(),
                  "page " + std::to_string(at / pageSize) + " differs from its signed hash");
        change(at, 1);
    }
}

TEST_F(ALibrarysFile, is_refused_if_the_hashes_are_damaged) {
    const std::size_t directory = signature + bigEndian(signature + 16);
    const std::size_t hashes = directory + bigEndian(directory + 16);
    for (std::size_t at = hashes; at < hashes + 4 * hashSize; at += 5) {
        change(at, 0x10);
        EXPECT_THAT(reading(), MatchesRegex("page [0-3] differs from its signed hash"));
        change(at, 0x10);
    }
}

TEST_F(ALibrarysFile, is_refused_if_it_is_cut_off_anywhere) {
    const std::string whole = file;
    for (std::size_t size = 0; size < whole.size(); size += 997) {
        file = whole.substr(0, size);
        EXPECT_NE(reading(), "it is read") << size;
    }
}

TEST_F(ALibrarysFile, is_refused_with_a_reason_if_its_header_is_wrong) {
    const auto withWord = [&](std::size_t at, std::uint32_t value) {
        const std::string before = file;
        std::memcpy(&file[at], &value, sizeof value);
        sign(at);
        const std::string answer = reading();
        file = before;
        return answer;
    };
    EXPECT_EQ(withWord(0, 0xfeedface), "it is no 64-bit Mach-O file");
    EXPECT_EQ(withWord(4, 12), "it is not for arm64");
    EXPECT_EQ(withWord(8, 2), "it is not for arm64");
    EXPECT_EQ(withWord(12, 2), "it is no dynamic library");
    EXPECT_THAT(withWord(20, 0xffffffff), HasSubstr("ends too early"));
}

TEST_F(ALibrarysFile, is_read_or_refused_with_any_byte_of_the_load_commands_changed) {
    std::size_t refused = 0;
    sweep(0, endOfCommands(), 1, [&](std::size_t at) {
        const std::string answer = reading();
        EXPECT_FALSE(answer.empty()) << at;
        refused += answer != "it is read";
    });
    EXPECT_GT(refused, endOfCommands() / 4);
}

TEST_F(ALibrarysFile, is_read_or_refused_with_any_byte_of_the_link_information_changed) {
    std::size_t refused = 0;
    sweep(linkInformation, signature, 5, [&](std::size_t at) {
        const std::string answer = reading();
        EXPECT_FALSE(answer.empty()) << at;
        refused += answer != "it is read";
    });
    EXPECT_GT(refused, 100U);
}

TEST_F(ALibrarysFile, is_loaded_or_refused_with_a_byte_of_the_load_commands_changed) {
    std::size_t refused = 0;
    sweep(0, endOfCommands(), 61, [&](std::size_t) { refused += loading() != "it is loaded"; });
    EXPECT_GT(refused, 5U);
}

TEST_F(ALibrarysFile, is_loaded_or_refused_with_a_byte_of_the_link_information_changed) {
    std::size_t refused = 0;
    sweep(linkInformation, signature, 211,
          [&](std::size_t) { refused += loading() != "it is loaded"; });
    EXPECT_GT(refused, 5U);
}

TEST_F(ALibrarysFile, is_loaded_or_refused_with_a_byte_of_its_data_changed) {
    // Pointers to classes, methods and selectors.
    const std::size_t data = linkInformation - 0x4000;
    sweep(data, linkInformation, 307, [&](std::size_t) { EXPECT_NE(loading(), ""); });
}

} // namespace
} // namespace noctara::emulated
