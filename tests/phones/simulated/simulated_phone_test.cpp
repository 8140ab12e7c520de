/// The simulated phone's time and threads: the order of execution, and the end of a night.
#include "phones/simulated/simulated_phone.h"

#include "platform/calendar.h"
#include "platform/clock.h"
#include "platform/threads.h"
#include "tests/a_night.h"

namespace noctara {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Gt;
using testing::IsEmpty;

class TheSimulatedPhone : public ANight {
protected:
    TheSimulatedPhone() : start(scenario.start.secondsSince1970) {}

    /// A phone on which `body` runs as the only thread.
    void run(std::function<void()> body) {
        switchOn();
        thread = phone().platform().threads->start("a thread", std::move(body));
    }

    Clock& clock() { return *phone().platform().clock; }

    void at(double seconds, Event event) {
        scenario.events.push_back({{start + seconds}, std::move(event)});
    }

    /// The record so far: "SECONDS THREAD TEXT".
    std::vector<std::string> story() {
        std::vector<std::string> found;
        for (const auto& line : calls.lines)
            found.push_back(std::to_string(static_cast<int>(line.at - start)) + ' ' + line.thread +
                            ' ' + line.text);
        return found;
    }

    std::vector<std::string> wholeNight() {
        std::vector<std::string> found;
        for (const auto& line : calls.lines)
            found.push_back(line.json);
        return found;
    }

    /// A night with many kinds of events.
    void arrangeABusyNight() {
        scenario.end.secondsSince1970 = start + 6000;
        scenario.phone.idleSleep = 120;
        settings.set("ActiveOnSleep", true);
        settings.set("launch-app-com.apple.mobiletimer", true);
        scenario.applications = {{"com.apple.mobiletimer", "Clock"}, {"com.example.a", "A"}};
        at(100, ButtonPress{});
        at(300, PostureChange{ScreenDown});
        at(900, SettingsChange{{{"Debug", true}, {"Sensitivity", 3}}});
        at(1500, ChargerChange{true});
        at(1700, ChargerChange{false});
        at(2500, CallChange{CallState::incoming});
        at(2530, CallChange{CallState::none});
        at(3500, ClockChange{Date{start + 5000}});
        at(4800, ButtonPress{});
        at(4801, PostureChange{InHand});
    }

