/// A failing night is shortened as far as it still fails.
#include "night/scenario_file.h"
#include "soak/child_process.h"
#include "soak/random_scenario.h"
#include "soak/shrink.h"
#include "soak/soak.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>
#include <unistd.h>

namespace noctara {

namespace {

using testing::HasSubstr;

template <typename Kind>
auto count(const Scenario& scenario) {
    return std::count_if(scenario.events.begin(), scenario.events.end(), [](const auto& event) {
        return std::holds_alternative<Kind>(event.event);
    });
}

/// A random night with at least two of these events.
template <typename Kind>
Scenario nightWithTwo() {
    for (std::uint64_t seed = 1; seed < 1000; ++seed) {
        const Scenario scenario = randomNight(seed);
        if (count<Kind>(scenario) >= 2)
            return scenario;
    }
    throw std::logic_error("no such night");
}

TEST(AShortenedNight, has_only_the_events_that_it_needs_to_fail) {
    const Scenario shortest = shrink(nightWithTwo<CallChange>(), [](const Scenario& candidate) {
        return count<CallChange>(candidate) >= 2;
    });
    EXPECT_EQ(shortest.events.size(), 2U);
    EXPECT_TRUE(shortest.applications.empty());
    EXPECT_TRUE(shortest.wakes.empty());
    EXPECT_FALSE(shortest.settings);
    EXPECT_EQ(shortest.phone.machine, Scenario().phone.machine);
    EXPECT_EQ(shortest.radios.airplane, Scenario().radios.airplane);
    EXPECT_EQ(shortest.timezone, "UTC");
}

TEST(AShortenedNight, has_the_shortest_times_with_which_it_fails) {
    const Scenario shortest = shrink(nightWithTwo<CallChange>(), [](const Scenario& candidate) {
        return candidate.events.size() >= 2 &&
               candidate.events[1].at.secondsSince1970 - candidate.events[0].at.secondsSince1970 >=
                   77;
    });
    ASSERT_EQ(shortest.events.size(), 2U);
    EXPECT_EQ(shortest.events[0].at, shortest.start);
    EXPECT_EQ(shortest.events[1].at.secondsSince1970, shortest.start.secondsSince1970 + 77);
    EXPECT_EQ(shortest.end.secondsSince1970, shortest.events[1].at.secondsSince1970 + 1);
}

TEST(AShortenedNight, keeps_the_setting_that_it_needs) {
    Scenario scenario;
    scenario.settings = Dictionary{{"Enabled", true}, {"Sensitivity", 7}, {"Debug", true}};
    scenario.events = {{scenario.start, SettingsChange{{{"Vibrate", false}, {"Debug", false}}}}};
    const Scenario shortest = shrink(scenario, [](const Scenario& candidate) {
        return candidate.settings && candidate.settings->find("Sensitivity") &&
               candidate.events.size() == 1 &&
               std::get<SettingsChange>(candidate.events[0].event).changed.find("Vibrate");
    });
    EXPECT_EQ(*shortest.settings, (Dictionary{{"Sensitivity", 7}}));
    EXPECT_EQ(std::get<SettingsChange>(shortest.events[0].event).changed,
              (Dictionary{{"Vibrate", false}}));
}

TEST(AFailure, is_absent_for_a_night_that_holds) {
    EXPECT_FALSE(playApart(randomNight(1)));
}

TEST(AFailure, is_kept_as_a_file_that_fails_too) {
    const std::string spins = "[settings]\n"
                              "[[event]]\nat = 23:00:00\nbutton = true\n"
                              "[[event]]\nat = 23:30:00\n"
                              "settings = { ScanInterval = 0, TimeLimit = true, StartHour = 12, "
                              "StopHour = 13 }\n";
    const Scenario scenario = parseScenario(spins, "spins");
    const auto breach = playApart(scenario);
    ASSERT_TRUE(breach);
    const std::string file = shortestFailure(scenario, *breach, "A night");
    EXPECT_THAT(file, HasSubstr("# A night, shortened."));
    EXPECT_THAT(file, Not(HasSubstr("button")));
    const auto again = playApart(parseScenario(file, "the file"));
    ASSERT_TRUE(again);
    EXPECT_THAT(again->what, HasSubstr("loops without waiting"));
}

std::optional<Breach> holds(std::uint64_t seed, SoakCounts& counts) {
    return playWatched(randomNight(seed), counts);
}

TEST(ARunOfRandomNights, plays_all_of_them_whatever_the_number_at_a_time) {
    std::uint64_t progress = 0;
    const SoakResult one =
        soak({10, 7, 1}, holds, [&](std::uint64_t played) { progress = played; });
    const SoakResult three = soak({10, 7, 3}, holds, [](std::uint64_t) {});
    EXPECT_FALSE(one.failed);
    EXPECT_EQ(one.counts.nights, 10U);
    EXPECT_EQ(three.counts.nights, 10U);
    EXPECT_EQ(one.counts.checks, three.counts.checks);
    EXPECT_EQ(one.counts.timesQuiet, three.counts.timesQuiet);
    EXPECT_GT(progress, 0U);
    EXPECT_LE(progress, 10U);
}

TEST(ARunOfRandomNights, names_the_seed_of_a_night_that_breaks_an_invariant_and_stops) {
    const auto breaksAt13 = [](std::uint64_t seed, SoakCounts& counts) {
        ++counts.nights;
        return seed == 13 ? std::optional(Breach{"An invariant.", {0}, "it is broken"})
                          : std::nullopt;
    };
    const SoakResult result = soak({100'000'000, 7, 2}, breaksAt13, [](std::uint64_t) {});
    EXPECT_EQ(result.failed, 13U);
    EXPECT_LT(result.counts.nights, 100'000'000U);
}

TEST(ARunOfRandomNights, names_the_seed_of_a_night_that_crashes) {
    const auto crashesAt9 = [](std::uint64_t seed, SoakCounts&) -> std::optional<Breach> {
        if (seed == 9)
            raise(SIGKILL);
        return std::nullopt;
    };
    EXPECT_EQ(soak({10, 7, 3}, crashesAt9, [](std::uint64_t) {}).failed, 9U);
}

TEST(AChildProcess, answers_with_its_text) {
    const ChildAnswer answer = answerOfChild([] { return std::string(100000, 'x'); });
    EXPECT_EQ(answer.text.size(), 100000U);
    EXPECT_FALSE(answer.end);
}

TEST(AChildProcess, that_crashes_or_does_not_end_leaves_this_one_alive) {
    const auto killed = answerOfChild([]() -> std::string {
        raise(SIGKILL);
        return "";
    });
    EXPECT_EQ(killed.end, "the program ends with signal 9 (Killed)");
    const auto endless = answerOfChild([]() -> std::string {
        limitTime(1);
        for (;;)
            pause();
    });
    EXPECT_EQ(endless.end, "the program ends with signal 14 (Alarm clock)");
    const auto threw = answerOfChild([]() -> std::string { throw std::runtime_error("wrong"); });
    EXPECT_EQ(threw.end, "the program ends with exit code 1");
}

} // namespace

} // namespace noctara
