/// Which folder may include which.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// A folder with its subfolders, and the other folders that its files may include.
struct Rule {
    std::string folder;
    std::set<std::string> mayInclude;
    bool standardLibraryAlone = false; ///< No other headers in angle brackets.
};

/// No folder includes one that stands after it in this list. Only folders with `monitor` or `host`
/// can create a monitor; phones that load the library must not.
const std::vector<Rule> rules{
    {"platform", {}, true},
    {"radios", {"platform"}, true},
    {"monitor", {"platform", "radios"}, true},
    {"host", {"platform", "radios", "monitor"}, true},
    {"input", {"platform"}},
    {"output", {"input"}},
    {"phones/model", {"platform", "input"}},
    {"settings", {"platform", "monitor", "input", "output", "phones/model"}},
    {"night", {"platform", "monitor", "input", "output", "phones/model", "settings"}},
    {"recording", {"platform", "monitor", "input"}},
    {"report", {"platform", "monitor", "input", "output", "phones/model", "night", "recording"}},
    {"phones/simulated", {"platform", "radios", "monitor", "host", "phones/model"}},
    {"phones/replay", {"platform", "host", "input", "phones/model", "night", "phones/simulated"}},
    {"soak",
     {"platform", "monitor", "host", "input", "output", "phones/model", "night",
      "phones/simulated"}},
    {"phones/springboard", {"platform", "radios", "monitor", "host"}},
    {"phones/stand_in",
     {"platform", "input", "output", "phones/model", "night", "phones/springboard"}},
    {"phones/emulated", {"platform", "input", "output", "phones/model", "night"}},
    {"live",
     {"platform", "monitor", "host", "input", "phones/model", "settings", "night",
      "phones/simulated"}},
    {"command",
     {"platform", "radios", "monitor", "host", "input", "output", "phones/model", "settings",
      "night", "recording", "report", "phones/simulated", "phones/replay", "soak", "live"}},
    {"page",
     {"platform", "host", "input", "phones/model", "settings", "night", "recording", "report",
      "phones/simulated", "command"}},
};

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

std::vector<Include> includesIn(const std::string& folder) {
    std::vector<Include> found;
    const fs::path root = NOCTARA_SOURCE_DIR;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
        if (!std::set<fs::path>{".h", ".cpp", ".mm"}.contains(entry.path().extension()))
            continue;
        std::ifstream lines(entry.path());
        for (std::string line; std::getline(lines, line);) {
            const auto start = line.find_first_not_of(" \t");
            if (start == line.npos || line[start] != '#')
                continue;
            const auto word = std::min(line.find("include", start), line.find("import", start));
            const auto open = line.find_first_of("<\"", start);
            if (word == line.npos || open == line.npos)
                continue;
            const bool angle = line[open] == '<';
            const auto close = line.find(angle ? '>' : '"', open + 1);
            found.push_back({fs::relative(entry.path(), root).string(),
                             line.substr(open + 1, close - open - 1), angle});
        }
    }
    return found;
}

/// Whether the header lies in the folder, or below it.
bool liesIn(const std::string& header, const std::string& folder) {
    return header.starts_with(folder + '/');
}

std::vector<std::string> violations(const Rule& rule) {
    const auto isAllowed = [&](const Include& include) {
        if (include.inAngleBrackets)
            return !rule.standardLibraryAlone || standardHeaders.contains(include.name);
        return liesIn(include.name, rule.folder) ||
               std::any_of(rule.mayInclude.begin(), rule.mayInclude.end(),
                           [&](const auto& folder) { return liesIn(include.name, folder); });
    };
    std::vector<std::string> found;
    for (const auto& include : includesIn(rule.folder))
        if (!isAllowed(include))
            found.push_back(include.file + " includes " + include.name);
    return found;
}

TEST(TheLayout, has_no_include_that_its_rules_do_not_allow) {
    for (const auto& rule : rules)
        EXPECT_THAT(violations(rule), testing::IsEmpty()) << "in " << rule.folder;
}

TEST(TheLayout, has_rules_whose_arrows_run_one_way) {
    std::set<std::string> above;
    for (const auto& rule : rules) {
        for (const auto& folder : rule.mayInclude)
            EXPECT_TRUE(above.contains(folder)) << rule.folder << " may include " << folder;
        above.insert(rule.folder);
    }
}

TEST(TheLayout, is_read_by_these_tests) {
    EXPECT_GT(includesIn("monitor").size(), 20U);
    EXPECT_THAT(violations({"monitor", {}, true}), testing::Not(testing::IsEmpty()));
}

} // namespace
