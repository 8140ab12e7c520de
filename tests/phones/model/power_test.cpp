/// The simulated phone's power: idle sleep, its messages, and the events that end it.
#include "phones/model/power_model.h"

#include "tests/a_night.h"

#include <nlohmann/json.hpp>

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The names of the message types.
const char* messageName(std::int64_t type) {
    switch (type) {
    case 0xE0000270:
        return "can sleep";
    case 0xE0000280:
        return "will sleep";
    case 0xE0000300:
        return "has powered on";
    default:
        return "other";
    }
}

const std::string wakeListPath =
    "/private/var/preferences/SystemConfiguration/com.apple.AutoWake.plist";

/// The system's list, with wake-ups by these identifiers at these times.
PropertyList wakeList(const std::vector<std::pair<const char*, double>>& wakes) {
    Array entries;
    for (const auto& [identifier, at] : wakes)
        entries.push_back(Dictionary{{"scheduledby", identifier}, {"time", Date{at}}});
    return Dictionary{{"wake", entries}};
}

/// A phone that goes to sleep after 60 idle seconds, and a listener that allows or refuses it.
/// SpringBoard is launched only by tests that need it.
class TheSimulatedPower : public ANight {
protected:
    TheSimulatedPower() {
        scenario.phone.idleSleep = 60;
        start = scenario.start.secondsSince1970;
        listeningTest = this;
    }

    void listen() {
        NotificationPortRef port = nullptr;
        connection = power().registerForSystemPower(answer, port);
        power().addSource(power().currentRunLoop(), port);
        calls.clear();
    }

    PowerModel& power() { return phone().power; }

    /// The messages sent so far: "SECONDS TYPE", from the start of the night on.
    std::vector<std::string> messages() {
        std::vector<std::string> found;
        for (const auto& line : calls.lines)
            if (const auto json = line.parsed(); json.value("event", "") == "power_message")
                found.push_back(std::to_string(static_cast<int>(line.at - start)) + ' ' +
                                messageName(json["args"]["type"]));
        return found;
    }

    void sleepAt60() {
        switchOn();
        playFor(100);
        ASSERT_TRUE(power().isAsleep());
        calls.clear();
    }

    static void answer(void*, std::uint32_t, std::uint32_t type, void* argument) {
        auto& test = *listeningTest;
        const auto notification = reinterpret_cast<std::intptr_t>(argument);
        test.heard.emplace_back(messageName(type));
        if (type == kIOMessageCanSystemSleep && test.refusals > 0) {
            --test.refusals;
            test.power().cancelPowerChange(test.connection, notification);
        } else if (type == kIOMessageCanSystemSleep && test.refusesTheMessageBefore) {
            test.power().cancelPowerChange(test.connection, notification - 1);
        } else if (type == kIOMessageSystemWillSleep && test.refusesWillSleep) {
            test.power().cancelPowerChange(test.connection, notification);
        } else if (type != kIOMessageSystemHasPoweredOn) {
            test.power().allowPowerChange(test.connection, notification);
        }
    }

    double start;
    PowerConnection connection = 0;
    int refusals = 0;
    bool refusesWillSleep = false;
    bool refusesTheMessageBefore = false;
    std::vector<std::string> heard;
    static inline TheSimulatedPower* listeningTest = nullptr;
};

TEST_F(TheSimulatedPower, asks_to_sleep_when_idle_and_once_allowed_sleeps) {
    switchOn();
    listen();
    playFor(59);
    EXPECT_THAT(messages(), IsEmpty());
    playFor(1000);
    EXPECT_TRUE(power().isAsleep());
    EXPECT_EQ(messages(), (std::vector<std::string>{"60 can sleep", "60 will sleep"}));
    EXPECT_THAT(heard, ElementsAre("can sleep", "will sleep"));
}

TEST_F(TheSimulatedPower, tells_of_each_message_before_its_answer_under_a_number_of_its_own) {
    switchOn();
    listen();
    refusals = 1;
    playFor(100);
    std::vector<std::string> texts;
    for (const auto& line : calls.lines)
        texts.push_back(line.text);
    EXPECT_THAT(texts, ElementsAre(R"(event power_message {"type":3758097008,"notification":1})",
                                   "IOCancelPowerChange [4099,1]",
                                   R"(event power_message {"type":3758097008,"notification":2})",
                                   "IOAllowPowerChange [4099,2]",
                                   R"(event power_message {"type":3758097024,"notification":3})",
                                   "IOAllowPowerChange [4099,3]"));
    for (const auto& line : calls.lines)
        EXPECT_EQ(line.thread, "main");
}

