/// The main loop does what its rules say in every sequence of readings, under every combination of
/// the settings that steer it.
#include "tests/exhaustive/every_sequence.h"

#include <gtest/gtest.h>

#include <array>
#include <iostream>
#include <tuple>

namespace noctara::exhaustive {

namespace {

// A sanitizer makes the monitor many times slower.
#ifdef NOCTARA_SANITIZED
constexpr int cyclesWithoutChange = 8, cyclesWithOneChange = 3, cyclesWithTwoChanges = 2;
#else
constexpr int cyclesWithoutChange = 14, cyclesWithOneChange = 7, cyclesWithTwoChanges = 5;
#endif

enum class Hours { any, insideTheWindow, outsideTheWindow };
enum class Power { any, onTheCharger, onBattery };

/// The two settings that divide the work into tests of their own, which ctest runs in parallel.
class EverySequence : public testing::TestWithParam<std::tuple<bool, bool>> {
protected:
    /// Calls `visit` with each combination of the settings and of the phone. With `allCues` false,
    /// vibration and wake-ups are both on or both off. Without AirplaneSwitch, a phone that started
    /// in airplane mode can stay in it, which DetectManual takes for a change by hand; on other
    /// phones that switch does not steer the loop.
    template <typename Visit>
    void forEachSituation(bool allCues, Visit visit) {
        Situation situation;
        std::tie(situation.airplaneMode, situation.playSound) = GetParam();
        for (const Hours hours : {Hours::any, Hours::insideTheWindow, Hours::outsideTheWindow})
            for (const Power power : {Power::any, Power::onTheCharger, Power::onBattery})
                for (unsigned switches = 0; switches < 1U << 5; ++switches) {
                    situation.timeLimit = hours != Hours::any;
                    situation.insideWindow = hours != Hours::outsideTheWindow;
                    situation.onChargerOnly = power != Power::any;
                    situation.charger = power == Power::onTheCharger;
                    situation.enabled = (switches & 1) != 0;
                    situation.detectManual = (switches & 2) != 0;
                    situation.airplaneSwitch = (switches & 4) != 0;
                    situation.vibrate = (switches & 8) != 0;
                    situation.activeOnSleep = (switches & 16) != 0;
                    // Too short an interval counts as 5 s at the start.
                    situation.interval = !allCues && situation.activeOnSleep ? 0 : 5;
                    const bool cuesCount = allCues || situation.vibrate == situation.activeOnSleep;
                    if (cuesCount && (situation.airplaneMode || situation.airplaneSwitch))
                        visit(situation);
                }
    }

    void play(const Case& played) {
        if (!HasFatalFailure())
            expectNoDifference(playEverySequence(played, count));
    }

    void TearDown() override {
        std::cout << count.cases << " combinations of settings and changes, " << count.sequences
                  << " sequences of readings in " << count.runs << " runs, " << count.cycles
                  << " cycles compared\n";
    }

    Count count;

private:
    static void expectNoDifference(const std::string& difference) {
        ASSERT_TRUE(difference.empty()) << difference;
    }
};

TEST_P(EverySequence, of_readings_follows_the_rules) {
    forEachSituation(true, [this](const Situation& situation) {
        play({situation, cyclesWithoutChange, {}});
    });
}

TEST_P(EverySequence, with_a_change_at_any_moment_follows_the_rules) {
    forEachSituation(false, [this](const Situation& situation) {
        for (int change = 0; change < changes; ++change)
            for (const Moment moment : {Moment::inTheReading, Moment::inTheWait})
                for (int cycle = 1; cycle <= cyclesWithOneChange; ++cycle)
                    play({situation,
                          cyclesWithOneChange,
                          {{static_cast<Change>(change), cycle, moment}}});
    });
}

/// Changes of what decides whether there is a reading.
constexpr std::array changesOfTheGates{
    Change::charger,      Change::airplaneMode, Change::window,        Change::enabled,
    Change::detectManual, Change::timeLimit,    Change::onChargerOnly, Change::airplaneSwitch,
};

TEST_P(EverySequence, with_two_changes_between_readings_follows_the_rules) {
    constexpr int cycles = cyclesWithTwoChanges;
    forEachSituation(false, [this](const Situation& situation) {
        for (const Change first : changesOfTheGates)
            for (const Change second : changesOfTheGates)
                for (int cycle = 1; cycle < cycles; ++cycle)
                    for (int later = cycle + 1; later <= cycles; ++later)
                        play({situation,
                              cycles,
                              {{first, cycle, Moment::inTheWait},
                               {second, later, Moment::inTheWait}}});
    });
}

std::string nameOf(const testing::TestParamInfo<std::tuple<bool, bool>>& tested) {
    const auto [airplaneMode, playSound] = tested.param;
    return std::string(airplaneMode ? "started_in_airplane_mode" : "started_in_normal_mode") +
           (playSound ? "_with_sound" : "_without_sound");
}

INSTANTIATE_TEST_SUITE_P(OfReadings, EverySequence,
                         testing::Combine(testing::Values(true, false),
                                          testing::Values(true, false)),
                         nameOf);

} // namespace

} // namespace noctara::exhaustive
