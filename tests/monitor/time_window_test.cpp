/// The nightly window of whole hours, and its exact limits.
#include "tests/a_night.h"

#include <limits>
#include <vector>

namespace noctara {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Gt;
using testing::IsEmpty;
using testing::Le;

constexpr double hour = 3600;
constexpr double moment = 1.0 / 1024;

// What a clock in Paris is ahead of UTC.
constexpr double winter = 1 * hour;
constexpr double summer = 2 * hour;

class ANightlyWindow : public AMonitor {
protected:
    void lasts(std::int32_t startHour, std::int32_t stopHour, const char* zone = "UTC") {
        scenario.timezone = zone;
        make();
        own->startTime = startHour;
        own->stopTime = stopHour;
    }

    bool contains(double instant) {
        phone().clock.setWall({instant});
        return own->isInTimeRange();
    }

    /// On a day without anything special.
    bool contains(int hours, int minutes, int seconds) {
        return contains(at(2014, 3, 1, hours, minutes, seconds));
    }
};

TEST_F(ANightlyWindow, is_21_to_7_unless_the_settings_say_otherwise) {
    make();
    EXPECT_TRUE(contains(21, 0, 1));
    EXPECT_TRUE(contains(7, 0, 0));
    EXPECT_FALSE(contains(21, 0, 0));
    EXPECT_FALSE(contains(7, 0, 1));
}

TEST_F(ANightlyWindow, has_the_same_hours_in_2040) {
    lasts(21, 7, "Europe/Paris");
    EXPECT_FALSE(contains(at(2040, 1, 15, 20, 59, 59) - winter));
    EXPECT_TRUE(contains(at(2040, 1, 15, 21, 0, 1) - winter));
    EXPECT_FALSE(contains(at(2040, 7, 15, 20, 59, 59) - summer));
    EXPECT_TRUE(contains(at(2040, 7, 15, 21, 0, 1) - summer));
}

TEST_F(ANightlyWindow, across_midnight_contains_the_late_evening) {
    lasts(21, 7);
    EXPECT_TRUE(contains(23, 30, 0));
    EXPECT_TRUE(contains(23, 59, 59));
}

TEST_F(ANightlyWindow, across_midnight_contains_the_early_morning) {
    lasts(21, 7);
    EXPECT_TRUE(contains(0, 0, 0));
    EXPECT_TRUE(contains(3, 0, 0));
}

TEST_F(ANightlyWindow, across_midnight_contains_the_exact_stop_hour) {
    lasts(21, 7);
    EXPECT_TRUE(contains(6, 59, 59));
    EXPECT_TRUE(contains(7, 0, 0));
}

TEST_F(ANightlyWindow, across_midnight_is_over_a_moment_after_the_stop_hour) {
    lasts(21, 7);
    EXPECT_FALSE(contains(at(2014, 3, 1, 7, 0, 0) + moment));
    EXPECT_FALSE(contains(7, 0, 1));
}

TEST_F(ANightlyWindow, across_midnight_does_not_contain_noon) {
    lasts(21, 7);
    EXPECT_FALSE(contains(12, 0, 0));
}

TEST_F(ANightlyWindow, across_midnight_does_not_contain_the_exact_start_hour) {
    lasts(21, 7);
    EXPECT_FALSE(contains(20, 59, 59));
    EXPECT_FALSE(contains(21, 0, 0));
}

TEST_F(ANightlyWindow, across_midnight_begins_a_moment_after_the_start_hour) {
    lasts(21, 7);
    EXPECT_TRUE(contains(at(2014, 3, 1, 21, 0, 0) + moment));
}

TEST_F(ANightlyWindow, within_a_day_contains_both_its_exact_edges) {
    lasts(8, 17);
    EXPECT_TRUE(contains(8, 0, 0));
    EXPECT_TRUE(contains(12, 0, 0));
    EXPECT_TRUE(contains(17, 0, 0));
}

TEST_F(ANightlyWindow, within_a_day_contains_nothing_before_its_start) {
    lasts(8, 17);
    EXPECT_FALSE(contains(0, 0, 0));
    EXPECT_FALSE(contains(7, 59, 59));
    EXPECT_FALSE(contains(at(2014, 3, 1, 8, 0, 0) - moment));
}

TEST_F(ANightlyWindow, within_a_day_contains_nothing_after_its_stop) {
    lasts(8, 17);
    EXPECT_FALSE(contains(at(2014, 3, 1, 17, 0, 0) + moment));
    EXPECT_FALSE(contains(17, 0, 1));
    EXPECT_FALSE(contains(23, 59, 59));
}

TEST_F(ANightlyWindow, that_starts_and_stops_at_one_hour_is_that_single_instant) {
    lasts(22, 22);
    EXPECT_TRUE(contains(22, 0, 0));
    EXPECT_FALSE(contains(at(2014, 3, 1, 22, 0, 0) - moment));
    EXPECT_FALSE(contains(at(2014, 3, 1, 22, 0, 0) + moment));
    EXPECT_FALSE(contains(3, 0, 0));
    EXPECT_FALSE(contains(23, 0, 0));
}

TEST_F(ANightlyWindow, until_midnight_contains_midnight_itself_and_not_a_moment_more) {
    lasts(22, 0);
    EXPECT_FALSE(contains(22, 0, 0));
    EXPECT_TRUE(contains(at(2014, 3, 1, 22, 0, 0) + moment));
    EXPECT_TRUE(contains(23, 59, 59));
    EXPECT_TRUE(contains(at(2014, 3, 2, 0, 0, 0)));
    EXPECT_FALSE(contains(at(2014, 3, 2, 0, 0, 0) + moment));
    EXPECT_FALSE(contains(at(2014, 3, 2, 12, 0, 0)));
}

TEST_F(ANightlyWindow, is_of_the_local_day_and_not_of_utc) {
    lasts(21, 7, "Asia/Tokyo");
    constexpr double tokyo = 9 * hour;
    EXPECT_TRUE(contains(at(2014, 3, 1, 23, 30, 0) - tokyo));
    EXPECT_FALSE(contains(at(2014, 3, 2, 12, 0, 0) - tokyo));
    EXPECT_TRUE(contains(at(2014, 3, 2, 7, 0, 0) - tokyo));
    EXPECT_FALSE(contains(at(2014, 3, 2, 7, 0, 1) - tokyo));
}

TEST_F(ANightlyWindow, asks_the_phone_nothing_but_the_time) {
    lasts(21, 7);
    calls.clear();
    EXPECT_TRUE(contains(23, 30, 0));
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(ANightlyWindow, across_midnight_logs_the_start_alone_in_the_evening) {
    lasts(21, 7);
    calls.clear();
    contains(at(2014, 3, 1, 23, 30, 0) + moment);
    EXPECT_THAT(calls.logged(),
                ElementsAre("Now=2014-03-01 23:30:00 +0000, StartDate=2014-03-01 21:00:00 +0000"));
}

TEST_F(ANightlyWindow, across_midnight_logs_the_stop_of_the_same_day_in_the_morning) {
    lasts(21, 7, "Europe/Paris");
    calls.clear();
    contains(at(2014, 3, 2, 3, 4, 5) - winter);
    EXPECT_THAT(calls.logged(),
                ElementsAre("Now=2014-03-02 02:04:05 +0000, StartDate=2014-03-02 20:00:00 +0000",
                            "Now=2014-03-02 02:04:05 +0000, StopDate=2014-03-02 06:00:00 +0000"));
}

TEST_F(ANightlyWindow, within_a_day_logs_the_start_alone_before_it) {
    lasts(8, 17);
    calls.clear();
    contains(7, 59, 59);
    EXPECT_THAT(calls.logged(),
                ElementsAre("Now=2014-03-01 07:59:59 +0000, StartDate=2014-03-01 08:00:00 +0000"));
}

TEST_F(ANightlyWindow, within_a_day_logs_start_and_stop_from_its_start_on) {
    lasts(8, 17);
    calls.clear();
    contains(8, 0, 0);
    EXPECT_THAT(calls.logged(),
                ElementsAre("Now=2014-03-01 08:00:00 +0000, StartDate=2014-03-01 08:00:00 +0000",
                            "Now=2014-03-01 08:00:00 +0000, StopDate=2014-03-01 17:00:00 +0000"));
}

TEST_F(ANightlyWindow, logs_nothing_with_debug_off) {
    lasts(21, 7);
    own->_DEBUG_ = false;
    calls.clear();
    EXPECT_TRUE(contains(3, 0, 0));
    EXPECT_FALSE(contains(12, 0, 0));
    own->startTime = 8;
    own->stopTime = 17;
    EXPECT_TRUE(contains(12, 0, 0));
    EXPECT_THAT(calls.logged(), IsEmpty());
}

// Hours that no day has carry over into the neighbouring days.

TEST_F(ANightlyWindow, with_a_stop_hour_of_tomorrow_lies_in_one_piece_and_has_no_morning) {
    lasts(21, 31);
    EXPECT_TRUE(contains(21, 0, 0));
    EXPECT_TRUE(contains(23, 59, 59));
    EXPECT_FALSE(contains(3, 0, 0));
    EXPECT_FALSE(contains(7, 0, 0));
}

TEST_F(ANightlyWindow, with_a_start_hour_of_yesterday_lies_in_one_piece_and_has_no_evening) {
    lasts(-3, 7);
    EXPECT_TRUE(contains(0, 0, 0));
    EXPECT_TRUE(contains(7, 0, 0));
    EXPECT_FALSE(contains(7, 0, 1));
    EXPECT_FALSE(contains(23, 30, 0));
}

TEST_F(ANightlyWindow, with_a_start_hour_of_24_has_no_evening_but_a_morning) {
    lasts(24, 7);
    EXPECT_FALSE(contains(23, 59, 59));
    EXPECT_TRUE(contains(0, 0, 0));
    EXPECT_TRUE(contains(7, 0, 0));
    EXPECT_FALSE(contains(7, 0, 1));
}

TEST_F(ANightlyWindow, with_a_stop_hour_of_yesterday_has_no_morning) {
    lasts(22, -1);
    EXPECT_TRUE(contains(22, 0, 1));
    EXPECT_FALSE(contains(0, 0, 0));
    EXPECT_FALSE(contains(3, 0, 0));
}

TEST_F(ANightlyWindow, with_the_farthest_hours_is_always_or_never) {
    constexpr auto most = std::numeric_limits<std::int32_t>::max();
    constexpr auto least = std::numeric_limits<std::int32_t>::min();
    lasts(least, most);
    EXPECT_TRUE(contains(12, 0, 0));
    own->startTime = most;
    own->stopTime = least;
    EXPECT_FALSE(contains(12, 0, 0));
}

TEST_F(ANightlyWindow, logs_the_instants_that_hours_of_other_days_stand_for) {
    lasts(-3, 31);
    calls.clear();
    EXPECT_TRUE(contains(12, 0, 0));
    EXPECT_THAT(calls.logged(),
                ElementsAre("Now=2014-03-01 12:00:00 +0000, StartDate=2014-02-28 21:00:00 +0000",
                            "Now=2014-03-01 12:00:00 +0000, StopDate=2014-03-02 07:00:00 +0000"));
}

// Paris goes from 02:00 to 03:00 on 30 March 2014, and back from 03:00 to 02:00 on 26 October.

TEST_F(ANightlyWindow, ends_by_the_clock_on_the_wall_after_the_clocks_went_forward) {
    lasts(21, 7, "Europe/Paris");
    EXPECT_TRUE(contains(at(2014, 3, 29, 23, 30, 0) - winter));
    EXPECT_TRUE(contains(at(2014, 3, 30, 3, 0, 0) - summer));
    EXPECT_TRUE(contains(at(2014, 3, 30, 7, 0, 0) - summer));
    EXPECT_FALSE(contains(at(2014, 3, 30, 7, 0, 1) - summer));
    EXPECT_FALSE(contains(at(2014, 3, 30, 21, 0, 0) - summer));
    EXPECT_TRUE(contains(at(2014, 3, 30, 21, 0, 1) - summer));
}

TEST_F(ANightlyWindow, ends_by_the_clock_on_the_wall_after_the_clocks_went_back) {
    lasts(21, 7, "Europe/Paris");
    EXPECT_TRUE(contains(at(2014, 10, 25, 21, 0, 1) - summer));
    EXPECT_TRUE(contains(at(2014, 10, 26, 2, 30, 0) - summer));
    EXPECT_TRUE(contains(at(2014, 10, 26, 2, 30, 0) - winter));
    EXPECT_TRUE(contains(at(2014, 10, 26, 7, 0, 0) - winter));
    EXPECT_FALSE(contains(at(2014, 10, 26, 7, 0, 1) - winter));
    EXPECT_FALSE(contains(at(2014, 10, 26, 21, 0, 0) - winter));
}

TEST_F(ANightlyWindow, that_starts_in_the_skipped_hour_starts_as_the_clocks_go_forward) {
    lasts(2, 5, "Europe/Paris");
    EXPECT_FALSE(contains(at(2014, 3, 30, 1, 59, 59) - winter));
    EXPECT_TRUE(contains(at(2014, 3, 30, 3, 0, 0) - summer));
    EXPECT_TRUE(contains(at(2014, 3, 30, 5, 0, 0) - summer));
    EXPECT_FALSE(contains(at(2014, 3, 30, 5, 0, 1) - summer));
}

TEST_F(ANightlyWindow, that_stops_in_the_skipped_hour_stops_as_the_clocks_go_forward) {
    lasts(22, 2, "Europe/Paris");
    EXPECT_TRUE(contains(at(2014, 3, 30, 1, 59, 59) - winter));
    EXPECT_TRUE(contains(at(2014, 3, 30, 3, 0, 0) - summer));
    EXPECT_FALSE(contains(at(2014, 3, 30, 3, 0, 1) - summer));
}

TEST_F(ANightlyWindow, that_starts_in_the_doubled_hour_starts_the_second_time) {
    lasts(2, 5, "Europe/Paris");
    EXPECT_FALSE(contains(at(2014, 10, 26, 2, 30, 0) - summer));
    EXPECT_TRUE(contains(at(2014, 10, 26, 2, 0, 0) - winter));
    EXPECT_TRUE(contains(at(2014, 10, 26, 5, 0, 0) - winter));
}

TEST_F(ANightlyWindow, that_stops_in_the_doubled_hour_stops_the_second_time) {
    lasts(22, 2, "Europe/Paris");
    EXPECT_TRUE(contains(at(2014, 10, 26, 2, 30, 0) - summer));
    EXPECT_TRUE(contains(at(2014, 10, 26, 2, 0, 0) - winter));
    EXPECT_FALSE(contains(at(2014, 10, 26, 2, 0, 1) - winter));
}

TEST_F(ANightlyWindow, that_starts_at_a_skipped_midnight_starts_as_the_day_does) {
    // São Paulo went from 00:00 to 01:00 on 19 October 2014.
    lasts(0, 6, "America/Sao_Paulo");
    EXPECT_FALSE(contains(at(2014, 10, 18, 23, 59, 59) + 3 * hour));
    EXPECT_TRUE(contains(at(2014, 10, 19, 1, 0, 0) + 2 * hour));
    EXPECT_TRUE(contains(at(2014, 10, 19, 6, 0, 0) + 2 * hour));
    EXPECT_FALSE(contains(at(2014, 10, 19, 6, 0, 1) + 2 * hour));
}

TEST_F(ANightlyWindow, with_a_stop_hour_of_tomorrow_follows_the_change_of_that_night) {
    lasts(21, 31, "Europe/Paris");
    calls.clear();
    EXPECT_TRUE(contains(at(2014, 3, 29, 23, 0, 0) - winter));
    EXPECT_THAT(calls.logged(),
                ElementsAre("Now=2014-03-29 22:00:00 +0000, StartDate=2014-03-29 20:00:00 +0000",
                            "Now=2014-03-29 22:00:00 +0000, StopDate=2014-03-30 05:00:00 +0000"));
}

/// Plays a night in the hand; readings are taken only inside the window.
class ALimitedNight : public ANight, private PhoneObserver {
protected:
    void play(double evening, double noon) {
        scenario.timezone = "Europe/Paris";
        scenario.start = {evening};
        scenario.end = {noon};
        settings.set("TimeLimit", true);
        scenario.settings = settings;
        SimulatedPhone inHand(scenario);
        inHand.observe(*this);
        inHand.launch();
        inHand.playToTheEnd();
        ASSERT_FALSE(readings.empty());
    }

    std::vector<double> readings; ///< When they began.

private:
    void called(const Call& call) override {
        if (call.operation == Operation::startAccelerometerUpdates)
            readings.push_back(call.at.secondsSince1970);
    }
    void happens(const Happening&) override {}
};

TEST_F(ALimitedNight, reads_for_nine_hours_when_the_clocks_go_forward) {
    const double start = at(2014, 3, 29, 21, 0, 0) - winter;
    play(start - hour, start + 15 * hour);
    EXPECT_THAT(readings.front(), AllOf(Gt(start), Le(start + 5)));
    EXPECT_THAT(readings.back(), AllOf(Gt(start + 9 * hour - 7), Le(start + 9 * hour)));
}

TEST_F(ALimitedNight, reads_for_eleven_hours_when_the_clocks_go_back) {
    const double start = at(2014, 10, 25, 21, 0, 0) - summer;
    play(start - hour, start + 15 * hour);
    EXPECT_THAT(readings.front(), AllOf(Gt(start), Le(start + 5)));
    EXPECT_THAT(readings.back(), AllOf(Gt(start + 11 * hour - 7), Le(start + 11 * hour)));
}

} // namespace
} // namespace noctara
