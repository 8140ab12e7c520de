/// A settings file or a list of wake-ups that is no ordinary file: the answer is quick, and says
/// why.
#include "input/temporary_folder.h"
#include "phones/model/phone_model.h"
#include "phones/model/property_list_file.h"
#include "tests/full_settings.h"
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctara {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

struct UnusualFile {
    const char* name;
    void (*make)(const fs::path& file);
    const char* why; ///< What is wrong with it, for `noctara settings`. Empty: nothing.
};

void PrintTo(const UnusualFile& file, std::ostream* out) {
    *out << file.name;
}

class AnUnusualFile : public testing::TestWithParam<UnusualFile> {
protected:
    AnUnusualFile() {
        for (const auto& path : {settings, wakes})
            fs::create_directories(path.parent_path());
        std::ofstream(night) << "hours = 0.1\n[phone]\nposture = \"screen-down\"\n";
    }

    /// As a user who may not read everything, ended after 20 s.
    static Played command(const std::string& arguments) {
        const std::string user =
            geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search " : "";
        const Played played =
            run("timeout 20 " + user + "'" NOCTARA_COMMAND "' " + arguments + " 2>&1");
#ifndef NOCTARA_SANITIZED // AddressSanitizer keeps what is freed.
        rusage usage{};
        getrusage(RUSAGE_CHILDREN, &usage);
        EXPECT_LT(usage.ru_maxrss, 400'000) << "KiB, " << arguments;
#endif
        return played;
    }

    Played play(const std::string& options = "") const {
        return command("night '" + night.string() + "' --root '" + root.string() + "' " + options);
    }

    const TemporaryFolder folder;
    const fs::path night = folder.path / "night.toml";
    const fs::path root = folder.path / "root";
    const fs::path settings = root / fs::path(settingsFilePath).relative_path();
    const fs::path wakes =
        root / "private/var/preferences/SystemConfiguration/com.apple.AutoWake.plist";
};

void makeLink(const fs::path& file) {
    const fs::path target = file.string() + ".target";
    writePropertyListFile(target, fullSettings({{"Sensitivity", 4}}));
    fs::create_symlink(target, file);
}

void makeUnreadable(const fs::path& file) {
    writePropertyListFile(file, fullSettings());
    fs::permissions(file, fs::perms::none);
}

void makeHuge(const fs::path& file) {
    std::ofstream(file).flush();
    fs::resize_file(file, 100 << 20);
}

INSTANTIATE_TEST_SUITE_P(
    , AnUnusualFile,
    testing::Values(
        UnusualFile{"Folder", [](const fs::path& file) { fs::create_directory(file); }, "a folder"},
        UnusualFile{"DanglingLink",
                    [](const fs::path& file) { fs::create_symlink("nowhere", file); },
                    "no such file"},
        UnusualFile{"Link", makeLink, ""},
        UnusualFile{"Pipe", [](const fs::path& file) { mkfifo(file.c_str(), 0666); },
                    "not a regular file"},
        UnusualFile{"Unreadable", makeUnreadable, "Permission denied"},
        UnusualFile{"Empty", [](const fs::path& file) { std::ofstream(file).flush(); }, "empty"},
        UnusualFile{"OfAHundredMegabytes", makeHuge, "larger than 1 MiB"}),
    [](const auto& file) { return std::string(file.param.name); });

TEST_P(AnUnusualFile, of_settings_is_changed_or_refused_in_one_line) {
    GetParam().make(settings);
    const auto before = fs::symlink_status(settings).type();
    const Played set = command("settings '" + settings.string() + "' set Sensitivity 3");
    EXPECT_EQ(std::count(set.output.begin(), set.output.end(), '\n'), 1) << set.output;
    EXPECT_EQ(set.exitCode, *GetParam().why ? 2 : 0);
    EXPECT_THAT(set.output, HasSubstr(GetParam().why));
    EXPECT_EQ(fs::symlink_status(settings).type(), before);
}

TEST_P(AnUnusualFile, of_settings_is_a_damaged_file_to_the_monitor_or_counts) {
    GetParam().make(settings);
    const std::string name = GetParam().name;
    const Played played = play("--log");
    EXPECT_NE(played.exitCode, 124) << "it hangs";
    // To the monitor there is no file behind a dangling link.
    EXPECT_THAT(played.output, HasSubstr(name == "Link"           ? "sensitivity 4"
                                         : name == "DanglingLink" ? "plist created"
                                                                  : "COULD NOT be created"));
}

TEST_P(AnUnusualFile, of_settings_is_replaced_by_those_of_the_night) {
    GetParam().make(settings);
    const Played played = play("--set Sensitivity=3");
    EXPECT_THAT(played.output, HasSubstr("sensitivity 3"));
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(settings)));
}

TEST_P(AnUnusualFile, in_place_of_the_list_of_wake_ups_does_not_end_the_night) {
    GetParam().make(wakes);
    const Played played = play();
    EXPECT_EQ(played.exitCode, 0) << played.output;
    EXPECT_THAT(played.output, HasSubstr("Quiet for "));
}

} // namespace
} // namespace noctara
