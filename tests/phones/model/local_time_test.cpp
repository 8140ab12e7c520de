/// Local time at known changes of the clocks.
#include "phones/model/local_time.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <tuple>

namespace noctara {

static bool operator==(const DateComponents& left, const DateComponents& right) {
    const auto parts = [](const DateComponents& of) {
        return std::tie(of.year, of.month, of.day, of.hour, of.minute, of.second);
    };
    return parts(left) == parts(right);
}

static std::ostream& operator<<(std::ostream& out, const DateComponents& of) {
    return out << of.year << '-' << of.month << '-' << of.day << ' ' << of.hour << ':' << of.minute
               << ':' << of.second;
}

namespace {

constexpr double march30 = 1396137600;   // 2014-03-30T00:00:00Z
constexpr double october26 = 1414281600; // 2014-10-26T00:00:00Z
constexpr double hour = 3600;

double seconds(const TimeZone& zone, const DateComponents& components) {
    return zone.date(components).secondsSince1970;
}

double firstSeconds(const TimeZone& zone, const DateComponents& components) {
    return zone.firstDate(components).secondsSince1970;
}

TEST(ATimeZone, of_an_unknown_name_is_refused) {
    for (const char* name :
         {"Europe/Pariss", "", "europe/paris", "Europe/Paris ", "../Europe/Paris", "Europe",
          "Europe/../Europe/Paris", "/usr/share/zoneinfo/Europe/Paris", "file:Europe/Paris",
          "libc:localtime", "localtime", "Fixed/UTC+01:00:00", "UTC0", "zone.tab"})
        EXPECT_THROW(TimeZone{name}, std::runtime_error) << name;
}

TEST(ATimeZone, knows_its_name) {
    const TimeZone paris("Europe/Paris");
    EXPECT_EQ(paris.name(), "Europe/Paris");
}

TEST(ATimeZone, takes_an_instant_apart) {
    const DateComponents expected{2014, 3, 1, 22, 30, 0};
    EXPECT_EQ(TimeZone("UTC").components({1393713000}), expected);
    EXPECT_EQ(TimeZone("Europe/Paris").components({1393713000 - hour}), expected);
    EXPECT_EQ(TimeZone("Asia/Kolkata").components({1393713000 - 5.5 * hour}), expected);
}

TEST(ATimeZone, drops_the_fraction_of_a_second_downwards) {
    const TimeZone utc("UTC");
    EXPECT_EQ(utc.components({0.999}), (DateComponents{1970, 1, 1, 0, 0, 0}));
    EXPECT_EQ(utc.components({-0.001}), (DateComponents{1969, 12, 31, 23, 59, 59}));
}

TEST(ATimeZone, skips_the_hour_that_spring_takes_in_paris) {
    const TimeZone paris("Europe/Paris");
    EXPECT_EQ(paris.components({march30 + hour - 1}), (DateComponents{2014, 3, 30, 1, 59, 59}));
    EXPECT_EQ(paris.components({march30 + hour}), (DateComponents{2014, 3, 30, 3, 0, 0}));

    EXPECT_TRUE(paris.exists({2014, 3, 30, 1, 59, 59}));
    EXPECT_FALSE(paris.exists({2014, 3, 30, 2, 0, 0}));
    EXPECT_FALSE(paris.exists({2014, 3, 30, 2, 59, 59}));
    EXPECT_TRUE(paris.exists({2014, 3, 30, 3, 0, 0}));

    EXPECT_EQ(seconds(paris, {2014, 3, 30, 1, 59, 59}), march30 + hour - 1);
    EXPECT_EQ(seconds(paris, {2014, 3, 30, 2, 30, 0}), march30 + 1.5 * hour); // is 03:30
    EXPECT_EQ(firstSeconds(paris, {2014, 3, 30, 2, 30, 0}), march30 + 1.5 * hour);
    EXPECT_EQ(seconds(paris, {2014, 3, 30, 3, 0, 0}), march30 + hour);
}

TEST(ATimeZone, repeats_the_hour_that_autumn_gives_in_paris) {
    const TimeZone paris("Europe/Paris");
    const DateComponents half{2014, 10, 26, 2, 30, 0};
    EXPECT_EQ(paris.components({october26 + 0.5 * hour}), half);
    EXPECT_EQ(paris.components({october26 + 1.5 * hour}), half);
    EXPECT_TRUE(paris.exists(half));
    EXPECT_EQ(seconds(paris, half), october26 + 1.5 * hour);
    EXPECT_EQ(firstSeconds(paris, half), october26 + 0.5 * hour);

    EXPECT_EQ(seconds(paris, {2014, 10, 26, 1, 59, 59}), october26 - 1);
    EXPECT_EQ(firstSeconds(paris, {2014, 10, 26, 1, 59, 59}), october26 - 1);
    EXPECT_EQ(seconds(paris, {2014, 10, 26, 2, 0, 0}), october26 + hour);
    EXPECT_EQ(firstSeconds(paris, {2014, 10, 26, 2, 0, 0}), october26);
    EXPECT_EQ(firstSeconds(paris, {2014, 10, 26, 3, 0, 0}), october26 + 2 * hour);
}

TEST(ATimeZone, changes_its_clocks_as_new_york_does) {
    const TimeZone newYork("America/New_York");
    // 2014-03-09: 02:00 EST is 07:00Z; 2014-11-02: 02:00 EDT is 06:00Z.
    EXPECT_FALSE(newYork.exists({2014, 3, 9, 2, 15, 0}));
    EXPECT_EQ(seconds(newYork, {2014, 3, 9, 2, 15, 0}), 1394348400 + 900);
    EXPECT_EQ(firstSeconds(newYork, {2014, 11, 2, 1, 15, 0}), 1414908000 - 2700);
    EXPECT_EQ(seconds(newYork, {2014, 11, 2, 1, 15, 0}), 1414908000 + 900);
}

TEST(ATimeZone, changes_its_clocks_by_half_an_hour_on_lord_howe) {
    const TimeZone lordHowe("Australia/Lord_Howe");
    // 2014-04-06: 02:00 (+11) becomes 01:30 (+10:30), at 2014-04-05T15:00Z.
    // 2014-10-05: 02:00 (+10:30) becomes 02:30 (+11), at 2014-10-04T15:30Z.
    EXPECT_EQ(firstSeconds(lordHowe, {2014, 4, 6, 1, 45, 0}), 1396710000 - 900);
    EXPECT_EQ(seconds(lordHowe, {2014, 4, 6, 1, 45, 0}), 1396710000 + 900);
    EXPECT_EQ(firstSeconds(lordHowe, {2014, 4, 6, 1, 15, 0}), 1396710000 - 2700);
    EXPECT_EQ(seconds(lordHowe, {2014, 4, 6, 1, 15, 0}), 1396710000 - 2700);
    EXPECT_FALSE(lordHowe.exists({2014, 10, 5, 2, 29, 59}));
    EXPECT_TRUE(lordHowe.exists({2014, 10, 5, 2, 30, 0}));
    EXPECT_EQ(lordHowe.components(lordHowe.date({2014, 10, 5, 2, 15, 0})),
              (DateComponents{2014, 10, 5, 2, 45, 0}));
}

TEST(ATimeZone, skips_a_whole_day_in_apia) {
    const TimeZone apia("Pacific/Apia");
    // The end of 2011-12-29 (-10) was followed by 2011-12-31 (+14), at 2011-12-30T10:00Z.
    EXPECT_EQ(apia.components({1325239199}), (DateComponents{2011, 12, 29, 23, 59, 59}));
    EXPECT_EQ(apia.components({1325239200}), (DateComponents{2011, 12, 31, 0, 0, 0}));
    EXPECT_FALSE(apia.exists({2011, 12, 30, 0, 0, 0}));
    EXPECT_FALSE(apia.exists({2011, 12, 30, 23, 59, 59}));
    EXPECT_TRUE(apia.exists({2011, 12, 29, 23, 59, 59}));
    EXPECT_TRUE(apia.exists({2011, 12, 31, 0, 0, 0}));
    EXPECT_EQ(apia.components(apia.date({2011, 12, 30, 12, 0, 0})),
              (DateComponents{2011, 12, 31, 12, 0, 0}));
}

std::string offsetsIn(const char* zone, double first, double last) {
    std::string text;
    for (const auto& offset : TimeZone(zone).offsets({first}, {last}))
        text += std::to_string(std::llround(offset.from.secondsSince1970 - first)) + " " +
                std::to_string(offset.seconds) + " " + offset.abbreviation + "; ";
    return text;
}

TEST(ATimeZone, lists_its_offsets) {
    EXPECT_EQ(offsetsIn("UTC", 0, 1e9), "0 0 UTC; ");
    EXPECT_EQ(offsetsIn("Europe/Paris", march30 - 0.5, march30 - 1), "0 3600 CET; ");
    EXPECT_EQ(offsetsIn("Europe/Paris", march30, march30 + hour), "0 3600 CET; 3600 7200 CEST; ");
    EXPECT_EQ(offsetsIn("Europe/Paris", october26, october26 + 2 * hour),
              "0 7200 CEST; 3600 3600 CET; ");
    EXPECT_EQ(offsetsIn("Australia/Lord_Howe", 1396710000 - 60, 1396710000 + 60),
              "0 39600 +11; 60 37800 +1030; ");
    EXPECT_EQ(offsetsIn("Pacific/Apia", 1325239200 - 60, 1325239200 + 60),
              "0 -36000 -10; 60 50400 +14; ");
}

TEST(ATimeZone, carries_hours_over_into_neighbouring_days) {
    const TimeZone paris("Europe/Paris");
    EXPECT_EQ(seconds(paris, {2014, 3, 1, 31, 0, 0}), seconds(paris, {2014, 3, 2, 7, 0, 0}));
    EXPECT_EQ(seconds(paris, {2014, 3, 1, -2, 0, 0}), seconds(paris, {2014, 2, 28, 22, 0, 0}));
    EXPECT_EQ(seconds(paris, {2014, 12, 31, 24, 0, 0}), seconds(paris, {2015, 1, 1, 0, 0, 0}));
    EXPECT_FALSE(paris.exists({2014, 3, 29, 26, 30, 0}));
}

TEST(ATimeZone, carries_the_largest_and_smallest_hours_over) {
    using Limits = std::numeric_limits<std::int32_t>;
    const TimeZone utc("UTC");
    EXPECT_EQ(seconds(utc, {1970, 1, 1, Limits::max(), 0, 0}), 2147483647.0 * hour);
    EXPECT_EQ(seconds(utc, {1970, 1, 1, Limits::min(), 0, 0}), -2147483648.0 * hour);
    const TimeZone paris("Europe/Paris");
    EXPECT_EQ(seconds(paris, {1970, 1, 1, Limits::min(), 0, 0}), -2147483648.0 * hour - 561);
    const DateComponents far = paris.components({2147483647.0 * hour});
    EXPECT_EQ(seconds(paris, far), 2147483647.0 * hour);
}

TEST(ATimeZone, bears_any_number_as_a_date_and_any_parts) {
    using Limits = std::numeric_limits<std::int32_t>;
    const TimeZone paris("Europe/Paris");
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_GT(paris.components({infinity}).year, 900'000'000);
    EXPECT_LT(paris.components({-infinity}).year, -900'000'000);
    EXPECT_LT(paris.components({std::nan("")}).year, -900'000'000);
    for (const auto extreme : {Limits::min(), Limits::max()})
        EXPECT_TRUE(
            std::isfinite(seconds(paris, {extreme, extreme, extreme, extreme, extreme, extreme})));
}

TEST(ATimeZone, knows_the_time_before_1970) {
    const TimeZone paris("Europe/Paris");
    // Summer time of 1943 was two hours ahead of UTC; before 1891 the time was that of the sun.
    EXPECT_EQ(seconds(paris, {1943, 7, 14, 12, 0, 0}), -835279200);
    EXPECT_EQ(seconds(paris, {1800, 1, 1, 0, 9, 21}), -5364662400);
    EXPECT_EQ(paris.components({-5364662400}), (DateComponents{1800, 1, 1, 0, 9, 21}));
    EXPECT_EQ(TimeZone("UTC").components({-62135596800}), (DateComponents{1, 1, 1, 0, 0, 0}));
}

TEST(ATimeZone, goes_on_changing_its_clocks_after_2037) {
    const TimeZone paris("Europe/Paris");
    // The last Sundays of March and October: 2050-03-27 and 2064-10-26.
    EXPECT_FALSE(paris.exists({2050, 3, 27, 2, 30, 0}));
    EXPECT_TRUE(paris.exists({2050, 3, 20, 2, 30, 0}));
    EXPECT_EQ(paris.components({2540592000}).hour, 2);
    EXPECT_EQ(seconds(paris, {2064, 10, 26, 2, 30, 0}) - firstSeconds(paris, {2064, 10, 26, 2, 30}),
              hour);
    EXPECT_EQ(paris.components({2524608000}).hour, 1);

    // The second Sunday of March, the first of November: 2067-03-13 and 2067-11-06.
    const TimeZone newYork("America/New_York");
    EXPECT_FALSE(newYork.exists({2067, 3, 13, 2, 30, 0}));
    EXPECT_EQ(seconds(newYork, {2067, 11, 6, 1, 30}) - firstSeconds(newYork, {2067, 11, 6, 1, 30}),
              hour);

    // In the south, summer time is in effect at the turn of the year.
    const TimeZone sydney("Australia/Sydney");
    EXPECT_EQ(sydney.components({2524608000}), (DateComponents{2050, 1, 1, 11, 0, 0}));
    EXPECT_EQ(sydney.components({2540592000}), (DateComponents{2050, 7, 5, 10, 0, 0}));

    EXPECT_EQ(TimeZone("Asia/Kolkata").components({2524608000}),
              (DateComponents{2050, 1, 1, 5, 30, 0}));
}

class ATimeZoneAllYear : public testing::TestWithParam<std::tuple<std::string, int>> {};

TEST_P(ATimeZoneAllYear, finds_back_to_every_quarter_of_an_hour_that_does_not_repeat) {
    const auto& [name, year] = GetParam();
    const TimeZone zone(name);
    const double begin = seconds(TimeZone("UTC"), {year, 1, 1, 0, 0, 0});
    int repeated = 0;
    for (double at = begin; at < begin + 366 * 24 * hour; at += hour / 4) {
        const DateComponents parts = zone.components({at});
        ASSERT_TRUE(zone.exists(parts)) << parts;
        const double first = firstSeconds(zone, parts);
        const double last = seconds(zone, parts);
        ASSERT_TRUE(at == first || at == last) << parts;
        if (first != last)
            ++repeated;
    }
    // Each repeated local time occurs twice. No zone here repeats more than two hours a year.
    EXPECT_LE(repeated, 16);
    EXPECT_EQ(repeated % 2, 0);
}

TEST_P(ATimeZoneAllYear, answers_the_same_whatever_was_asked_before) {
    const auto& [name, year] = GetParam();
    const TimeZone remembering(name);
    const double begin = seconds(TimeZone("UTC"), {year, 1, 1, 0, 0, 0});
    for (double at = begin; at < begin + 366 * 24 * hour; at += 7 * hour) {
        const DateComponents parts = remembering.components({at});
        const TimeZone fresh(name);
        ASSERT_EQ(parts, fresh.components({at}));
        ASSERT_EQ(seconds(remembering, parts), seconds(fresh, parts)) << parts;
    }
}

INSTANTIATE_TEST_SUITE_P(Zones, ATimeZoneAllYear,
                         testing::Combine(testing::Values("UTC", "Europe/Paris", "America/New_York",
                                                          "Asia/Kolkata", "Australia/Lord_Howe",
                                                          "Pacific/Apia", "America/St_Johns",
                                                          "Africa/Casablanca"),
                                          testing::Values(1965, 2014, 2037, 2038, 2060)));

} // namespace

} // namespace noctara
