/// The start, the end and the event times of a night, from the file and from the options.
#include "night/scenario_file.h"

#include "phones/model/local_time.h"
#include "tests/night/a_scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::string startRefusal(const std::string& start) {
    ScenarioOverrides overrides;
    overrides.start = start;
    return refusal("", overrides);
}

std::string endRefusal(const std::string& end) {
    ScenarioOverrides overrides;
    overrides.end = end;
    return refusal("", overrides);
}

std::vector<double> eventTimes(const std::string& text) {
    std::vector<double> times;
    for (const auto& event : parse(text).events)
        times.push_back(event.at.secondsSince1970);
    return times;
}

TEST(AnEvent, at_a_time_alone_is_at_the_next_such_time) {
    EXPECT_THAT(eventTimes(R"(event = [
            {at = 22:30:00, button = true},
            {at = 22:30:00, button = true},
            {at = 22:29:59, button = true},
            {at = 2014-03-03T07:00:00, button = true},
            {at = 07:00:01, button = true}])"),
                ElementsAre(evening, evening, evening + 24 * hour - 1, evening + 32.5 * hour,
                            evening + 32.5 * hour + 1));
}

TEST(AnEvent, in_the_repeated_hour_is_at_its_first_occurrence_unless_that_has_passed) {
    const double two = 1414281600; // 2014-10-26T00:00Z, 02:00 in summer time
    const std::string night =
        "timezone = \"Europe/Paris\"\nstart = 2014-10-26T01:00:00\nhours = 5\n";
    EXPECT_THAT(eventTimes(night + R"(event = [
            {at = 02:30:00, button = true},
            {at = 02:45:00, button = true},
            {at = 02:30:00, button = true},
            {at = 02:45:00, button = true}])"),
                ElementsAre(two + 1800, two + 2700, two + 5400, two + 6300));
    EXPECT_THAT(eventTimes(night + "event = [{at = 2014-10-26T02:30:00, button = true}]"),
                ElementsAre(two + 1800));
    EXPECT_EQ(parse("timezone = \"Europe/Paris\"\nstart = 2014-10-26T02:30:00").start,
              Date{two + 1800});
}

TEST(AnEvent, finds_an_evening_that_clocks_set_back_at_midnight_repeat) {
    // St. John's, 2010-11-07: at 00:01 (02:31Z) the clocks went back to 23:01 of the day
    // before.
    EXPECT_THAT(eventTimes("timezone = \"America/St_Johns\"\nstart = 2010-11-07T00:00:30\n"
                           "event = [{at = 23:30:00, button = true}]"),
                ElementsAre(1289098800));
}

TEST(AnEvent, at_a_skipped_time_is_refused_only_when_that_time_is_the_next) {
    const std::string paris = "timezone = \"Europe/Paris\"\nhours = 30\n";
    EXPECT_EQ(refusal(paris + "start = 2014-03-30T01:00:00\n"
                              "event = [{at = 02:30:00, stop = true}]"),
              "night.toml:4:16: 02:30:00 does not exist in Europe/Paris on 2014-03-30; the clocks "
              "skip it, write an earlier or a later time");
    EXPECT_THAT(eventTimes(paris + "start = 2014-03-30T03:10:00\n"
                                   "event = [{at = 02:30:00, stop = true}]"),
                ElementsAre(1396225800)); // 2014-03-31T00:30Z
    EXPECT_THAT(eventTimes("timezone = \"Pacific/Apia\"\nstart = 2011-12-31T00:00:00\n"
                           "event = [{at = 10:00:00, stop = true}]"),
                ElementsAre(1325239200 + 10 * hour));
}

TEST(AnEvent, before_the_one_before_it_is_refused) {
    EXPECT_THAT(refusal("[[event]]\nat = 2014-03-01T22:29:59\nstop = true"),
                StartsWith("night.toml:2:6: at is before the start, 2014-03-01T22:30:00; write "
                           "the events in order"));
    EXPECT_THAT(refusal("[[event]]\nat = 23:30:00\nstop = true\n"
                        "[[event]]\nat = 2014-03-01T23:00:00\nstop = true"),
                StartsWith("night.toml:5:6: at is before the previous event, "
                           "2014-03-01T23:30:00; "));
}

TEST(AnEvent, after_the_end_is_accepted) {
    EXPECT_THAT(eventTimes("hours = 1\nevent = [{at = 2015-01-01T00:00:00, stop = true}]"),
                ElementsAre(1420070400));
}

