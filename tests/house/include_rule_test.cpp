/// The arrows of the house: host -> monitor -> radios -> platform, and no library but the standard
/// one in any of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const std::set<std::string> standardHeaders{
    "algorithm", "array",   "atomic",  "charconv", "chrono",      "cmath",
    "compare",   "cstdarg", "cstddef", "cstdint",  "cstdio",      "functional",
    "memory",    "new",     "mutex",   "limits",   "optional",    "stdexcept",
    "string",    "utility", "variant", "vector",   "string_view", "initializer_list",
};

struct Include {
    std::string file;
    std::string name;
    bool inAngleBrackets;
};

std::vector<Include> includesIn(const std::string& folder, bool recursive) {
    std::vector<Include> found;
    const fs::path root = NOCTARA_SOURCE_DIR;
    const auto read = [&](const fs::path& file) {
        if (file.extension() != ".h" && file.extension() != ".cpp")
            return;
        std::ifstream lines(file);
        for (std::string line; std::getline(lines, line);) {
            const auto start = line.find_first_not_of(" \t");
            if (start == line.npos || line[start] != '#')
                continue;
            const auto word = line.find("include", start);
            const auto open = line.find_first_of("<\"", start);
            if (word == line.npos || open == line.npos)
                continue;
            const bool angle = line[open] == '<';
            const auto close = line.find(angle ? '>' : '"', open + 1);
            found.push_back({fs::relative(file, root).string(),
                             line.substr(open + 1, close - open - 1), angle});
        }
    };
    if (recursive)
        for (const auto& entry : fs::recursive_directory_iterator(root / folder))
            read(entry.path());
    else
        for (const auto& entry : fs::directory_iterator(root / folder))
            read(entry.path());
    return found;
}

/// The folder of a header as it is included: "platform/simulated/x.h" gives "platform/simulated".
std::string folderOf(const std::string& name) {
    return fs::path(name).parent_path().string();
}

std::vector<std::string> violations(const std::string& folder,
                                    const std::set<std::string>& mayInclude) {
    std::vector<std::string> found;
    for (const auto& include : includesIn(folder, folder != "platform")) {
        const bool allowed = include.inAngleBrackets ? standardHeaders.contains(include.name)
                                                     : mayInclude.contains(folderOf(include.name));
        if (!allowed)
            found.push_back(include.file + " includes " + include.name);
    }
    return found;
}

TEST(TheHouse, lets_the_platform_interfaces_include_one_another_and_the_standard_library_only) {
    EXPECT_THAT(violations("platform", {"platform"}), testing::IsEmpty());
}

TEST(TheHouse, lets_the_radios_see_the_platform_only) {
    EXPECT_THAT(violations("radios", {"radios", "platform"}), testing::IsEmpty());
}

TEST(TheHouse, lets_the_monitor_see_radios_and_platform_only) {
    EXPECT_THAT(violations("monitor", {"monitor", "radios", "platform"}), testing::IsEmpty());
}

TEST(TheHouse, lets_the_host_see_the_rest_of_the_core_only) {
    EXPECT_THAT(violations("host", {"host", "monitor", "radios", "platform"}), testing::IsEmpty());
}

TEST(TheHouse, keeps_the_tools_out_of_the_simulated_phone) {
    for (const auto& include : includesIn("platform/simulated", true))
        EXPECT_FALSE(include.name.starts_with("tools/"))
            << include.file << " includes " << include.name;
}

TEST(TheHouse, is_read_by_these_tests) {
    EXPECT_GT(includesIn("monitor", false).size(), 20U);
    EXPECT_THAT(violations("monitor", {}), testing::Not(testing::IsEmpty()));
}

} // namespace
