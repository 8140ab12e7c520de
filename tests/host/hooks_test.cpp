/// What the library does when it is loaded into SpringBoard, and that it does nothing elsewhere.
#include "tests/a_night.h"

#include <new>

namespace {

bool memoryIsShort = false;

} // namespace

/// Only the monitor is created with this operator. It can be made to fail.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (memoryIsShort)
        return nullptr;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> hooking{"bundleIdentifier", "objc_getClass", "MSHookMessageEx"};

class TheHooks : public ANight {
protected:
    TheHooks() { current = this; }

    /// An original method of SpringBoard that records its calls.
    static void ownDidFinishLaunching(ObjectRef self, SelectorRef selector, ObjectRef argument) {
        current->seen = {self, selector, argument};
        current->callsAtOwn = current->calls.lines.size();
        current->monitorAtOwn = NoctaraInstance != nullptr;
    }
    static void ownACPowerChanged(ObjectRef self, SelectorRef selector) {
        current->seen = {self, selector};
        current->callsAtOwn = current->calls.lines.size();
    }

    ObjectRef controller() { return static_cast<Charger*>(&phone().power); }

    std::vector<const void*> seen;
    std::size_t callsAtOwn = 0;
    bool monitorAtOwn = false;
    static TheHooks* current;
};

TheHooks* TheHooks::current = nullptr;

TEST_F(TheHooks, are_not_installed_in_another_process) {
    for (const char* bundle : {"com.apple.mobilesafari", "com.apple.springboard2",
                               "com.apple.springboar", "com.apple.SpringBoard", ""}) {
        scenario.phone.bundle = bundle;
        calls.clear();
        switchOn();
        launch();
        EXPECT_THAT(calls.of({"NSLog"}), IsEmpty()) << bundle;
        EXPECT_THAT(calls.calls(),
                    ElementsAre(std::string("bundleIdentifier -> \"") + bundle + '"'));
        EXPECT_EQ(phone().process.launches, 1);
        EXPECT_EQ(NoctaraInstance, nullptr);
        EXPECT_EQ(orig_SpringBoard_applicationDidFinishLaunching, nullptr);
        EXPECT_EQ(orig_SBUIController_ACPowerChanged, nullptr);
    }
}

TEST_F(TheHooks, are_installed_in_springboard_first_the_launch_then_the_charger) {
    switchOn();
    NoctaraInitialize();
    EXPECT_THAT(calls.of({"NSLog"}), IsEmpty());
    EXPECT_THAT(calls.calls(),
                ElementsAre("bundleIdentifier -> \"com.apple.springboard\"",
                            "objc_getClass [\"SpringBoard\"] -> true",
                            "MSHookMessageEx [\"SpringBoard\",\"applicationDidFinishLaunching:\"]",
                            "objc_getClass [\"SBUIController\"] -> true",
                            "MSHookMessageEx [\"SBUIController\",\"ACPowerChanged\"]"));
    EXPECT_NE(orig_SpringBoard_applicationDidFinishLaunching, nullptr);
    EXPECT_NE(orig_SBUIController_ACPowerChanged, nullptr);
    EXPECT_EQ(NoctaraInstance, nullptr);
}

TEST_F(TheHooks, hand_a_missing_springboard_class_on_as_it_is) {
    switchOn();
    phone().process.removeClass("SpringBoard");
    launch();
    EXPECT_THAT(calls.of(hooking),
                ElementsAre("bundleIdentifier -> \"com.apple.springboard\"",
                            "objc_getClass [\"SpringBoard\"] -> false",
                            "MSHookMessageEx [null,\"applicationDidFinishLaunching:\"]",
                            "objc_getClass [\"SBUIController\"] -> true",
                            "MSHookMessageEx [\"SBUIController\",\"ACPowerChanged\"]"));
    EXPECT_EQ(orig_SpringBoard_applicationDidFinishLaunching, nullptr);
    EXPECT_NE(orig_SBUIController_ACPowerChanged, nullptr);
    EXPECT_EQ(NoctaraInstance, nullptr);
}