TEST(AScenario, ends_where_the_file_says) {
    EXPECT_EQ(parse("end = 2014-03-02T08:00:00").end, Date{evening + 9.5 * hour});
    EXPECT_EQ(parse("end = 2014-03-08T22:30:00").end, Date{evening + 168 * hour});
    EXPECT_EQ(parse("hours = 168").end, Date{evening + 168 * hour});
    EXPECT_EQ(parse("hours = 1").end, Date{evening + hour});
    EXPECT_EQ(parse("hours = 0.0002").end, Date{evening + 1});
}

TEST(AScenario, lasts_as_long_on_the_night_when_the_clocks_change) {
    const Scenario night =
        parse("timezone = \"Europe/Paris\"\nstart = 2014-03-29T22:30:00\nhours = 9.5");
    EXPECT_EQ(TimeZone("Europe/Paris").components(night.end).hour, 9);
    EXPECT_EQ(night.end.secondsSince1970 - night.start.secondsSince1970, 9.5 * hour);
}

TEST(AScenario, with_an_impossible_length_is_refused_at_the_value) {
    EXPECT_THAT(refusal("end = 2014-03-01T22:30:00"),
                StartsWith("night.toml:1:7: the end is not after the start, "));
    EXPECT_THAT(refusal("end = 2014-03-08T22:30:01"),
                StartsWith("night.toml:1:7: the end is more than a week after the start, "));
    for (const std::string hours : {"0", "-1", "168.1", "0.0001", "1e300", "nan", "inf"})
        EXPECT_THAT(refusal("hours = " + hours), StartsWith("night.toml:1:9: hours is ")) << hours;
    EXPECT_EQ(refusal("hours = 8\nend = 2014-03-02T08:00:00"),
              "night.toml:1:9: there are both end and hours; give one of them");
}

TEST(AScenario, has_times_of_whole_seconds_with_a_day_and_without_an_offset) {
    const std::string withDay = "; write a local date-time such as 2014-03-01T22:30:00";
    EXPECT_EQ(refusal("start = 2014-03-01T22:30:00.5"),
              "night.toml:1:9: start has a fraction of a second" + withDay);
    EXPECT_EQ(refusal("start = 2014-03-01T22:30:00Z"),
              "night.toml:1:9: start is a date-time with an offset" + withDay);
    EXPECT_EQ(refusal("start = 2014-03-01"),
              "night.toml:1:9: start is a date without a time" + withDay);
    EXPECT_EQ(refusal("end = 07:30:00"), "night.toml:1:7: end is a time without a date" + withDay);
    EXPECT_EQ(refusal("start = \"2014-03-01T22:30:00\""),
              "night.toml:1:9: start is a string" + withDay);
    EXPECT_EQ(refusal("event = [{at = 22:30:00.25, stop = true}]"),
              "night.toml:1:16: at has a fraction of a second" + withDay +
                  " or a local time such as 22:30:00");
    EXPECT_THAT(refusal("start = 2014-03-01T22:30"),
                HasSubstr("; write times as 22:30:00 and local date-times as 2014"));
}

TEST(AScenario, has_years_from_1970_to_9999) {
    EXPECT_EQ(refusal("start = 1970-01-01T00:00:00"), "");
    EXPECT_EQ(refusal("start = 9999-12-31T23:59:59"), "");
    EXPECT_EQ(refusal("start = 1969-12-31T23:59:59"),
              "night.toml:1:9: the year is 1969; accepted: 1970 to 9999");
    EXPECT_THAT(refusal("start = 10000-01-01T00:00:00"), HasSubstr("night.toml:1:"));
    EXPECT_EQ(refusal("settings.date = 9999-12-31T23:59:59Z"), "");
    EXPECT_THAT(refusal("settings.date = 1969-12-31T23:59:59Z"), HasSubstr("the year is 1969"));
}

TEST(AScenario, at_a_time_that_the_clocks_skip_is_refused) {
    const std::string paris = "timezone = \"Europe/Paris\"\n";
    const std::string reason = "02:30:00 does not exist in Europe/Paris on 2014-03-30; ";
    EXPECT_THAT(refusal(paris + "start = 2014-03-30T02:30:00"),
                StartsWith("night.toml:2:9: " + reason));
    EXPECT_THAT(refusal(paris + "start = 2014-03-29T22:00:00\nend = 2014-03-30T02:30:00"),
                StartsWith("night.toml:3:7: " + reason));
    EXPECT_THAT(refusal(paris + "event = [{at = 23:00:00, clock = 2014-03-30T02:30:00}]"),
                StartsWith("night.toml:2:34: " + reason));
    EXPECT_THAT(refusal(paris + "[settings]\na = [2014-03-30T02:30:00]"),
                StartsWith("night.toml:3:6: " + reason));
}

