/// Random nights, replayed from their traces.
#include "night/scenario_file.h"
#include "soak/random_scenario.h"
#include "tests/phones/replay/a_told_night.h"

#include <gtest/gtest.h>

namespace noctara {

namespace {

constexpr std::uint64_t replays = 40;

TEST(RandomNights, have_the_same_story_when_they_are_replayed) {
    for (std::uint64_t seed = 1; seed <= replays; ++seed) {
        const Scenario scenario =
            parseScenario(randomScenario(seed), "seed " + std::to_string(seed));
        const ToldNight night = played(scenario);
        try {
            EXPECT_EQ(replayed(scenario, night.trace), night.story) << "seed " << seed;
        } catch (const std::exception& error) {
            ADD_FAILURE() << "seed " << seed << ": " << error.what();
        }
    }
}

} // namespace

} // namespace noctara
