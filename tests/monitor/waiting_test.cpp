/// The monitor's waits: by whole seconds of the wall clock, one second at a time.
#include "tests/a_night.h"

namespace noctara {

namespace {

using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;

class Waiting : public AMonitor {
protected:
    void waitFor(std::int32_t seconds) {
        if (!own)
            make();
        calls.clear();
        const double from = phone().clock.monotonic;
        phone().asMonitorThread([&] { own->sleep(seconds); });
        waited = phone().clock.monotonic - from;
    }

    void setClockAfter(double seconds, double wallClockRead) {
        const double start = scenario.start.secondsSince1970;
        scenario.events.push_back({{start + seconds}, ClockChange{{start + wallClockRead}}});
    }

    double waited = 0;
};

TEST_F(Waiting, no_seconds_returns_at_once_and_still_forgets_the_event) {
    make().eventOccurred = true;
    waitFor(0);
    EXPECT_EQ(waited, 0);
    EXPECT_THAT(calls.calls(), IsEmpty());
    EXPECT_FALSE(own->eventOccurred);
}

/// A clock that is set back by a second after its first reading.
class ClockSetBack final : public Clock {
public:
    std::int64_t time() override { return ++readings == 1 ? seconds + 1 : seconds; }
    Date now() override { return {static_cast<double>(seconds)}; }
    void sleep(unsigned slept) override {
        ++sleeps;
        seconds += slept;
    }

    std::int64_t seconds = 1393713000;
    int readings = 0;
    int sleeps = 0;
};

TEST_F(Waiting, no_seconds_returns_at_once_even_if_the_clock_is_set_back_meanwhile) {
    ClockSetBack clock;
    switchOn();
    Platform altered = phone().platform();
    altered.clock = &clock;
    own = std::make_unique<NoctaraThread>(altered);
    own->eventOccurred = true;
    own->sleep(0);
    EXPECT_EQ(clock.sleeps, 0);
    EXPECT_FALSE(own->eventOccurred);

    clock.readings = 0;
    own->sleep(2);
    EXPECT_EQ(clock.sleeps, 3);
    EXPECT_EQ(clock.readings, 5) << "one at the start, and one before and after each pause";
}

TEST_F(Waiting, three_seconds_takes_three_pauses_of_a_second) {
    make().eventOccurred = true;
    waitFor(3);
    EXPECT_EQ(waited, 3);
    EXPECT_THAT(calls.calls(), testing::AllOf(SizeIs(3), Each("sleep [1]")));
    EXPECT_FALSE(own->eventOccurred);
}

TEST_F(Waiting, counts_whole_seconds_whatever_the_fraction_at_its_start) {
    scenario.start.secondsSince1970 += 0.75;
    waitFor(2);
    EXPECT_EQ(waited, 2);
}

TEST_F(Waiting, is_shortened_by_a_clock_that_is_set_forward) {
    setClockAfter(2.5, 3600);
    waitFor(60);
    EXPECT_EQ(waited, 3) << "checked after the pause in which the clock was set";
    EXPECT_EQ(calls.count("sleep"), 3U);
}

TEST_F(Waiting, ends_as_soon_as_the_clock_reads_enough_even_if_the_pauses_were_fewer) {
    setClockAfter(0.5, 2.5);
    waitFor(3);
    EXPECT_EQ(waited, 1);
}

TEST_F(Waiting, is_lengthened_by_a_clock_that_is_set_back) {
    setClockAfter(5.5, 2.5);
    waitFor(10);
    EXPECT_EQ(waited, 13);
    EXPECT_EQ(calls.count("sleep"), 13U);
}

TEST_F(Waiting, is_not_cut_short_by_the_charger_or_by_settings) {
    settings.set("ScanInterval", 2);
    begin();
    playFor(3); // the first reading was done at second 1, and the wait lasts until second 11
    phone().happens(ChargerChange{true});
    change({{"ScanInterval", 0}});
    calls.clear();
    playFor(7.9);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0U);
    playFor(0.2);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 1U);
}

TEST_F(Waiting, keeps_the_event_until_it_ends) {
    begin();
    playFor(2.5);
    phone().happens(ChargerChange{true});
    EXPECT_TRUE(monitor().eventOccurred);
    playFor(3);
    EXPECT_TRUE(monitor().eventOccurred) << "the wait until second 6 is still under way";
    playFor(1);
    EXPECT_FALSE(monitor().eventOccurred);
}

TEST_F(Waiting, a_negative_number_of_seconds_is_a_very_long_wait_and_none_at_all_never) {
    begin();
    playReadings(2);
    change({{"ScanInterval", -1}});
    playReadings(1);
    ASSERT_EQ(monitor().sleepTime, -5);
    const int before = phone().motion.readings;
    playFor(3600);
    EXPECT_EQ(phone().motion.readings, before);
}

} // namespace

} // namespace noctara
