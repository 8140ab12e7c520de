/// What a scenario file says, and how one is refused.
#include "tools/scenario_file.h"

#include "platform/simulated/local_time.h"
#include "tools/bad_input.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr double evening = 1393713000; // 2014-03-01T22:30:00Z
constexpr double hour = 3600;

Scenario parse(const std::string& text, const ScenarioOverrides& overrides = {}) {
    return parseScenario(text, "night.toml", overrides);
}

/// The message with which a scenario is refused; empty when it is not.
std::string refusal(const std::string& text, const ScenarioOverrides& overrides = {}) {
    try {
        parse(text, overrides);
    } catch (const BadInput& error) {
        return error.what();
    }
    return {};
}

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

Event onlyEvent(const std::string& text) {
    const Scenario scenario = parse(text);
    EXPECT_EQ(scenario.events.size(), 1U);
    return scenario.events.at(0);
}

/// The value of the one event in a night with the action of this text.
PropertyList action(const std::string& text) {
    return onlyEvent("[[event]]\nat = 23:00:00\n" + text).value;
}

std::vector<double> eventTimes(const std::string& text) {
    std::vector<double> times;
    for (const Event& event : parse(text).events)
        times.push_back(event.at.secondsSince1970);
    return times;
}

std::string fileText(const std::filesystem::path& path) {
    std::ifstream stream(path);
    EXPECT_TRUE(stream) << path;
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

TEST(AScenario, of_an_empty_file_is_the_default_night) {
    const Scenario empty = parse("");
    const Scenario defaults;
    EXPECT_EQ(empty.start, Date{evening});
    EXPECT_EQ(empty.end, Date{evening + 9.5 * hour});
    EXPECT_EQ(empty.start, defaults.start);
    EXPECT_EQ(empty.end, defaults.end);
    EXPECT_EQ(empty.timezone, "UTC");
    EXPECT_EQ(empty.phone.posture, defaults.phone.posture);
    EXPECT_EQ(empty.settings, std::nullopt);
    EXPECT_TRUE(empty.applications.empty());
    EXPECT_TRUE(empty.wakes.empty());
    EXPECT_TRUE(empty.events.empty());
}

TEST(AScenario, takes_its_phone_from_the_file) {
    const auto phone = parse(R"([phone]
        bundle = "com.example.other"
        machine = "iPad2,1"
        idiom = 1
        corefoundation = 847
        capabilities = []
        rates = ["4G", "2G"]
        telephony_manager = false
        telephony_server = false
        gestalt = false
        sounds = false
        charger = true
        posture = [0, -1.5, 0.25]
        device_motion = true
        idle_sleep = 604800)")
                           .phone;
    EXPECT_EQ(phone.bundle, "com.example.other");
    EXPECT_EQ(phone.machine, "iPad2,1");
    EXPECT_EQ(phone.idiom, 1);
    EXPECT_EQ(phone.corefoundation, 847.0);
    EXPECT_TRUE(phone.capabilities.empty());
    EXPECT_THAT(phone.rates, ElementsAre("4G", "2G"));
    EXPECT_FALSE(phone.telephonyManager);
    EXPECT_FALSE(phone.telephonyServer);
    EXPECT_FALSE(phone.gestalt);
    EXPECT_FALSE(phone.sounds);
    EXPECT_TRUE(phone.charger);
    EXPECT_EQ(phone.posture, (Array{0.0, -1.5, 0.25}));
    EXPECT_TRUE(phone.deviceMotion);
    EXPECT_EQ(phone.idleSleep, 604800);
}

TEST(AScenario, takes_its_radios_from_the_file) {
    const auto radios = parse(R"([radios]
        airplane = true
        wifi = false
        wifi_powered = false
        bluetooth = false
        bluetooth_connected = true
        cellular_data = false
        max_rate = "4G"
        location = false
        push = false
        tethering = true
        call = "outgoing")")
                            .radios;
    EXPECT_TRUE(radios.airplane);
    EXPECT_FALSE(radios.wifi);
    EXPECT_FALSE(radios.wifiPowered);
    EXPECT_FALSE(radios.bluetooth);
    EXPECT_TRUE(radios.bluetoothConnected);
    EXPECT_FALSE(radios.cellularData);
    EXPECT_EQ(radios.maxRate, "4G");
    EXPECT_FALSE(radios.location);
    EXPECT_FALSE(radios.push);
    EXPECT_TRUE(radios.tethering);
    EXPECT_EQ(radios.call, "outgoing");
}

TEST(AScenario, keeps_settings_of_every_type_in_the_order_of_the_file) {
    const Scenario scenario = parse(R"(timezone = "Europe/Paris"
        [settings]
        z = true
        a = -9223372036854775808
        real = 1.5
        text = "é"
        local = 2014-07-01T12:00:00
        instant = 2014-07-01T12:00:00-02:30
        list = [1, [false], {k = 2014-01-01T00:00:00Z}]
        table.y = 1
        table.x = 2)");
    const double noon = 1404208800; // 2014-07-01T10:00:00Z
    const Dictionary expected{
        {"z", true},
        {"a", std::numeric_limits<std::int64_t>::min()},
        {"real", 1.5},
        {"text", "é"},
        {"local", Date{noon}},
        {"instant", Date{noon + 4.5 * hour}},
        {"list", Array{1, Array{false}, Dictionary{{"k", Date{1388534400}}}}},
        {"table", Dictionary{{"y", 1}, {"x", 2}}},
    };
    ASSERT_TRUE(scenario.settings);
    EXPECT_EQ(*scenario.settings, expected);
    std::vector<std::string> order;
    for (const auto& entry : *scenario.settings)
        order.push_back(entry.key);
    EXPECT_THAT(order, ElementsAre("z", "a", "real", "text", "local", "instant", "list", "table"));
}

TEST(AScenario, with_an_empty_settings_table_has_an_empty_settings_file) {
    EXPECT_EQ(parse("[settings]").settings, Dictionary());
}

TEST(AScenario, lists_applications) {
    const auto applications = parse(R"(
        [[application]]
        identifier = "a"
        [[application]]
        identifier = "b"
        name = "B"
        icon = false
        front = true
        [[application]]
        identifier = "c"
        running = true)")
                                  .applications;
    ASSERT_EQ(applications.size(), 3U);
    EXPECT_EQ(applications[0].name, "a");
    EXPECT_FALSE(applications[0].running);
    EXPECT_TRUE(applications[0].icon);
    EXPECT_FALSE(applications[0].front);
    EXPECT_EQ(applications[1].name, "B");
    EXPECT_TRUE(applications[1].front);
    EXPECT_TRUE(applications[1].running) << "because it is in front";
    EXPECT_FALSE(applications[1].icon);
    EXPECT_TRUE(applications[2].running);
}

TEST(AScenario, lists_wake_ups_by_date_or_by_the_next_time_after_the_start) {
    const auto wakes = parse(R"(
        [[wake]]
        scheduledby = "com.apple.alarm"
        at = 2014-02-01T06:45:00
        [[wake]]
        scheduledby = "b"
        at = 22:30:00
        [[wake]]
        scheduledby = "c"
        at = 22:30:01)")
                           .wakes;
    ASSERT_EQ(wakes.size(), 3U);
    EXPECT_EQ(wakes[0].scheduledBy, "com.apple.alarm");
    EXPECT_EQ(wakes[0].at, Date{1391237100});
    EXPECT_EQ(wakes[1].at, Date{evening + 24 * hour});
    EXPECT_EQ(wakes[2].at, Date{evening + 1});
}

TEST(AnEvent, has_the_value_of_its_action) {
    EXPECT_EQ(action("posture = \"in-pocket\""), "in-pocket");
    EXPECT_EQ(action("posture = [1, 2, 3]"), (Array{1.0, 2.0, 3.0}));
    for (const std::string name : {"charger", "airplane", "wifi", "bluetooth", "cellular_data",
                                   "location", "bluetooth_connected", "telephony_server"}) {
        EXPECT_EQ(action(name + " = true"), true) << name;
        EXPECT_EQ(action(name + " = false"), false) << name;
    }
    EXPECT_EQ(action("settings = {}"), Dictionary());
    EXPECT_EQ(action("[event.settings]\nEnabled = false"), (Dictionary{{"Enabled", false}}));
    EXPECT_EQ(action("remove_settings = [\"a\", \"b\"]"), (Array{"a", "b"}));
    EXPECT_EQ(action("call = \"active\""), "active");
    EXPECT_EQ(action("max_rate = \"2G\""), "2G");
    EXPECT_EQ(action("disk = \"read-only\""), "read-only");
    EXPECT_EQ(action("settings_file = \"damaged\""), "damaged");
    EXPECT_EQ(action("power_message = 0xFFFFFFFF"), std::int64_t{4294967295});
    EXPECT_EQ(action("clock = 2014-03-01T22:30:00"), Date{evening});
    EXPECT_EQ(action("button = true"), true);
    EXPECT_EQ(action("stop = true"), true);
    EXPECT_EQ(onlyEvent("event = [{at = 23:00:00, stop = true}]").action, "stop");
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

TEST(AnEvent, has_exactly_one_action_and_a_time) {
    EXPECT_THAT(refusal("\n  [[event]]\nat = 23:00:00"),
                StartsWith("night.toml:2:3: [[event]] has no action; accepted: posture, charger"));
    EXPECT_THAT(refusal("[[event]]\nstop = true"),
                StartsWith("night.toml:1:1: [[event]] has no at; "));
    EXPECT_EQ(refusal("[[event]]\nwifi = true\nat = 23:00:00\nbutton = true"),
              "night.toml:4:10: the event has both wifi and button; give each event one action");
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

TEST(AScenario, has_years_from_1970_to_2067) {
    EXPECT_EQ(refusal("start = 1970-01-01T00:00:00"), "");
    EXPECT_EQ(refusal("start = 2067-12-31T23:59:59"), "");
    EXPECT_EQ(refusal("start = 1969-12-31T23:59:59"),
              "night.toml:1:9: the year is 1969; accepted: 1970 to 2067");
    EXPECT_THAT(refusal("start = 2068-01-01T00:00:00"), HasSubstr("the year is 2068"));
    EXPECT_THAT(refusal("settings.date = 2068-01-01T00:00:00Z"), HasSubstr("the year is 2068"));
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

TEST(AnUnknownKey, is_refused_at_the_key_with_the_nearest_one_and_all) {
    EXPECT_EQ(refusal("# night\n[radios]\n  wfi = true"),
              "night.toml:3:3: unknown key \"wfi\" in [radios]; did you mean \"wifi\"? accepted: "
              "airplane, wifi, wifi_powered, bluetooth, bluetooth_connected, cellular_data, "
              "max_rate, location, push, tethering, call");
    EXPECT_EQ(refusal("zebra = 1"),
              "night.toml:1:1: unknown key \"zebra\" in the scenario; accepted: start, end, hours, "
              "timezone, phone, radios, settings, application, wake, event");
    EXPECT_THAT(refusal("[phone]\nMachine = 1"), HasSubstr("did you mean \"machine\"?"));
    EXPECT_THAT(refusal("[[application]]\nident = 1"), HasSubstr(" in [[application]]; "));
    EXPECT_THAT(refusal("[[wake]]\nscheduled_by = 1"), HasSubstr("did you mean \"scheduledby\"?"));
    EXPECT_THAT(refusal("[[event]]\nat = 23:00:00\ncharge = true"),
                StartsWith("night.toml:3:1: unknown key \"charge\" in [[event]]; did you mean "
                           "\"charger\"? accepted: at, posture, "));
}

TEST(AnUnknownKey, that_comes_first_in_the_file_is_named) {
    EXPECT_THAT(refusal("zzz = 1\naaa = 2"), StartsWith("night.toml:1:1: unknown key \"zzz\""));
}

TEST(AWrongValue, is_refused_at_the_value_with_what_is_accepted) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"[radios]\nwifi = \"on\"", "2:8: wifi is a string; write true or false"},
        {"[radios]\nmax_rate = \"3g\"",
         "2:12: max_rate is \"3g\"; did you mean \"3G\"? accepted: 2G, 3G, 4G"},
        {"[radios]\nmax_rate = 3", "2:12: max_rate is an integer; accepted: 2G, 3G, 4G"},
        {"[radios]\ncall = \"busy\"",
         "2:8: call is \"busy\"; accepted: none, in-call, outgoing, incoming, active"},
        {"[phone]\nmachine = \"\"", "2:11: machine is empty; write at least one character"},
        {"[phone]\nbundle = [1]", "2:10: bundle is an array; write a string"},
        {"[phone]\nidiom = -1", "2:9: idiom is -1; write an integer from 0 to 2147483647"},
        {"[phone]\nidiom = 2147483648",
         "2:9: idiom is 2147483648; write an integer from 0 to 2147483647"},
        {"[phone]\nidiom = 0.0",
         "2:9: idiom is a real number; write an integer from 0 to 2147483647"},
        {"[phone]\nidle_sleep = 604801",
         "2:14: idle_sleep is 604801; write an integer from 0 to 604800"},
        {"[phone]\ncorefoundation = nan", "2:18: corefoundation is not finite; write a number"},
        {"[phone]\ncapabilities = [\"wifi\", 1]",
         "2:25: an element of capabilities is an integer; write a string"},
        {"[phone]\ncapabilities = {}", "2:16: capabilities is a table; write an array of strings"},
        {"[phone]\nrates = [\"5G\"]",
         "2:10: an element of rates is \"5G\"; did you mean \"2G\"? accepted: 2G, 3G, 4G"},
        {"[phone]\nposture = [0, 1]",
         "2:11: posture has 2 elements; write the three numbers x, y and z, in g"},
        {"[phone]\nposture = [0, 1, inf]",
         "2:18: an element of posture is not finite; write a number"},
        {"[phone]\nposture = \"screen-dwn\"",
         "2:11: posture is \"screen-dwn\"; did you mean \"screen-down\"? accepted: screen-down, "
         "screen-up, in-hand, in-pocket, moving, none"},
        {"phone = 1", "1:9: [phone] is an integer; write a table"},
        {"settings = []", "1:12: [settings] is an array; write a table of settings"},
        {"[application]\nidentifier = \"a\"",
         "1:1: application is a table; write a table [[application]] for each"},
        {"wake = [1]", "1:9: [[wake]] is an integer; write a table"},
        {"[[application]]\nname = \"A\"",
         "1:1: [[application]] has no identifier; give it one, identifier is required"},
        {"[[application]]\nidentifier = \"a\"\n[[application]]\nidentifier = \"a\"",
         "4:14: there is already an application \"a\"; give each application an identifier of "
         "its own"},
        {"[[application]]\nidentifier = \"a\"\nfront = true\nrunning = false",
         "3:9: front is true, but running is false; an application in front has to run"},
        {"[[application]]\nidentifier = \"a\"\nfront = true\n"
         "[[application]]\nidentifier = \"b\"\nfront = true",
         "6:9: another application is in front already; only one is accepted"},
        {"[[wake]]\nat = 06:45:00",
         "1:1: [[wake]] has no scheduledby; give it one, scheduledby is required"},
        {"[[wake]]\nscheduledby = \"a\"", "1:1: [[wake]] has no at; give it one, at is required"},
        {"event = [{at = 23:00:00, button = false}]",
         "1:35: button is false; write true, or leave it out"},
        {"event = [{at = 23:00:00, stop = 1}]", "1:33: stop is an integer; write true"},
        {"event = [{at = 23:00:00, power_message = 4294967296}]",
         "1:42: power_message is 4294967296; write an integer from 0 to 4294967295"},
        {"event = [{at = 23:00:00, settings_file = \"gone\"}]",
         "1:42: settings_file is \"gone\"; accepted: missing, damaged"},
        {"event = [{at = 23:00:00, disk = \"\"}]", "1:33: disk is \"\"; accepted: ok, full, "
                                                   "read-only"},
        {"event = [{at = 23:00:00, remove_settings = \"a\"}]",
         "1:44: remove_settings is a string; write an array of strings"},
        {"event = [{at = 23:00:00, settings = true}]",
         "1:37: settings is a boolean; write a table of settings"},
        {"settings.a = 07:00:00",
         "1:14: a is a time without a date; write a local date-time such as 2014-03-01T22:30:00"},
        {"timezone = \"Europe/Pariss\"",
         "1:12: there is no time zone \"Europe/Pariss\"; write an IANA name such as "
         "\"Europe/Paris\""},
        {"timezone = 1", "1:12: timezone is an integer; write a string"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(refusal(text), "night.toml:" + expected) << text;
}

TEST(ASyntaxError, has_the_same_shape_on_one_line) {
    EXPECT_THAT(refusal("[phone]\nbundle = \"a\nb\""), StartsWith("night.toml:2:"));
    EXPECT_THAT(refusal("a = 1\na = 2"), StartsWith("night.toml:2:"));
    EXPECT_THAT(refusal("\xff"), StartsWith("night.toml:1:1: "));
    for (const char* text :
         {"[phone", "a = \"\n\"", "= 1", "a = [1,\n", "\x01", "a = 2014-02-30"}) {
        EXPECT_NE(refusal(text), "") << text;
        EXPECT_EQ(refusal(text).find('\n'), std::string::npos) << text;
    }
}

TEST(AMessage, stays_on_one_line_and_short_whatever_the_file_holds) {
    const std::string message = refusal("[radios]\ncall = \"a\\nb\\u001b[31m\"");
    EXPECT_THAT(message, StartsWith("night.toml:2:8: call is \"a?b?[31m\"; "));
    const std::string longest = refusal("\"" + std::string(100'000, 'x') + "\" = 1");
    EXPECT_LT(longest.size(), 300U);
    EXPECT_THAT(longest, HasSubstr("xxx...\""));
    // Two bytes a letter, of which the limit would cut one in half.
    std::string letters = "x";
    for (int i = 0; i < 40; ++i)
        letters += "é";
    EXPECT_THAT(refusal("[radios]\ncall = \"" + letters + "\""), HasSubstr("é...\""));
}

TEST(AScenario, nested_without_end_is_refused) {
    std::string dotted = "a";
    for (int i = 0; i < 100'000; ++i)
        dotted += ".a";
    EXPECT_THAT(refusal("\n[" + dotted + "]"), StartsWith("night.toml:2:403: too many dots"));
    EXPECT_THAT(refusal("settings.a = " + std::string(40, '[') + std::string(40, ']')),
                HasSubstr("settings are nested too deeply; at most 32 levels are accepted"));
    EXPECT_EQ(refusal("settings.a = " + std::string(31, '[') + std::string(31, ']')), "");
    EXPECT_NE(refusal("settings.a = " + std::string(100'000, '[')), "");
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
    EXPECT_THAT(startRefusal("2014-03-01 24:00"), HasSubstr(" is a time that no clock shows; "));
    EXPECT_THAT(startRefusal("2014-03-01 22:30\n"), StartsWith("--start: "));
    EXPECT_THAT(startRefusal("2068-03-01 22:30"), StartsWith("--start: the year is 2068; "));
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

class AScenarioFile : public testing::Test {
protected:
    void SetUp() override {
        folder = std::filesystem::temp_directory_path() /
                 ("noctara-scenario-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::filesystem::path written(const std::string& text) const {
        const auto path = folder / "night.toml";
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    static std::string refusalOf(const std::filesystem::path& path) {
        try {
            readScenario(path);
        } catch (const BadInput& error) {
            return error.what();
        }
        return {};
    }

    std::filesystem::path folder;
};

TEST_F(AScenarioFile, is_read_whole) {
    EXPECT_EQ(readScenario(written("timezone = \"Asia/Kolkata\"\nhours = 1")).timezone,
              "Asia/Kolkata");
    EXPECT_EQ(readScenario(written("")).timezone, "UTC");
    const auto path = written("hours = 0");
    EXPECT_THAT(refusalOf(path), StartsWith(path.string() + ":1:9: hours is out of range; "));
}

TEST_F(AScenarioFile, of_at_most_a_mebibyte_is_accepted) {
    EXPECT_EQ(refusalOf(written(std::string(1024 * 1024, '\n'))), "");
    const auto path = written(std::string(1024 * 1024 + 1, '\n'));
    EXPECT_EQ(refusalOf(path), path.string() + ": is too large; at most 1 MiB is accepted");
}

TEST_F(AScenarioFile, that_cannot_be_read_is_refused) {
    const auto missing = folder / "missing.toml";
    EXPECT_EQ(refusalOf(missing),
              missing.string() +
                  ": cannot be read: No such file or directory; give the name of a scenario file");
    EXPECT_EQ(refusalOf(folder),
              folder.string() + ": is a directory; give the name of a scenario file");
}

TEST(TheManual, has_only_valid_scenarios) {
    const std::string text =
        fileText(std::filesystem::path(NOCTARA_SOURCE_DIR) / "docs/scenarios.md");
    const std::string fence = "```toml\n";
    int blocks = 0;
    for (std::size_t at = text.find(fence); at != text.npos; at = text.find(fence, at)) {
        at += fence.size();
        const std::string block = text.substr(at, text.find("```", at) - at);
        EXPECT_EQ(refusal(block), "") << block;
        ++blocks;
    }
    EXPECT_GE(blocks, 2);
}

TEST(TheManual, gives_the_defaults_in_its_complete_example) {
    const std::string text =
        fileText(std::filesystem::path(NOCTARA_SOURCE_DIR) / "docs/scenarios.md");
    const std::size_t begin = text.find("```toml\n") + 8;
    const Scenario example = parse(text.substr(begin, text.find("```", begin) - begin));
    const Scenario::Phone phone;
    EXPECT_EQ(example.phone.machine, phone.machine);
    EXPECT_EQ(example.phone.corefoundation, phone.corefoundation);
    EXPECT_EQ(example.phone.capabilities, phone.capabilities);
    EXPECT_EQ(example.phone.rates, phone.rates);
    EXPECT_EQ(example.phone.posture, phone.posture);
    EXPECT_EQ(example.radios.maxRate, Scenario::Radios().maxRate);
    EXPECT_EQ(example.start, Date{evening - hour});
    EXPECT_EQ(example.end, Date{evening + 8.5 * hour});
    ASSERT_EQ(example.events.size(), 6U);
    EXPECT_EQ(example.events[2].at, Date{evening + 1.75 * hour});
    EXPECT_EQ(example.events[5].value, (Array{0.0, -0.5, -0.87}));
}

} // namespace
} // namespace noctara