    double start;
    std::unique_ptr<Thread> thread;
};

TEST_F(TheSimulatedPhone, starts_a_thread_by_name_that_first_runs_when_played) {
    bool ran = false;
    run([&] { ran = true; });
    EXPECT_THAT(story(), ElementsAre("0 main NSThread start [\"a thread\"]"));
    EXPECT_FALSE(ran);
    playFor(1);
    EXPECT_TRUE(ran);
}

TEST_F(TheSimulatedPhone, takes_time_for_sleep_alone) {
    std::vector<double> times;
    run([&] {
        for (const unsigned seconds : {0U, 1U, 100U}) {
            clock().sleep(seconds);
            times.push_back(clock().now().secondsSince1970 - start);
            times.push_back(static_cast<double>(clock().time()) - start);
        }
    });
    playFor(1000);
    EXPECT_THAT(times, ElementsAre(0, 0, 1, 1, 101, 101));
    EXPECT_EQ(calls.of({"sleep"}),
              (std::vector<std::string>{"sleep [0]", "sleep [1]", "sleep [100]"}));
    EXPECT_EQ(phone().now().secondsSince1970, start + 1000);
}

TEST_F(TheSimulatedPhone, tells_whole_seconds_and_the_instant_with_its_fraction) {
    switchOn();
    playFor(2.75);
    EXPECT_EQ(clock().time(), static_cast<std::int64_t>(start) + 2);
    EXPECT_EQ(clock().now().secondsSince1970, start + 2.75);
}

TEST_F(TheSimulatedPhone, runs_what_is_due_up_to_the_wake_up_first_the_last_instant_included) {
    at(3, PostureChange{Moving});
    at(10, ButtonPress{});
    at(10, WifiSwitch{false});
    at(10.5, WifiSwitch{true});
    run([&] {
        clock().sleep(10);
        clock().sleep(1);
    });
    playFor(20);
    EXPECT_THAT(story(), ElementsAre("0 main NSThread start [\"a thread\"]", "0 monitor sleep [10]",
                                     "3 main event posture \"moving\"", "10 main event button true",
                                     "10 main event wifi false", "10 monitor sleep [1]",
                                     "10 main event wifi true"));
}

TEST_F(TheSimulatedPhone, runs_an_events_work_on_the_main_thread_in_the_middle_of_a_sleep) {
    begin();
    playReadings(1);
    calls.clear();
    change({{"Debug", true}});
    for (const auto& line : calls.lines)
        EXPECT_EQ(line.thread, "main");
    EXPECT_EQ(calls.count("initWithContentsOfFile:"), 1U);
    playReadings(1);
    EXPECT_EQ(calls.lines.back().thread, "monitor");
}

TEST_F(TheSimulatedPhone, hops_to_the_main_thread_and_back_without_taking_time) {
    auto& threads = (switchOn(), *phone().platform().threads);
    EXPECT_TRUE(threads.isMainThread());
    std::vector<bool> onMain;
    thread = threads.start("a thread", [&] {
        onMain.push_back(threads.isMainThread());
        threads.performOnMainThread("work", [&] {
            onMain.push_back(threads.isMainThread());
            threads.performOnMainThread("more", [&] { onMain.push_back(threads.isMainThread()); });
        });
        onMain.push_back(threads.isMainThread());
    });
    playFor(1);
    EXPECT_THAT(onMain, ElementsAre(false, true, true, false));
    EXPECT_TRUE(threads.isMainThread());
    const std::string hop = "performSelectorOnMainThread:withObject:waitUntilDone: ";
    EXPECT_THAT(story(),
                ElementsAre("0 main NSThread start [\"a thread\"]",
                            "0 monitor " + hop + "[\"work\"]", "0 main " + hop + "[\"more\"]"));
}

TEST_F(TheSimulatedPhone, stops_just_before_the_monitors_work_at_an_instant) {
    at(10, ButtonPress{});
    bool woke = false;
    run([&] {
        clock().sleep(10);
        woke = true;
    });
    playFor(10);
    EXPECT_FALSE(woke);
    EXPECT_EQ(calls.lines.back().text, "event button true");
    playFor(0.5);
    EXPECT_TRUE(woke);
}

TEST_F(TheSimulatedPhone, plays_until_the_wanted_number_of_readings) {
    begin();
    for (const int count : {1, 3, 2}) {
        calls.clear();
        playReadings(count);
        EXPECT_EQ(calls.count("stopAccelerometerUpdates"), static_cast<std::size_t>(count));
        EXPECT_EQ(calls.count("startAccelerometerUpdates"), static_cast<std::size_t>(count));
    }
}

TEST_F(TheSimulatedPhone, plays_the_same_night_every_time) {
    arrangeABusyNight();
    std::vector<std::vector<std::string>> nights;
    for (int i = 0; i < 2; ++i) {
        calls.clear();
        begin();
        phone().playToTheEnd();
        nights.push_back(wholeNight());
    }
    EXPECT_THAT(nights[0].size(), Gt(1000U));
    EXPECT_EQ(nights[0], nights[1]);
}

TEST_F(TheSimulatedPhone, plays_the_same_night_in_one_go_and_in_pieces) {
    arrangeABusyNight();
    begin();
    phone().playToTheEnd();
    const auto inOneGo = wholeNight();

    calls.clear();
    begin();
    for (const double piece : {0.25, 17.0, 282.75, 1.0, 600.0, 700.0, 10.0})
        playFor(piece);
    playReadings(7);
    for (int i = 0; i < 100; ++i)
        playFor(33.3);
    phone().playToTheEnd();
    EXPECT_EQ(wholeNight(), inOneGo);
}

TEST_F(TheSimulatedPhone, ends_the_monitor_thread_wherever_it_waits_at_the_end_of_the_night) {
    scenario.end.secondsSince1970 = start + 60;
    at(60, ButtonPress{});
    at(60.5, WifiSwitch{false});
    begin();
    phone().playToTheEnd();
    EXPECT_EQ(phone().now().secondsSince1970, start + 60);
    EXPECT_EQ(calls.lines.back().text, "event button true");
    EXPECT_EQ(calls.count("AudioServicesDisposeSystemSoundID"), 0U);
    EXPECT_TRUE(monitor().running);

    const auto callsBefore = calls.lines.size();
    phone().playToTheEnd();
    EXPECT_EQ(calls.lines.size(), callsBefore);
}

TEST_F(TheSimulatedPhone, unwinds_what_its_thread_holds_when_it_ends) {
    struct Held {
        int& count;
        ~Held() { ++count; }
    };
    int released = 0;
    run([&] {
        const Held held{released};
        clock().sleep(1000000000);
        released = 100;
    });
    playFor(5);
    EXPECT_EQ(released, 0);
    phone().playToTheEnd();
    EXPECT_EQ(released, 1);
}

TEST_F(TheSimulatedPhone, never_runs_a_thread_that_was_not_played) {
    bool ran = false;
    run([&] { ran = true; });
    switchOn();
    EXPECT_FALSE(ran);
}

TEST_F(TheSimulatedPhone, lets_a_stopped_monitor_finish_by_itself) {
    at(100, MonitorStop{});
    begin();
    playFor(99);
    EXPECT_EQ(calls.count("AudioServicesDisposeSystemSoundID"), 0U);
    playFor(30);
    EXPECT_THAT(calls.of({"AudioServicesDisposeSystemSoundID"}),
                ElementsAre("AudioServicesDisposeSystemSoundID [1]",
                            "AudioServicesDisposeSystemSoundID [2]"));
    EXPECT_THAT(story(), Contains("100 main event stop true"));
    calls.clear();
    phone().playToTheEnd();
    EXPECT_THAT(calls.lines, IsEmpty());
}

TEST_F(TheSimulatedPhone, is_stopped_in_vain_before_there_is_a_monitor) {
    switchOn();
    phone().happens(MonitorStop{});
    launch();
    playReadings(1);
    EXPECT_EQ(calls.count("stopAccelerometerUpdates"), 1U);
}

TEST_F(TheSimulatedPhone, lets_only_the_wall_clock_jump) {
    at(10, ClockChange{Date{start + 5000.5}});
    at(20, ClockChange{Date{start - 5000}});
    at(30, ButtonPress{});
    std::vector<double> times;
    run([&] {
        for (int i = 0; i < 4; ++i) {
            times.push_back(clock().now().secondsSince1970 - start);
            clock().sleep(10);
        }
    });
    playFor(100);
    EXPECT_THAT(times, ElementsAre(0, 5000.5, -5000, -4990));
    EXPECT_THAT(story(), Contains("-4990 main event button true"));
}

TEST_F(TheSimulatedPhone, tells_of_a_jump_of_the_clock_by_the_time_before_it) {
    switchOn();
    playFor(7);
    phone().happens(ClockChange{Date{start + 100}});
    phone().happens(ButtonPress{});
    EXPECT_THAT(story(), ElementsAre("7 main event clock {\"date\":1393713100}",
                                     "100 main event button true"));
}

TEST_F(TheSimulatedPhone, makes_a_monitor_wait_longer_for_a_clock_set_back) {
    begin();
    playReadings(1);
    phone().happens(ClockChange{Date{phone().now().secondsSince1970 - 3600}});
    calls.clear();
    playFor(3500);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0U);
    playFor(200);
    EXPECT_THAT(calls.count("startAccelerometerUpdates"), Gt(10U));
}

