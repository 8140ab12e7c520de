/// What held at one instant of a night, and when the state could change next.
#include "command/night_player.h"
#include "command/why_command.h"
#include "host/host.h"
#include "input/bad_input.h"
#include "input/temporary_folder.h"
#include "night/situation.h"
#include "night/trace.h"
#include "tests/full_settings.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

namespace noctara {

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

/// Notes when the state changes first.
class FirstChange final : public MonitorObserver {
public:
    explicit FirstChange(SimulatedPhone& observed) : phone(observed) { monitorObserver = this; }

    void decided(const Decision& decision) override {
        if (isWatching && !found && std::holds_alternative<StateChanged>(decision))
            found = phone.now();
    }

    bool isWatching = false;
    std::optional<Date> found;

private:
    SimulatedPhone& phone;
};

class ASituation : public testing::Test {
protected:
    ASituation() {
        scenario.settings = fullSettings();
        scenario.end.secondsSince1970 = scenario.start.secondsSince1970 + 1.5 * 86'400;
        at(3600, PostureChange{NamedPosture::ScreenDown});
        at(8 * 3600, PostureChange{NamedPosture::InHand});
    }

    void at(double seconds, Event event) {
        scenario.events.push_back({later(seconds), std::move(event)});
    }

    Date later(double seconds) const { return {scenario.start.secondsSince1970 + seconds}; }

    void set(const char* key, const PropertyList& value) { scenario.settings->set(key, value); }

    /// Seconds since the start.
    Situation situationAt(double seconds) {
        input.scenario = scenario;
        const auto phone = makePhone(input);
        Situation situation(scenario, later(seconds), [&] { return phone->now(); });
        phone->observe(situation);
        monitorObserver = &situation;
        EXPECT_EQ(playNight(*phone), std::nullopt);
        return situation;
    }

    std::vector<std::string> describedAt(double seconds) {
        return situationAt(seconds).description();
    }

    /// When the state changes if all that the owner can do for it is done at that instant.
    std::optional<Date> playedChangeAt(double seconds, bool toQuiet) {
        input.scenario = scenario;
        std::erase_if(input.scenario.events,
                      [&](const auto& event) { return event.at > later(seconds); });
        const auto phone = makePhone(input);
        FirstChange change(*phone);
        phone->launch();
        phone->playUntil({later(seconds).secondsSince1970 + 0.01});
        change.isWatching = true;
        phone->happens(PostureChange{toQuiet ? NamedPosture::ScreenDown : NamedPosture::InHand});
        phone->happens(ChargerChange{true});
        if (!scenario.settings->find("Enabled")->as<bool>() ||
            !*scenario.settings->find("Enabled")->as<bool>())
            phone->happens(SettingsChange{{{"Enabled", true}}});
        phone->playToTheEnd();
        return change.found;
    }

    void expectThatThePlayedNightAgrees() {
        std::mt19937 random(7);
        std::uniform_int_distribution<int> seconds(0, 30 * 3600);
        for (int i = 0; i < 12; ++i) {
            const double instant = seconds(random);
            const Situation situation = situationAt(instant);
            const bool quiet = situation.description()[1].starts_with("The phone is quiet");
            const auto expected = playedChangeAt(instant, !quiet);
            const auto told = situation.earliestChange();
            ASSERT_EQ(told.has_value(), expected.has_value()) << instant;
            if (told) {
                EXPECT_EQ(told->secondsSince1970 - scenario.start.secondsSince1970,
                          expected->secondsSince1970 - scenario.start.secondsSince1970)
                    << instant;
            }
        }
    }

