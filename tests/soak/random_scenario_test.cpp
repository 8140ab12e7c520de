/// Random scenarios are useful: all can be played, most enter the sleep state, and together they
/// have all keys of scenario files and settings.
#include "soak/random_scenario.h"

#include "host/host.h"
#include "night/scenario_file.h"
#include "phones/simulated/simulated_phone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace noctara {

namespace {

constexpr std::uint64_t seeds = 300;

/// How often the monitor switches into the sleep state, and back.
class Switches final : public PhoneObserver {
public:
    void called(const Call& call) override {
        if (call.operation == Operation::performSelectorOnMainThread &&
            std::get<std::string_view>(call.arguments[0]) == "setStateAirplaneMode")
            ++(NoctaraInstance->currentState ? into : back);
    }
    void happens(const Happening&) override {}

    int into = 0;
    int back = 0;
};

Switches played(std::uint64_t seed) {
    SimulatedPhone phone(parseScenario(randomScenario(seed), "seed " + std::to_string(seed)));
    Switches switches;
    phone.observe(switches);
    phone.launch();
    phone.playToTheEnd();
    return switches;
}

/// The code spans in the first column of a row in a table of keys.
std::set<std::string> keysInTable(const std::string& row) {
    static const std::regex code("`([^`]+)`");
    const std::string firstColumn = row.substr(0, row.find('|', 1));
    std::set<std::string> keys;
    for (std::sregex_iterator match(firstColumn.begin(), firstColumn.end(), code), end;
         match != end; ++match)
        keys.insert((*match)[1]);
    return keys;
}

std::vector<std::string> linesOf(const std::string& document) {
    std::ifstream file(std::string(NOCTARA_SOURCE_DIR) + "/docs/" + document);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

/// For example "[phone] charger". Keys before the first table have no section.
std::set<std::string> keysOfScenarios() {
    static const std::regex heading("## (?:`(\\[.*\\])`)?.*");
    std::set<std::string> keys;
    std::string section;
    for (const std::string& line : linesOf("scenarios.md")) {
        std::smatch match;
        if (std::regex_match(line, match, heading))
            section = match[1].matched ? match[1].str() + ' ' : "";
        else if (line.starts_with("| `"))
            for (const auto& key : keysInTable(line))
                keys.insert(section + key);
    }
    keys.insert("[[event]] at");
    return keys;
}

std::set<std::string> keysOfSettings() {
    std::set<std::string> keys;
    for (const std::string& line : linesOf("settings.md"))
        if (line.starts_with("| `"))
            keys.merge(keysInTable(line));
    return keys;
}

/// The keys of one scenario, in the same form.
std::set<std::string> keysIn(const std::string& scenario) {
    std::istringstream lines(scenario);
    std::set<std::string> keys;
    std::string section;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with('['))
            section = line + ' ';
        else if (const auto equals = line.find(" = "); equals != line.npos)
            keys.insert(section + line.substr(0, equals));
    return keys;
}

TEST(ARandomScenario, is_the_same_for_the_same_seed) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        EXPECT_EQ(randomScenario(seed), randomScenario(seed));
        EXPECT_NE(randomScenario(seed).substr(40), randomScenario(seed + 1).substr(40));
    }
}

/// A seed that found an error has to find it again on another machine and with another compiler.
TEST(ARandomScenario, is_the_same_everywhere) {
    std::uint64_t sum = 14695981039346656037U; // FNV-1a
    for (std::uint64_t seed = 1; seed <= seeds; ++seed)
        for (const char byte : randomScenario(seed))
            sum = (sum ^ static_cast<unsigned char>(byte)) * 1099511628211U;
    EXPECT_EQ(sum, 10447555037132057878U)
        << "if the scenarios were changed on purpose, this is the new sum";
}

TEST(ARandomScenario, is_played_by_the_simulated_phone_and_for_the_most_part_goes_to_sleep) {
    int withSleepState = 0;
    int withSeveral = 0;
    for (std::uint64_t seed = 1; seed <= seeds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Switches switches;
        ASSERT_NO_THROW(switches = played(seed));
        withSleepState += switches.into > 0 && switches.back > 0;
        withSeveral += switches.into > 1 && switches.back > 1;
    }
    EXPECT_GT(withSleepState, static_cast<int>(seeds) * 6 / 10);
    EXPECT_GT(withSeveral, static_cast<int>(seeds) * 5 / 10);
}

TEST(RandomScenarios, have_all_that_scenario_files_may_have) {
    std::set<std::string> found;
    for (std::uint64_t seed = 1; seed <= seeds; ++seed)
        found.merge(keysIn(randomScenario(seed)));
    const auto known = keysOfScenarios();
    ASSERT_GT(known.size(), 50U) << "docs/scenarios.md no longer has its tables of keys";
    for (const auto& key : known)
        EXPECT_TRUE(found.contains(key)) << "none has " << key;
}

TEST(RandomScenarios, have_all_settings_at_the_start_and_changed_in_the_night) {
    std::set<std::string> atTheStart;
    std::set<std::string> changed;
    for (std::uint64_t seed = 1; seed <= seeds; ++seed) {
        const Scenario scenario = parseScenario(randomScenario(seed), "random");
        if (scenario.settings)
            for (const auto& [key, value] : *scenario.settings)
                atTheStart.insert(key);
        for (const auto& [at, event] : scenario.events)
            if (const auto* change = std::get_if<SettingsChange>(&event))
                for (const auto& [key, value] : change->changed)
                    changed.insert(key);
    }
    auto known = keysOfSettings();
    ASSERT_GT(known.size(), 20U) << "docs/settings.md no longer has its tables of keys";
    ASSERT_EQ(known.erase("launch-app-IDENTIFIER"), 1U);
    known.merge(std::set<std::string>{"launch-app-", "launch-app-com.apple.mobiletimer",
                                      "launch-app-com.example.notinstalled"});
    for (const auto& key : known) {
        EXPECT_TRUE(atTheStart.contains(key)) << "none starts with " << key;
        EXPECT_TRUE(changed.contains(key)) << "none changes " << key;
    }
}

TEST(RandomScenarios, have_several_events_at_one_instant) {
    int together = 0;
    for (std::uint64_t seed = 1; seed <= seeds; ++seed) {
        const auto events = parseScenario(randomScenario(seed), "random").events;
        for (std::size_t i = 1; i < events.size(); ++i)
            together += events[i].at == events[i - 1].at;
    }
    EXPECT_GT(together, 100);
}

} // namespace

} // namespace noctara
