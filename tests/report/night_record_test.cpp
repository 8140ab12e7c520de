/// What a report page is told of a night.
#include "report/night_record.h"
#include "tests/a_night.h"

namespace noctara {
namespace {

/// A lane as text: the value from each time on.
std::string changesIn(const Json& steps) {
    std::string text;
    for (const auto& step : steps)
        text += (text.empty() ? "" : ", ") + step[0].dump() + " " + step[1].dump();
    return text;
}

class ARecordedNight : public ANight {
protected:
    void beginRecorded() {
        scenario.settings = settings;
        switchOn();
        record.emplace(scenario, [this] { return phone().now(); });
        phone().observe(*record);
        monitorObserver = &*record;
        launch();
    }

    Json finish() {
        record->endNight();
        return record->finish(NightSummary{});
    }

    Json lane(const char* name) { return finish()["lanes"][name]; }

    std::optional<NightRecord> record;
};

TEST_F(ARecordedNight, has_each_reading_with_its_count) {
    beginRecorded();
    playReadings(2);
    lies(ScreenDown);
    playReadings(4);

    const Json cycles = finish()["cycles"];
    EXPECT_EQ(cycles["times"], Json({1000, 6000, 6000, 2000, 2000, 6000}));
    EXPECT_EQ(cycles["outcomes"], Json({0, 0, 1, 1, 1, 1}));
    EXPECT_EQ(cycles["counts"], Json({0, 0, 1, 2, 3, 0}));
    EXPECT_EQ(cycles["tilts"], Json({143.13, 143.13, 0, 0, 0, 0}));
    EXPECT_EQ(cycles["lengths"], Json({1, 1, 1, 1, 1, 1}));
}

TEST_F(ARecordedNight, measures_the_tilt_from_the_wanted_posture) {
    settings.set("ScreenDown", false);
    beginRecorded();
    lies(ScreenUp);
    playReadings(1);

    const Json night = finish();
    EXPECT_EQ(night["cycles"]["tilts"], Json::array({0}));
    EXPECT_EQ(night["tolerances"], Json::array({Json::array({1, 2.101, false})}));
}

TEST_F(ARecordedNight, has_no_tilt_for_a_reading_without_a_sample) {
    beginRecorded();
    lies(None);
    playReadings(1);

    const Json cycles = finish()["cycles"];
    EXPECT_EQ(cycles["outcomes"], Json::array({2}));
    EXPECT_EQ(cycles["tilts"], Json::array({nullptr}));
    EXPECT_EQ(cycles["lengths"], Json::array({nullptr}));
}

TEST_F(ARecordedNight, has_a_new_tolerance_when_the_sensitivity_changes) {
    beginRecorded();
    playReadings(1);
    change({{"Sensitivity", 0}});
    playReadings(1);

    EXPECT_EQ(changesIn(finish()["tolerances"]), "1 2.101, 7 12.605");
}

TEST_F(ARecordedNight, has_the_state_of_the_monitor) {
    settings.set("EnableOnAC", true);
    beginRecorded();
    playFor(60);
    phone().happens(ChargerChange{true});
    lies(ScreenDown);
    playReadings(3);
    change({{"Enabled", false}});
    playFor(60);

    const Json lanes = finish()["lanes"];
    EXPECT_EQ(changesIn(lanes["charger"]), "0 false, 60 true");
    EXPECT_THAT(changesIn(lanes["state"]),
                testing::MatchesRegex("0 \"off\", 0 \"not on the charger\", 6[0-9] \"watching\", "
                                      "6[0-9] \"quiet\", [67][0-9] \"off\""));
}

TEST_F(ARecordedNight, has_one_cycle_for_many_without_a_reading) {
    settings.set("TimeLimit", true);
    settings.set("StartHour", 1);
    settings.set("StopHour", 2);
    beginRecorded();
    playFor(600);

    EXPECT_EQ(finish()["cycles"]["outcomes"], Json::array({5}));
}

TEST_F(ARecordedNight, has_the_radios_as_they_are_switched) {
    beginRecorded();
    fallAsleep();
    phone().happens(WifiSwitch{true});
    playFor(10);

    const Json lanes = finish()["lanes"];
    EXPECT_EQ(changesIn(lanes["airplane"]), "0 false, 5 true");
    EXPECT_EQ(changesIn(lanes["wifi"]), "0 true, 5 false, 5 true");
    EXPECT_EQ(changesIn(lanes["bluetooth"]), "0 \"on\", 5 \"off\"");
    EXPECT_EQ(changesIn(lanes["quiet"]), "0 false, 5 true");
}

TEST_F(ARecordedNight, has_sounds_and_applications) {
    scenario.applications = {{.identifier = "com.apple.mobiletimer", .name = "Clock"}};
    settings.set("launch-app-com.apple.mobiletimer", true);
    beginRecorded();
    fallAsleep();

    const Json night = finish();
    EXPECT_EQ(changesIn(night["cues"]), "1 \"warning sound\", 5 \"vibration\"");
    EXPECT_EQ(night["applications"], Json::array({Json::array({5, "launched", "Clock"})}));
}

TEST_F(ARecordedNight, has_idle_sleeps_and_who_ended_them) {
    settings.set("ActiveOnSleep", true);
    scenario.phone.idleSleep = 60;
    beginRecorded();
    playFor(1000);

    const Json night = finish();
    EXPECT_EQ(night["idleSleeps"][0], Json::array({60, 955}));
    EXPECT_EQ(changesIn(night["wakeUps"]), "955 \"com.quorbit.Noctara\"");
}

TEST_F(ARecordedNight, has_the_log_lines_of_each_cycle_once) {
    settings.set("Debug", true);
    beginRecorded();
    playReadings(3);

    const Json cycles = finish()["cycles"];
    const auto linesIn = [&](std::size_t cycle) {
        std::size_t first = 0;
        for (std::size_t i = 0; i < cycle; ++i)
            first += cycles["logged"][i].get<std::size_t>();
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < cycles["logged"][cycle]; ++i)
            lines.push_back(cycles["texts"][cycles["log"][first + i].get<std::size_t>()]);
        return lines;
    };
    EXPECT_THAT(linesIn(2), testing::Contains("Noctara : Mode normal"));
    EXPECT_EQ(linesIn(1), linesIn(2));
}

TEST_F(ARecordedNight, has_the_lines_of_the_story_with_their_kind) {
    beginRecorded();
    lies(ScreenDown);
    playReadings(3);

    const Json lines = finish()["story"];
    std::vector<std::string> kinds;
    for (const auto& line : lines)
        kinds.push_back(line[0].dump() + " " + line[1].get<std::string>());
    EXPECT_THAT(kinds,
                testing::ElementsAre("0 monitor", "0 event", "0 settings", "1 reading", "1 monitor",
                                     "3 reading", "5 reading", "5 state", "5 state"));
}

TEST_F(ARecordedNight, has_the_offsets_of_daylight_saving_time) {
    scenario.timezone = "Europe/Paris";
    scenario.start.secondsSince1970 = at(2014, 3, 30, 0, 30, 0);
    scenario.end.secondsSince1970 = at(2014, 3, 30, 4, 0, 0);
    beginRecorded();
    playFor(3600);

    EXPECT_EQ(finish()["localTimes"],
              Json::array({Json::array({0, at(2014, 3, 30, 1, 30, 0), "CET"}),
                           Json::array({1800, at(2014, 3, 30, 2, 30, 0), "CEST"})}));
}

TEST_F(ARecordedNight, goes_on_in_time_when_the_clock_is_set_back) {
    beginRecorded();
    playFor(100);
    phone().happens(ClockChange{{scenario.start.secondsSince1970 - 3600}});
    playFor(7300);

    const Json night = finish();
    EXPECT_EQ(night["end"], 7400);
    EXPECT_EQ(night["localTimes"],
              Json::array({Json::array({0, scenario.start.secondsSince1970, "UTC"}),
                           Json::array({100, scenario.start.secondsSince1970 - 3700, "UTC"})}));
    for (const auto& difference : night["cycles"]["times"])
        EXPECT_GE(difference, 0);
}

TEST_F(ARecordedNight, has_the_verdict_the_figures_and_the_faults) {
    beginRecorded();
    playFor(60);

    record->endNight();
    NightSummary summary;
    summary.verdict.kind = Verdict::Kind::neverQuiet;
    summary.verdict.text = "Never quiet.";
    summary.figures.readings = 10;
    summary.faults = {"the night ended early"};
    const Json night = record->finish(summary);
    EXPECT_EQ(night["outcome"], "neverQuiet");
    EXPECT_EQ(night["verdict"], Json::array({"Never quiet."}));
    EXPECT_EQ(night["wrong"], Json::array({"the night ended early"}));
    EXPECT_EQ(night["figures"][1], Json::array({"readings", "10, accelerometer on for 0 s"}));
}

} // namespace
} // namespace noctara