TEST(AnOption, replaces_the_values_of_the_file) {
    const std::string text = "start = 2014-01-01T20:00:00\nend = 2014-01-01T21:00:00\n"
                             "timezone = \"Asia/Kolkata\"";
    const ScenarioOverrides overrides{"2014-03-01T22:30:00", "2014-03-02T08:00:00", "UTC"};
    const Scenario scenario = parse(text, overrides);
    EXPECT_EQ(scenario.start, Date{evening});
    EXPECT_EQ(scenario.end, Date{evening + 9.5 * hour});
    EXPECT_EQ(scenario.timezone, "UTC");

    ScenarioOverrides endOnly;
    endOnly.end = "2014-03-01 23:30";
    EXPECT_EQ(parse("hours = 3", endOnly).end, Date{evening + hour});
}

TEST(AnOption, is_written_with_a_space_and_without_seconds_too) {
    for (const char* start :
         {"2014-03-01T22:30:00", "2014-03-01 22:30:00", "2014-03-01T22:30", "2014-03-01 22:30"}) {
        ScenarioOverrides overrides;
        overrides.start = start;
        EXPECT_EQ(parse("", overrides).start, Date{evening}) << start;
    }
}

TEST(TheEndOption, as_a_time_alone_is_the_next_one_after_the_start) {
    const auto end = [](const std::string& text) {
        ScenarioOverrides overrides;
        overrides.end = text;
        return parse("", overrides).end.secondsSince1970 - evening;
    };
    EXPECT_EQ(end("07:30"), 9 * hour);
    EXPECT_EQ(end("22:30:01"), 1);
    EXPECT_EQ(end("22:30"), 24 * hour);
}

TEST(AnOption, that_is_wrong_is_refused_by_its_name) {
    EXPECT_EQ(startRefusal("22:30"), "--start: \"22:30\" has no date; write a local date-time "
                                     "such as 2014-03-01T22:30:00");
    EXPECT_THAT(startRefusal("tomorrow"), StartsWith("--start: \"tomorrow\" is no local time; "));
    EXPECT_THAT(startRefusal("2014-02-29 22:30"), HasSubstr(" is no day of the calendar; "));
    EXPECT_THAT(startRefusal("2014-13-01 22:30"), HasSubstr(" is no day of the calendar; "));
    EXPECT_THAT(startRefusal("2014-03-01 24:00"), HasSubstr(" is not a time of day; "));
    EXPECT_THAT(startRefusal("2014-03-01 22:30\n"), StartsWith("--start: "));
    EXPECT_THAT(startRefusal("1969-03-01 22:30"), StartsWith("--start: the year is 1969; "));
    EXPECT_THAT(startRefusal(""), StartsWith("--start: \"\" is no local time; "));
    EXPECT_THAT(endRefusal("7:30"),
                StartsWith("--end: \"7:30\" is no local time; write a local date-time such as "
                           "2014-03-01T22:30:00 or a local time such as 22:30:00"));
    EXPECT_THAT(endRefusal("2014-03-01 22:30"),
                StartsWith("--end: the end is not after the start, 2014-03-01T22:30:00; "));
    EXPECT_THAT(endRefusal("2014-04-01 22:30"), HasSubstr("more than a week"));

    ScenarioOverrides nowhere;
    nowhere.timezone = "Mars/Base";
    EXPECT_EQ(refusal("", nowhere), "--timezone: there is no time zone \"Mars/Base\"; write an "
                                    "IANA name such as \"Europe/Paris\"");

    ScenarioOverrides skipped;
    skipped.timezone = "Europe/Paris";
    skipped.start = "2014-03-30 02:30";
    EXPECT_THAT(refusal("", skipped),
                StartsWith("--start: 02:30:00 does not exist in Europe/Paris on 2014-03-30; "));
}

TEST(TheStartOption, leaves_the_rest_of_the_file_to_fit) {
    ScenarioOverrides later;
    later.start = "2014-03-05 22:30";
    EXPECT_THAT(refusal("end = 2014-03-02T08:00:00", later),
                StartsWith("night.toml:1:7: the end is not after the start, 2014-03-05T22:30:00"));
    EXPECT_THAT(refusal("event = [{at = 2014-03-02T08:00:00, stop = true}]", later),
                StartsWith("night.toml:1:16: at is before the start, 2014-03-05T22:30:00"));
}

} // namespace
} // namespace noctara