TEST_F(TheSimulatedPower, never_sleeps_without_an_idle_time) {
    scenario.phone.idleSleep = 0;
    switchOn();
    playFor(100000);
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(TheSimulatedPower, never_sleeps_on_the_charger_and_waits_anew_without_it) {
    scenario.phone.charger = true;
    switchOn();
    playFor(500);
    EXPECT_THAT(messages(), IsEmpty());
    phone().happens(ChargerChange{false});
    playFor(100);
    EXPECT_THAT(messages(), ElementsAre("560 can sleep", "560 will sleep"));
}

TEST_F(TheSimulatedPower, asks_again_ten_seconds_after_a_refusal) {
    switchOn();
    listen();
    refusals = 3;
    playFor(89);
    EXPECT_THAT(messages(), ElementsAre("60 can sleep", "70 can sleep", "80 can sleep"));
    EXPECT_FALSE(power().isAsleep());
    playFor(1);
    EXPECT_TRUE(power().isAsleep());
}

TEST_F(TheSimulatedPower, takes_no_refusal_once_sleep_is_certain) {
    switchOn();
    listen();
    refusesWillSleep = true;
    playFor(100);
    EXPECT_TRUE(power().isAsleep());
}

TEST_F(TheSimulatedPower, takes_a_refusal_only_for_the_message_it_belongs_to) {
    switchOn();
    listen();
    refusesTheMessageBefore = true;
    playFor(60);
    EXPECT_EQ(calls.count("IOCancelPowerChange"), 1U);
    EXPECT_TRUE(power().isAsleep());
}

TEST_F(TheSimulatedPower, sleeps_when_nobody_listens) {
    switchOn();
    playFor(60);
    EXPECT_TRUE(power().isAsleep());
    EXPECT_THAT(calls.calls(),
                ElementsAre(R"(event power_message {"type":3758097008,"notification":1})",
                            R"(event power_message {"type":3758097024,"notification":2})"));
}

TEST_F(TheSimulatedPower, sends_nothing_to_a_callback_until_a_run_loop_delivers_it) {
    switchOn();
    NotificationPortRef port = nullptr;
    EXPECT_NE(power().registerForSystemPower(answer, port), 0U);
    ASSERT_NE(port, nullptr);
    power().sendMessage(kIOMessageSystemHasPoweredOn);
    EXPECT_THAT(heard, IsEmpty());
    power().addSource(power().currentRunLoop(), port);
    power().sendMessage(kIOMessageSystemHasPoweredOn);
    EXPECT_THAT(heard, ElementsAre("has powered on"));
}

TEST_F(TheSimulatedPower, gives_no_connection_and_no_port_when_registration_fails) {
    switchOn();
    power().registrationFails = true;
    NotificationPortRef port = nullptr;
    EXPECT_EQ(power().registerForSystemPower(answer, port), 0U);
    EXPECT_EQ(port, nullptr);
    EXPECT_THAT(calls.calls(), ElementsAre("IORegisterForSystemPower -> 0"));
}

TEST_F(TheSimulatedPower, waits_anew_after_whatever_the_user_does) {
    const std::vector<Event> deeds{ButtonPress{},
                                   AirplaneModeSwitch{true},
                                   WifiSwitch{false},
                                   BluetoothSwitch{false},
                                   LocationSwitch{false},
                                   CellularDataSwitch{false},
                                   MaxRateChange{DataRate::kCTRegistrationDataRate2G},
                                   SettingsRemoval{{"Debug"}},
                                   CallChange{CallState::active},
                                   SettingsChange{{{"Debug", true}}},
                                   ChargerChange{false}};
    for (const auto& deed : deeds) {
        calls.clear();
        switchOn();
        playFor(50);
        phone().happens(deed);
        playFor(59);
        EXPECT_THAT(messages(), IsEmpty()) << nameOf(deed);
        playFor(1);
        EXPECT_THAT(messages(), ElementsAre("110 can sleep", "110 will sleep")) << nameOf(deed);
    }
}

TEST_F(TheSimulatedPower, does_not_take_a_move_for_the_users_attention) {
    switchOn();
    playFor(50);
    lies(InHand);
    playFor(20);
    EXPECT_THAT(messages(), ElementsAre("60 can sleep", "60 will sleep"));
}

TEST_F(TheSimulatedPower, does_not_take_a_device_that_connects_for_the_users_attention) {
    switchOn();
    playFor(50);
    phone().happens(BluetoothConnection{true});
    playFor(20);
    EXPECT_THAT(messages(), ElementsAre("60 can sleep", "60 will sleep"));
}

TEST_F(TheSimulatedPower, wakes_at_the_button_a_call_or_a_change_of_the_charger) {
    const std::vector<Event> reasons{ButtonPress{}, CallChange{CallState::incoming},
                                     ChargerChange{true}};
    for (const auto& reason : reasons) {
        sleepAt60();
        phone().happens(reason);
        EXPECT_FALSE(power().isAsleep()) << nameOf(reason);
        EXPECT_THAT(messages(), ElementsAre("100 has powered on")) << nameOf(reason);
        EXPECT_EQ(calls.lines.front().parsed()["event"], nameOf(reason));
    }
}

TEST_F(TheSimulatedPower, sleeps_on_through_everything_else) {
    const std::vector<Event> others{PostureChange{Moving},
                                    CallChange{CallState::none},
                                    SettingsChange{{{"Debug", true}}},
                                    WifiSwitch{false},
                                    DiskChange{DiskState::full},
                                    TelephonyServerChange{false},
                                    PowerMessage{kIOMessageSystemHasPoweredOn},
                                    MonitorStop{}};
    for (const auto& other : others) {
        sleepAt60();
        phone().happens(other);
        playFor(1000);
        EXPECT_TRUE(power().isAsleep()) << nameOf(other);
        EXPECT_THAT(messages(), IsEmpty()) << nameOf(other);
    }
}

TEST_F(TheSimulatedPower, waits_the_idle_time_again_after_waking) {
    sleepAt60();
    phone().happens(ButtonPress{});
    playFor(59);
    EXPECT_FALSE(power().isAsleep());
    playFor(1);
    EXPECT_TRUE(power().isAsleep());
    EXPECT_THAT(messages(), ElementsAre("100 has powered on", "160 can sleep", "160 will sleep"));
}

TEST_F(TheSimulatedPower, wakes_at_the_earliest_scheduled_wake_up_which_then_leaves_the_list) {
    scenario.wakes = {{"com.apple.alarm", {start + 700}}, {"other", {start + 300}}};
    sleepAt60();
    playFor(199);
    EXPECT_TRUE(power().isAsleep());
    playFor(1);
    EXPECT_FALSE(power().isAsleep());
    EXPECT_THAT(messages(), ElementsAre("300 has powered on"));
    ASSERT_EQ(power().scheduledWakes().size(), 1U);
    EXPECT_EQ(power().scheduledWakes()[0].scheduledBy, "com.apple.alarm");

    playFor(600);
    EXPECT_THAT(messages(), ElementsAre("300 has powered on", "360 can sleep", "360 will sleep",
                                        "700 has powered on", "760 can sleep", "760 will sleep"));
    EXPECT_THAT(power().scheduledWakes(), IsEmpty());
}

TEST_F(TheSimulatedPower, takes_a_wake_up_that_comes_while_awake_off_the_list) {
    scenario.wakes = {{"com.apple.alarm", {start + 30}}};
    switchOn();
    playFor(40);
    EXPECT_THAT(power().scheduledWakes(), IsEmpty());
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(TheSimulatedPower, is_not_woken_by_a_wake_up_taken_back) {
    scenario.wakes = {{"one", {start + 300}}, {"two", {start + 300}}, {"one", {start + 400}}};
    sleepAt60();
    power().cancel({start + 300}, "one");
    power().cancel({start + 300.5}, "two");
    EXPECT_EQ(power().scheduledWakes().size(), 2U);
    power().cancel({start + 300}, "two");
    playFor(250);
    EXPECT_TRUE(power().isAsleep());
    playFor(50);
    EXPECT_FALSE(power().isAsleep());
}

TEST_F(TheSimulatedPower, takes_a_wake_up_back_by_the_whole_seconds_that_a_file_keeps_of_it) {
    switchOn();
    power().schedule({start + 900.25}, "com.quorbit.Noctara");
    power().cancel({start + 901}, "com.quorbit.Noctara");
    EXPECT_EQ(power().scheduledWakes().size(), 1U);
    power().cancel({start + 900}, "com.quorbit.Noctara");
    EXPECT_THAT(power().scheduledWakes(), IsEmpty());
}

TEST_F(TheSimulatedPower, lists_its_wake_ups_in_the_systems_file) {
    scenario.wakes = {{"com.apple.alarm", {start + 700}}};
    switchOn();
    power().schedule({start + 900.25}, "com.quorbit.Noctara");
    EXPECT_EQ(
        phone().files.content(wakeListPath).value,
        wakeList({{"com.apple.alarm", start + 700}, {"com.quorbit.Noctara", start + 900.25}}));
}

TEST_F(TheSimulatedPower, leaves_a_list_as_it_is_while_it_is_held) {
    switchOn();
    Files& files = *phone().platform().files;
    std::string error;
    power().schedule({start + 900}, "com.quorbit.Noctara");
    const auto held = files.parse(wakeListPath, error);
    const PropertyList before = *held;
    power().cancel({start + 900}, "com.quorbit.Noctara");
    power().schedule({start + 906}, "com.quorbit.Noctara");
    EXPECT_EQ(*files.parse(wakeListPath, error), wakeList({{"com.quorbit.Noctara", start + 906}}));
    EXPECT_EQ(*held, before);
}

TEST_F(TheSimulatedPower, lists_each_change_of_its_wake_ups) {
    switchOn();
    Files& files = *phone().platform().files;
    std::string error;
    EXPECT_EQ(*files.parse(wakeListPath, error), wakeList({}));
    power().schedule({start + 900}, "a");
    power().schedule({start + 800}, "b");
    EXPECT_EQ(*files.parse(wakeListPath, error),
              wakeList({{"a", start + 900}, {"b", start + 800}}));
    power().cancel({start + 900}, "a");
    power().schedule({start + 950}, "a");
    EXPECT_EQ(*files.parse(wakeListPath, error),
              wakeList({{"b", start + 800}, {"a", start + 950}}));
    power().cancel({start + 800}, "b");
    EXPECT_EQ(*files.parse(wakeListPath, error), wakeList({{"a", start + 950}}));
}

TEST_F(TheSimulatedPower, replaces_what_is_in_a_stored_list) {
    switchOn();
    const Dictionary more{{"scheduledby", "a"}, {"time", 1}, {"more", 2}};
    for (const PropertyList& stored :
         {PropertyList(3), PropertyList(Array{more}), PropertyList(Array{more, 4}),
          PropertyList(Array{Dictionary{{"scheduledby", "a"}, {"other", 1}}})}) {
        phone().files.writeByOthers(wakeListPath, {{"kept", 1}, {"wake", stored}});
        power().cancel({start + 900}, "a");
        power().schedule({start + 900}, "a");
        auto expected = *wakeList({{"a", start + 900}}).as<Dictionary>();
        std::string error;
        EXPECT_EQ(*phone().platform().files->parse(wakeListPath, error),
                  PropertyList(Dictionary{{"kept", 1}, {"wake", *expected.find("wake")}}));
    }
}

TEST_F(TheSimulatedPower, wakes_by_the_wall_clock) {
    scenario.wakes = {{"com.apple.alarm", {start + 7300}}};
    sleepAt60();
    phone().happens(ClockChange{Date{start + 7200}});
    playFor(99);
    EXPECT_TRUE(power().isAsleep());
    playFor(1);
    EXPECT_FALSE(power().isAsleep());
    EXPECT_THAT(messages(), ElementsAre("7300 has powered on"));
}

TEST_F(TheSimulatedPower, waits_for_idle_sleep_by_a_clock_that_is_never_set) {
    switchOn();
    playFor(30);
    phone().happens(ClockChange{Date{start - 86400}});
    playFor(30);
    EXPECT_TRUE(power().isAsleep());
}

TEST_F(TheSimulatedPower, lets_no_thread_run_during_sleep) {
    begin();
    playFor(100);
    ASSERT_TRUE(power().isAsleep());
    calls.clear();
    playFor(5000);
    EXPECT_THAT(calls.lines, IsEmpty());
    EXPECT_EQ(phone().now().secondsSince1970, start + 5100);

    phone().happens(ButtonPress{});
    playFor(10);
    EXPECT_GT(calls.count("startAccelerometerUpdates"), 0U);
}

TEST_F(TheSimulatedPower, puts_off_the_main_threads_work_until_the_phone_wakes) {
    begin();
    playFor(100);
    ASSERT_TRUE(power().isAsleep());
    calls.clear();
    change({{"Debug", true}});
    phone().happens(PowerMessage{0xE0000240});
    phone().happens(MonitorStop{});
    EXPECT_FALSE(monitor()._DEBUG_);
    EXPECT_TRUE(monitor().running);
    EXPECT_THAT(calls.calls(), ElementsAre(R"(event settings {"Debug":true})", "event stop true"));

    phone().happens(ButtonPress{});
    EXPECT_TRUE(monitor()._DEBUG_);
    EXPECT_FALSE(monitor().running);
    EXPECT_THAT(messages(), ElementsAre("100 has powered on", "100 other"));
}

TEST_F(TheSimulatedPower, wakes_the_phone_before_telling_of_the_charger) {
    begin();
    playFor(100);
    calls.clear();
    phone().happens(ChargerChange{true});
    EXPECT_THAT(calls.calls(),
                ElementsAre("event charger true",
                            R"(event power_message {"type":3758097152,"notification":3})",
                            "isOnAC -> true"));
    EXPECT_TRUE(monitor().ACState);
    EXPECT_EQ(phone().process.powerChanges, 1);
}

TEST_F(TheSimulatedPower, sends_a_scenarios_message_without_going_to_sleep) {
    switchOn();
    listen();
    phone().happens(PowerMessage{kIOMessageSystemWillSleep});
    EXPECT_FALSE(power().isAsleep());
    EXPECT_THAT(heard, ElementsAre("will sleep"));
    EXPECT_EQ(calls.of({""}).size(), 1U);
}

} // namespace

} // namespace noctara