TEST_F(TheHooks, hand_a_missing_charger_class_on_as_it_is) {
    switchOn();
    phone().process.removeClass("SBUIController");
    NoctaraInitialize();
    EXPECT_THAT(calls.of({"MSHookMessageEx"}),
                ElementsAre("MSHookMessageEx [\"SpringBoard\",\"applicationDidFinishLaunching:\"]",
                            "MSHookMessageEx [null,\"ACPowerChanged\"]"));
    phone().process.applicationDidFinishLaunching();
    EXPECT_NE(NoctaraInstance, nullptr);
}

#pragma GCC diagnostic push
#ifdef __clang__
#pragma GCC diagnostic ignored "-Wdollar-in-identifier-extension"
#endif

TEST_F(TheHooks, run_springboards_own_launch_before_any_work_of_their_own) {
    switchOn();
    orig_SpringBoard_applicationDidFinishLaunching = ownDidFinishLaunching;
    int self = 0, selector = 0, application = 0;
    // GNU's assembler for 32-bit ARM drops the first $ of a name in a call, but not in a pointer.
    auto* hook = $SpringBoard$applicationDidFinishLaunching$;
    hook(&self, &selector, &application);
    EXPECT_THAT(seen, ElementsAre(&self, &selector, &application));
    EXPECT_EQ(callsAtOwn, 0U);
    EXPECT_FALSE(monitorAtOwn);
    EXPECT_NE(NoctaraInstance, nullptr);
}

#pragma GCC diagnostic pop

TEST_F(TheHooks, create_the_monitor_then_listen_for_power_then_start_the_thread) {
    switchOn();
    NoctaraInitialize();
    calls.clear();
    phone().process.applicationDidFinishLaunching();
    EXPECT_THAT(
        calls.of({"NSLog", "notify_register_dispatch", "IORegisterForSystemPower",
                  "CFRunLoopAddSource", "NSThread start"}),
        ElementsAre("NSLog [\"Noctara hooked SpringBoard !\"]",
                    "notify_register_dispatch [\"com.quorbit.Noctara.preferences-changed\"]",
                    "NSLog [\"Noctara thread started !\"]", "IORegisterForSystemPower -> 4099",
                    "NSLog [\"Noctara IORegisterForSystemPower done\"]",
                    "CFRunLoopAddSource [\"kCFRunLoopCommonModes\"]",
                    "NSThread start [\"NoctaraThread\"]",
                    "NSLog [\"Noctara : NoctaraThread start\"]"));
    EXPECT_EQ(calls.lines.front().text, "NSLog [\"Noctara hooked SpringBoard !\"]");
    for (const auto& line : calls.lines)
        EXPECT_EQ(line.thread, "main") << line.text;
    EXPECT_EQ(phone().process.launches, 1);
}

TEST_F(TheHooks, listen_for_power_but_start_nothing_without_a_monitor) {
    switchOn();
    memoryIsShort = true;
    launch();
    memoryIsShort = false;
    EXPECT_EQ(NoctaraInstance, nullptr);
    EXPECT_THAT(calls.of({"NSLog", "objc_getClass", "notify_register_dispatch",
                          "IORegisterForSystemPower", "CFRunLoopAddSource", "NSThread start"}),
                ElementsAre("objc_getClass [\"SpringBoard\"] -> true",
                            "objc_getClass [\"SBUIController\"] -> true",
                            "NSLog [\"Noctara hooked SpringBoard !\"]",
                            "IORegisterForSystemPower -> 4099",
                            "CFRunLoopAddSource [\"kCFRunLoopCommonModes\"]"));
}