TEST_F(TheSimulatedPhone, has_a_calendar_of_its_time_zone) {
    scenario.timezone = "Europe/Paris";
    switchOn();
    auto& calendar = *phone().platform().calendar;
    const auto parts = calendar.components({ANight::at(2014, 3, 30, 1, 30, 0)});
    EXPECT_EQ(parts.hour, 3);
    EXPECT_EQ(parts.day, 30);
    EXPECT_EQ(calendar.date({2014, 3, 29, 27, 0, 0}).secondsSince1970,
              ANight::at(2014, 3, 30, 1, 0, 0));
    EXPECT_THAT(calls.lines, IsEmpty());
}

TEST_F(TheSimulatedPhone, notices_a_thread_that_goes_round_without_waiting) {
    run([&] {
        while (clock().time() > 0) {
        }
    });
    EXPECT_THROW(playFor(1), MonitorSpins);
    EXPECT_TRUE(phone().platform().threads->isMainThread());
    playFor(1);
    EXPECT_EQ(phone().now().secondsSince1970, start + 1);
}

TEST_F(TheSimulatedPhone, lets_a_thread_look_at_the_clock_for_ever_as_long_as_it_waits) {
    long looks = 0;
    run([&] {
        while (clock().time() > 0) {
            ++looks;
            clock().sleep(1);
        }
    });
    playFor(10500);
    EXPECT_EQ(looks, 10500);
}

TEST_F(TheSimulatedPhone, is_the_processs_platform_for_as_long_as_it_lives) {
    begin();
    playReadings(1);
    EXPECT_EQ(processPlatform, &phone().platform());
    EXPECT_NE(NoctaraInstance, nullptr);
    EXPECT_NE(root_port, 0U);

    switchOn();
    EXPECT_EQ(processPlatform, &phone().platform());
    EXPECT_EQ(NoctaraInstance, nullptr);
    EXPECT_EQ(root_port, 0U);
    EXPECT_EQ(settingsNotificationToken, 0);
}

} // namespace

} // namespace noctara