    Scenario scenario;
    NightInput input;
};

TEST_F(ASituation, tells_the_count_of_a_countdown_and_what_is_missing) {
    const auto lines = describedAt(3604);
    EXPECT_THAT(lines, Contains("The monitor watches since 22:30:00."));
    EXPECT_THAT(lines, Contains("The phone is not quiet."));
    EXPECT_THAT(lines, Contains("Last reading, at 23:30:03: lying screen down, 0.0° off. Allowed: "
                                "less than 2.1° off, and 0.9 to 1.1 g."));
    EXPECT_THAT(lines, Contains("Count: 2 of 3."));
    EXPECT_THAT(lines, Contains("Missing for the next change: 1 more reading in a row of the phone "
                                "lying screen down. At the earliest, it is quiet at 23:30:05."));
}

TEST_F(ASituation, includes_what_happens_at_the_instant_itself) {
    EXPECT_THAT(describedAt(3604), Contains("The phone is not quiet."));
    EXPECT_THAT(describedAt(3605), Contains("The phone is quiet since 23:30:05."));
}

TEST_F(ASituation, tells_that_the_window_does_not_matter_while_the_phone_is_quiet) {
    set("TimeLimit", true);
    EXPECT_THAT(describedAt(3605),
                Contains("Window: inside, from 21:00 to 7:00; it does not matter "
                         "while the phone is quiet."));
}

TEST_F(ASituation, names_the_day_of_an_instant_of_another_day) {
    EXPECT_THAT(describedAt(4 * 3600), Contains("The phone is quiet since 23:30:05 on 1 March."));
}

TEST_F(ASituation, tells_that_the_window_begins_in_the_evening) {
    set("TimeLimit", true);
    const auto lines = describedAt(10 * 3600);
    EXPECT_THAT(lines[0], StartsWith("The monitor takes no readings since 07:00:0"));
    EXPECT_THAT(lines, Contains("Window: outside, from 21:00 to 7:00."));
    EXPECT_THAT(lines.back(), HasSubstr("and the window begins at 21:00. At the earliest, it is "
                                        "quiet at 21:00:0"));
}

TEST_F(ASituation, tells_that_the_charger_is_missing) {
    set("EnableOnAC", true);
    const auto lines = describedAt(4000);
    EXPECT_THAT(lines, Contains("Charger: not plugged in; it is needed (EnableOnAC is on)."));
    EXPECT_THAT(lines.back(), HasSubstr("and the charger has to be plugged in"));
}

TEST_F(ASituation, tells_that_an_unplugged_charger_does_not_matter_until_the_phone_is_back) {
    set("EnableOnAC", true);
    scenario.phone.charger = true;
    scenario.events.insert(scenario.events.begin() + 1, {later(7200), ChargerChange{false}});
    EXPECT_THAT(describedAt(7300),
                Contains(StartsWith("Charger: not plugged in; it does not matter "
                                    "until the phone is back")));
    EXPECT_THAT(describedAt(9 * 3600), Contains("Charger: not plugged in; it is needed (EnableOnAC "
                                                "is on)."));
}

TEST_F(ASituation, tells_that_the_monitor_is_suspended_since_a_change_by_hand) {
    scenario.radios.airplane = true;
    scenario.events.insert(scenario.events.begin(), {later(60), AirplaneModeSwitch{true}});
    const auto lines = describedAt(120);
    EXPECT_THAT(lines[0], StartsWith("Monitoring is suspended since 22:31:0"));
    EXPECT_THAT(lines.back(), HasSubstr("and airplane mode has to be off again"));
}

TEST_F(ASituation, tells_of_idle_sleep) {
    scenario.phone.idleSleep = 60;
    set("ActiveOnSleep", false);
    const auto lines = describedAt(3000);
    EXPECT_THAT(lines, Contains("The phone is not quiet. It is in idle sleep since 22:31:00."));
    EXPECT_THAT(lines.back(), HasSubstr("No readings are taken before the idle sleep ends."));
}

TEST_F(ASituation, tells_that_an_empty_window_never_comes) {
    set("TimeLimit", true);
    set("StopHour", 21);
    EXPECT_THAT(describedAt(3000).back(), HasSubstr("With these settings it never happens."));
}

TEST_F(ASituation, tells_of_a_library_in_another_process_and_of_a_monitor_that_ended) {
    at(9 * 3600, MonitorStop{});
    EXPECT_THAT(describedAt(10 * 3600)[0], StartsWith("The monitor was told to stop at 07:30:00."));
    scenario.phone.bundle = "com.apple.Maps";
    EXPECT_THAT(describedAt(10)[0], StartsWith("There is no monitor: the library is loaded into "
                                               "com.apple.Maps"));
}

TEST_F(ASituation, tells_the_earliest_change_that_a_played_night_has) {
    expectThatThePlayedNightAgrees();
}

TEST_F(ASituation, tells_the_earliest_change_with_a_window) {
    set("TimeLimit", true);
    expectThatThePlayedNightAgrees();
}

TEST_F(ASituation, tells_the_earliest_change_with_long_pauses_on_the_charger) {
    set("ScanInterval", 7);
    set("EnableOnAC", true);
    expectThatThePlayedNightAgrees();
}

TEST_F(ASituation, tells_the_earliest_change_of_a_monitor_that_is_switched_off) {
    set("Enabled", false);
    set("ScanInterval", 4);
    expectThatThePlayedNightAgrees();
}

TEST_F(ASituation, of_a_trace_is_that_of_its_scenario) {
    scenario.end = later(2.0 * 3600);
    const TemporaryFolder folder;
    const auto file = folder.path / "night.jsonl";
    {
        std::ofstream lines(file);
        input.scenario = scenario;
        const auto phone = makePhone(input);
        TraceWriter writer(lines);
        phone->observe(writer);
        EXPECT_EQ(playNight(*phone), std::nullopt);
    }
    for (const int seconds : {10, 3604, 3605, 7000}) {
        WhyOptions options;
        options.night.scenario = file;
        options.night.overrides.timezone = "UTC";
        options.at = fmt::format("2014-03-{:02}T{:02}:{:02}:{:02}", seconds < 5400 ? 1 : 2,
                                 (81'000 + seconds) / 3600 % 24, (81'000 + seconds) / 60 % 60,
                                 (81'000 + seconds) % 60);
        std::ostringstream out;
        EXPECT_EQ(explainInstant(options, out, out), 0);
        for (const auto& line : describedAt(seconds))
            EXPECT_THAT(out.str(), HasSubstr(line + '\n')) << seconds;
    }
}

TEST(TheCommandWhy, refuses_instants_outside_the_night) {
    WhyOptions options;
    std::ostringstream out;
    for (const char* instant : {"2014-02-01T00:00", "2014-05-01T00:00", "09:00", "noon", ""}) {
        options.at = instant;
        EXPECT_THROW(explainInstant(options, out, out), BadInput) << instant;
    }
    EXPECT_EQ(out.str(), "");
}

} // namespace

} // namespace noctara
