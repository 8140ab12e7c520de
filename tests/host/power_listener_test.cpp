/// The answers to the system's power messages.
#include "tests/a_night.h"

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t systemWillPowerOn = 0xE0000320;
constexpr std::uint32_t systemWillNotSleep = 0xE0000290;

const std::vector<std::string> answers{"IOAllowPowerChange", "IOCancelPowerChange"};

class ThePowerListener : public ANight {
protected:
    /// A monitor that has loaded its settings, with an empty record.
    void beginQuietly(bool debug = false) {
        settings.set("Debug", debug);
        begin();
        playReadings(1);
        calls.clear();
    }

    void hear(std::uint32_t message) { phone().happens(PowerMessage{message}); }

    static void hear(std::uint32_t message, std::intptr_t notification) {
        MySleepCallBack(nullptr, 0, message, reinterpret_cast<void*>(notification));
    }

    std::vector<std::string> answersAndLog() {
        return calls.of({"IOAllowPowerChange", "IOCancelPowerChange", "NSLog"});
    }
};

TEST_F(ThePowerListener, is_registered_at_the_launch_on_the_main_run_loop) {
    begin();
    EXPECT_THAT(calls.of({"IORegisterForSystemPower", "CFRunLoopAddSource"}),
                ElementsAre("IORegisterForSystemPower -> 4099",
                            "CFRunLoopAddSource [\"kCFRunLoopCommonModes\"]"));
    EXPECT_TRUE(calls.hasLogged("Noctara IORegisterForSystemPower done"));
    EXPECT_EQ(root_port, 4099U);
    EXPECT_EQ(registeredRunLoop, phone().power.currentRunLoop());
}

TEST_F(ThePowerListener, is_not_registered_before_the_launch) {
    switchOn();
    NoctaraInitialize();
    EXPECT_EQ(calls.count("IORegisterForSystemPower"), 0U);
    EXPECT_EQ(root_port, 0U);
    EXPECT_EQ(registeredRunLoop, nullptr);
}

TEST_F(ThePowerListener, is_not_registered_a_second_time) {
    beginQuietly(true);
    registerPowerListener();
    EXPECT_THAT(calls.calls(), IsEmpty());
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara already registered to power events!"));
    EXPECT_EQ(root_port, 4099U);
}

TEST_F(ThePowerListener, is_silently_not_registered_a_second_time_with_debug_off) {
    beginQuietly();
    registerPowerListener();
    EXPECT_THAT(calls.lines, IsEmpty());
}