TEST_F(TheHooks, leave_charger_changes_before_the_launch_to_springboard) {
    switchOn();
    NoctaraInitialize();
    calls.clear();
    phone().happens(ChargerChange{true});
    EXPECT_EQ(phone().process.powerChanges, 1);
    EXPECT_THAT(calls.of({"isOnAC", "NSLog"}), IsEmpty());
    phone().process.applicationDidFinishLaunching();
    EXPECT_TRUE(monitor().ACState) << "the monitor reads the charger by itself when it is created";
}

TEST_F(TheHooks, run_springboards_own_power_change_before_the_charger_is_read) {
    begin();
    phone().power.plug(true);
    orig_SBUIController_ACPowerChanged = ownACPowerChanged;
    calls.clear();
    int selector = 0;
    replaced_SBUIController_ACPowerChanged(controller(), &selector);
    EXPECT_THAT(seen, ElementsAre(controller(), &selector));
    EXPECT_EQ(callsAtOwn, 0U);
    EXPECT_THAT(calls.calls(), ElementsAre("isOnAC -> true"));
}

TEST_F(TheHooks, ask_the_receiver_itself_for_the_charger) {
    begin();
    phone().power.plug(true);
    replaced_SBUIController_ACPowerChanged(nullptr, nullptr);
    EXPECT_FALSE(monitor().ACState) << "no receiver is on no charger";
    replaced_SBUIController_ACPowerChanged(controller(), nullptr);
    EXPECT_TRUE(monitor().ACState);
}

TEST_F(TheHooks, tell_the_monitor_and_the_log_that_the_charger_is_plugged_in) {
    begin();
    calls.clear();
    phone().happens(ChargerChange{true});
    EXPECT_THAT(calls.of({"isOnAC", "NSLog"}),
                ElementsAre("isOnAC -> true", "NSLog [\"Noctara ACPowerChanged to CHARGING\"]"));
    EXPECT_TRUE(monitor().ACState);
    EXPECT_EQ(phone().process.powerChanges, 1);
}

TEST_F(TheHooks, tell_the_monitor_and_the_log_that_the_charger_is_unplugged) {
    scenario.phone.charger = true;
    begin();
    EXPECT_TRUE(monitor().ACState);
    calls.clear();
    phone().happens(ChargerChange{false});
    EXPECT_THAT(calls.of({"isOnAC", "NSLog"}),
                ElementsAre("isOnAC -> false", "NSLog [\"Noctara ACPowerChanged to ON BATTERY\"]"));
    EXPECT_FALSE(monitor().ACState);
}

TEST_F(TheHooks, pass_charger_changes_on_silently_with_debug_off) {
    begin();
    monitor()._DEBUG_ = false;
    calls.clear();
    phone().happens(ChargerChange{true});
    EXPECT_TRUE(monitor().ACState);
    phone().happens(ChargerChange{false});
    EXPECT_FALSE(monitor().ACState);
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(TheHooks, mark_an_unplugging_in_the_sleep_state) {
    begin();
    monitor().lastStateWasPlane = true;
    phone().happens(ChargerChange{true});
    EXPECT_FALSE(monitor().continueToMonitorAfterAC);
    phone().happens(ChargerChange{false});
    EXPECT_TRUE(monitor().continueToMonitorAfterAC);
}

TEST_F(TheHooks, know_no_debug_before_there_is_a_monitor) {
    EXPECT_FALSE(isDebug());
    switchOn();
    NoctaraInitialize();
    EXPECT_FALSE(isDebug());
    phone().process.applicationDidFinishLaunching();
    EXPECT_TRUE(isDebug()) << "on from the monitor's creation until its first load of the settings";
}

TEST_F(TheHooks, know_the_debug_setting_once_it_is_loaded) {
    begin();
    playReadings(1);
    EXPECT_FALSE(isDebug());
    change({{"Debug", true}});
    EXPECT_TRUE(isDebug());
    change({{"Debug", false}});
    EXPECT_FALSE(isDebug());
}

} // namespace

} // namespace noctara