TEST_F(ThePowerListener, registers_silently_with_debug_off) {
    beginQuietly();
    root_port = 0;
    registerPowerListener();
    EXPECT_EQ(root_port, 4099U);
    EXPECT_EQ(calls.count("CFRunLoopAddSource"), 1U);
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(ThePowerListener, registers_silently_before_there_is_a_monitor) {
    switchOn();
    registerPowerListener();
    EXPECT_THAT(calls.of({"IORegisterForSystemPower", "CFRunLoopAddSource", "NSLog"}),
                ElementsAre("IORegisterForSystemPower -> 4099",
                            "CFRunLoopAddSource [\"kCFRunLoopCommonModes\"]"));
}

TEST_F(ThePowerListener, only_logs_that_the_registration_has_failed) {
    switchOn();
    phone().power.registrationFails = true;
    launch();
    EXPECT_THAT(calls.of({"IORegisterForSystemPower", "CFRunLoopAddSource", "NSThread start"}),
                ElementsAre("IORegisterForSystemPower -> 0", "NSThread start [\"NoctaraThread\"]"));
    EXPECT_TRUE(calls.hasLogged("Noctara IORegisterForSystemPower failed"));
    EXPECT_FALSE(calls.hasLogged("Noctara IORegisterForSystemPower done"));
    EXPECT_EQ(root_port, 0U);
    EXPECT_EQ(registeredRunLoop, phone().power.currentRunLoop());
}

TEST_F(ThePowerListener, says_nothing_of_a_failed_registration_with_debug_off) {
    beginQuietly();
    root_port = 0;
    phone().power.registrationFails = true;
    registerPowerListener();
    EXPECT_THAT(calls.of({"IORegisterForSystemPower", "CFRunLoopAddSource", "NSLog"}),
                ElementsAre("IORegisterForSystemPower -> 0"));
}

TEST_F(ThePowerListener, can_be_registered_after_a_failure) {
    switchOn();
    phone().power.registrationFails = true;
    launch();
    phone().power.registrationFails = false;
    calls.clear();
    registerPowerListener();
    EXPECT_EQ(root_port, 4099U);
    EXPECT_THAT(calls.calls(), ElementsAre("IORegisterForSystemPower -> 4099",
                                           "CFRunLoopAddSource [\"kCFRunLoopCommonModes\"]"));
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara IORegisterForSystemPower done"));
}

TEST_F(ThePowerListener, allows_idle_sleep_without_a_countdown) {
    beginQuietly();
    hear(kIOMessageCanSystemSleep);
    EXPECT_THAT(calls.calls(),
                ElementsAre("event power_message {\"type\":3758097008,\"notification\":1}",
                            "IOAllowPowerChange [4099,1]"));
    EXPECT_EQ(calls.lines.back().thread, "main");
}

TEST_F(ThePowerListener, refuses_idle_sleep_during_a_countdown) {
    beginQuietly();
    lies(ScreenDown);
    playReadings(1);
    ASSERT_TRUE(monitor().switchingToAirplane);
    hear(kIOMessageCanSystemSleep);
    EXPECT_THAT(calls.of(answers), ElementsAre("IOCancelPowerChange [4099,1]"));
    EXPECT_EQ(calls.lines.back().thread, "main");
}

TEST_F(ThePowerListener, allows_idle_sleep_during_a_countdown_without_sounds) {
    settings.set("PlaySound", false);
    beginQuietly();
    lies(ScreenDown);
    playReadings(2);
    hear(kIOMessageCanSystemSleep);
    EXPECT_THAT(calls.of(answers), ElementsAre("IOAllowPowerChange [4099,1]"));
}

TEST_F(ThePowerListener, refuses_idle_sleep_after_an_abandoned_countdown_too) {
    beginQuietly();
    lies(ScreenDown);
    playReadings(2);
    lies(InHand);
    playReadings(3);
    hear(kIOMessageCanSystemSleep);
    EXPECT_THAT(calls.of(answers), ElementsAre("IOCancelPowerChange [4099,1]"));
}

TEST_F(ThePowerListener, allows_idle_sleep_again_in_the_sleep_state) {
    beginQuietly();
    fallAsleep();
    hear(kIOMessageCanSystemSleep);
    EXPECT_THAT(calls.of(answers), ElementsAre("IOAllowPowerChange [4099,1]"));
}

TEST_F(ThePowerListener, allows_a_forced_sleep_without_a_countdown) {
    beginQuietly();
    hear(kIOMessageSystemWillSleep);
    EXPECT_THAT(calls.of(answers), ElementsAre("IOAllowPowerChange [4099,1]"));
}

TEST_F(ThePowerListener, allows_a_forced_sleep_even_during_a_countdown) {
    beginQuietly();
    lies(ScreenDown);
    playReadings(1);
    ASSERT_TRUE(monitor().switchingToAirplane);
    hear(kIOMessageSystemWillSleep);
    EXPECT_THAT(calls.of(answers), ElementsAre("IOAllowPowerChange [4099,1]"));
}

TEST_F(ThePowerListener, allows_a_forced_sleep_in_the_sleep_state) {
    beginQuietly();
    fallAsleep();
    hear(kIOMessageSystemWillSleep);
    EXPECT_THAT(calls.of(answers), ElementsAre("IOAllowPowerChange [4099,1]"));
}

TEST_F(ThePowerListener, gives_other_messages_no_answer) {
    beginQuietly();
    monitor().switchingToAirplane = true;
    for (const auto message :
         {systemWillPowerOn, kIOMessageSystemHasPoweredOn, systemWillNotSleep, 0U})
        hear(message, 1);
    EXPECT_THAT(calls.lines, IsEmpty());
}

TEST_F(ThePowerListener, answers_the_very_notification_ignoring_refcon_and_service) {
    beginQuietly();
    int refcon = 0;
    MySleepCallBack(&refcon, 77, kIOMessageCanSystemSleep, reinterpret_cast<void*>(0x51234));
    MySleepCallBack(&refcon, 78, kIOMessageSystemWillSleep, reinterpret_cast<void*>(0x51235));
    monitor().switchingToAirplane = true;
    MySleepCallBack(&refcon, 79, kIOMessageCanSystemSleep, reinterpret_cast<void*>(0x51236));
    EXPECT_THAT(calls.calls(),
                ElementsAre("IOAllowPowerChange [4099,332340]", "IOAllowPowerChange [4099,332341]",
                            "IOCancelPowerChange [4099,332342]"));
}

TEST_F(ThePowerListener, logs_each_message_before_its_answer) {
    const bool is64Bit = sizeof(std::intptr_t) == 8;
    beginQuietly(true);
    hear(kIOMessageCanSystemSleep, 0x2a);
    hear(kIOMessageSystemWillSleep, 0x7fabcdef);
    hear(kIOMessageSystemHasPoweredOn, 0);
    hear(1, static_cast<std::intptr_t>(0x123456789));
    EXPECT_THAT(answersAndLog(),
                ElementsAre("NSLog [\"Noctara messageType e0000270, arg 0000002a\"]",
                            "IOAllowPowerChange [4099,42]",
                            "NSLog [\"Noctara messageType e0000280, arg 7fabcdef\"]",
                            "IOAllowPowerChange [4099,2141965807]",
                            "NSLog [\"Noctara messageType e0000300, arg 00000000\"]",
                            is64Bit ? "NSLog [\"Noctara messageType 00000001, arg 123456789\"]"
                                    : "NSLog [\"Noctara messageType 00000001, arg 23456789\"]"));
}

TEST_F(ThePowerListener, logs_a_refusal_before_it_refuses) {
    beginQuietly(true);
    monitor().switchingToAirplane = true;
    hear(kIOMessageCanSystemSleep, 5);
    EXPECT_THAT(
        answersAndLog(),
        ElementsAre("NSLog [\"Noctara messageType e0000270, arg 00000005\"]",
                    "NSLog [\"Noctara canceling power change while waiting for airplaine\"]",
                    "IOCancelPowerChange [4099,5]"));
}

TEST_F(ThePowerListener, refuses_silently_with_debug_off) {
    beginQuietly();
    monitor().switchingToAirplane = true;
    hear(kIOMessageCanSystemSleep, 5);
    EXPECT_THAT(answersAndLog(), ElementsAre("IOCancelPowerChange [4099,5]"));
}

TEST_F(ThePowerListener, allows_every_sleep_while_there_is_no_monitor) {
    switchOn();
    registerPowerListener();
    calls.clear();
    hear(kIOMessageCanSystemSleep, 1);
    hear(kIOMessageSystemWillSleep, 2);
    EXPECT_THAT(answersAndLog(),
                ElementsAre("IOAllowPowerChange [4099,1]", "IOAllowPowerChange [4099,2]"));
}

TEST_F(ThePowerListener, keeps_the_phone_awake_through_a_countdown_and_no_longer) {
    scenario.phone.idleSleep = 8;
    begin();
    playFor(6.5);
    lies(ScreenDown);
    playFor(5);
    // Asked at second 8, between the first reading of the countdown and the third.
    EXPECT_THAT(calls.of(answers), ElementsAre("IOCancelPowerChange [4099,1]"));
    EXPECT_TRUE(phone().radios.states().airplane);
    playFor(60);
    EXPECT_THAT(calls.of(answers),
                ElementsAre("IOCancelPowerChange [4099,1]", "IOAllowPowerChange [4099,2]",
                            "IOAllowPowerChange [4099,3]"));
    EXPECT_TRUE(phone().power.isAsleep());
}

} // namespace

} // namespace noctara
