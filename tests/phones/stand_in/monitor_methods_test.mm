/// The monitor's methods, sent from outside.
#include "phones/model/phone_model.h"
#include "phones/springboard/noctara_thread.h"
#include "phones/springboard/private_classes.h"
#include "phones/springboard/property_list_values.h"
#include "phones/springboard/radios_lib.h"
#include "tests/phones/stand_in/objects_on_a_phone.h"

#include <atomic>
#include <stdexcept>

namespace noctara {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* hop = "performSelectorOnMainThread:withObject:waitUntilDone:";

class TheMonitorsMethods : public ObjectsOnAPhone {
protected:
    TheMonitorsMethods() { makeMonitor(); }

    /// A monitor with the default settings loaded; it is never deallocated.
    void makeMonitor(const Dictionary& changes = {}) {
        monitor = make<::NoctaraThread>(@"NoctaraThread");
        settingsAre(changes);
        calls.clear();
    }

    /// The main loop runs on this thread and is sent `stop` in its first cycle.
    void runOneCycle() {
        int waits = 0;
        heard = [&](Operation operation) {
            if (operation != Operation::sleep)
                return;
            if (++waits > 100)
                throw std::runtime_error("the main loop does not end");
            [monitor stop];
        };
        [monitor run];
        heard = {};
    }

    static SBApplication* application(NSString* identifier) {
        Class controller = NSClassFromString(@"SBApplicationController");
        for (SBApplication* each in [[controller sharedInstance] allApplications])
            if ([[each displayIdentifier] isEqual:identifier])
                return each;
        return nil;
    }

    ::NoctaraThread* monitor = nil;
};

TEST_F(TheMonitorsMethods, are_these_of_a_class_that_derives_from_NSObject) {
    Class theClass = NSClassFromString(@"NoctaraThread");
    EXPECT_STREQ(class_getName(class_getSuperclass(theClass)), "NSObject");
    EXPECT_THAT(
        methodsOf(theClass),
        testing::UnorderedElementsAre(
            method<id>("init"), method<void>("start"), method<void>("stop"),
            method<void, BOOL>("setACState:"), method<void, int>("sleep:"), method<void>("run"),
            method<void>("reloadPreferences"),
            method<void, id, id, int>("saveValueToFile:key:value:"), method<BOOL>("checkState"),
            method<BOOL>("isInTimeRange"), method<void>("awakeApp"),
            method<void, BOOL>("setState:"), method<void>("setStateAirplaneMode"),
            method<BOOL>("isEnabled"), method<BOOL>("isAirplaneModeActive"),
            method<void, BOOL>("setLocationEnabled:"), method<void, BOOL>("setBluetoothEnabled:"),
            method<BOOL>("is3GEnabled"), method<BOOL>("hasCellularData"),
            method<void, BOOL>("startStopApplications:"), method<BOOL, id>("activateApplication:"),
            method<id>("topApplication"), method<id, id>("activateApp:"),
            method<void, unsigned>("playAudioOnMainThread:"), method<void>("playAudioAsync")));
    EXPECT_THAT(methodsOf(object_getClass(theClass)), IsEmpty());
}

// The object, its thread and its main loop.

TEST_F(TheMonitorsMethods, init_reads_the_charger_looks_at_the_radio_and_listens_for_settings) {
    ASSERT_NE(make<::NoctaraThread>(@"NoctaraThread"), nil);
    EXPECT_THAT(
        calls.of(
            {"isOnAC", "_CTServerConnectionCreate", "notify_register_dispatch", "NSThread start"}),
        ElementsAre("isOnAC -> false", "_CTServerConnectionCreate -> true",
                    "notify_register_dispatch [\"com.quorbit.Noctara.preferences-changed\"]"));
}

TEST_F(TheMonitorsMethods, init_keeps_the_object_for_the_handler_of_the_settings) {
    EXPECT_EQ([monitor retainCount], 2U) << "the other one is the test's";
}

TEST_F(TheMonitorsMethods, start_and_stop_begin_and_end_its_thread) {
    makeMonitor({{"Enabled", false}, {"Debug", true}});
    std::atomic<int> waits = 0;
    std::atomic<int> disposed = 0;
    heard = [&](Operation operation) {
        waits += operation == Operation::sleep;
        disposed += operation == Operation::AudioServicesDisposeSystemSoundID;
    };
    [monitor start];
    [monitor start];
    EXPECT_TRUE(becomesTrue([&] { return waits > 0; }));
    EXPECT_EQ(disposed, 0);
    [monitor stop];
    ASSERT_TRUE(becomesTrue([&] { return disposed == 2; }));
    EXPECT_THAT(calls.of({"NSThread start"}), ElementsAre("NSThread start [\"NoctaraThread\"]"));
    EXPECT_TRUE(calls.hasLogged("Noctara : NoctaraThread already started"));
}

TEST_F(TheMonitorsMethods, run_plays_the_main_loop_until_stop) {
    runOneCycle();
    EXPECT_THAT(calls.of({"AudioServicesCreateSystemSoundID", "startAccelerometerUpdates",
                          "AudioServicesDisposeSystemSoundID"}),
                ElementsAre(HasSubstr("Noctara-airplanemode.mp3"), HasSubstr("Noctara-off.mp3"),
                            "startAccelerometerUpdates",
                            HasSubstr("AudioServicesDisposeSystemSoundID"),
                            HasSubstr("AudioServicesDisposeSystemSoundID")));
}

TEST_F(TheMonitorsMethods, setACState_says_whether_the_charger_allows_readings) {
    for (const BOOL onAC : {NO, YES, nonZero}) {
        makeMonitor({{"EnableOnAC", true}});
        [monitor setACState:onAC];
        runOneCycle();
        EXPECT_EQ(calls.count("startAccelerometerUpdates"), onAC ? 1U : 0U) << int{onAC};
    }
}

TEST_F(TheMonitorsMethods, sleep_waits_by_the_wall_clock) {
    [monitor sleep:0];
    EXPECT_EQ(calls.count("sleep"), 0U);
    const double before = OnPhone(phone())->clock.monotonic;
    [monitor sleep:3];
    EXPECT_GT(OnPhone(phone())->clock.monotonic - before, 2);
    EXPECT_THAT(calls.of({"sleep"}), Contains("sleep [1]"));
}

// The settings file.

TEST_F(TheMonitorsMethods, reloadPreferences_reads_the_settings_file) {
    [monitor reloadPreferences];
    EXPECT_THAT(calls.of({"fileExistsAtPath:", "initWithContentsOfFile:"}),
                ElementsAre(HasSubstr(settingsFilePath + "\"] -> true"),
                            HasSubstr(settingsFilePath + "\"] -> {\"")));
}

TEST_F(TheMonitorsMethods, saveValueToFile_changes_one_value_of_a_file) {
    [monitor saveValueToFile:stringOf(settingsFilePath) key:@"Sensitivity" value:-3];
    EXPECT_THAT(
        calls.of({"writeToFile:atomically:"}),
        ElementsAre(testing::AllOf(HasSubstr(settingsFilePath), HasSubstr("\"Sensitivity\":-3"),
                                   HasSubstr("\"StartHour\":21"))));
}

// Readings, the time window and wake-ups.

TEST_F(TheMonitorsMethods, checkState_answers_whether_the_phone_lies_in_the_wanted_posture) {
    for (const auto posture : {NamedPosture::ScreenDown, NamedPosture::ScreenUp}) {
        makeMonitor({{"Enabled", false}});
        phone().happens(PostureChange{posture});
        BOOL answer = posture == NamedPosture::ScreenDown ? NO : YES;
        heard = [&](Operation operation) {
            if (operation != Operation::sleep)
                return;
            heard = {};
            answer = [monitor checkState];
            [monitor stop];
        };
        [monitor run];
        EXPECT_EQ(answer, posture == NamedPosture::ScreenDown ? YES : NO);
        EXPECT_EQ(calls.count("accelerometerData"), 1U);
    }
}

TEST_F(TheMonitorsMethods, checkState_answers_NO_while_the_main_loop_does_not_run) {
    phone().happens(PostureChange{NamedPosture::ScreenDown});
    EXPECT_EQ([monitor checkState], NO);
    EXPECT_THAT(calls.of({"sleep", "accelerometerData"}), ElementsAre("sleep [1]", "sleep [0]"));
}

TEST_F(TheMonitorsMethods, isInTimeRange_answers_by_the_hours_of_the_settings) {
    makeMonitor({{"StartHour", 0}, {"StopHour", 24}});
    EXPECT_EQ([monitor isInTimeRange], YES);
    makeMonitor({{"StartHour", 48}, {"StopHour", 49}});
    EXPECT_EQ([monitor isInTimeRange], NO);
}

TEST_F(TheMonitorsMethods, awakeApp_schedules_a_wake_up) {
    [monitor awakeApp];
    EXPECT_THAT(calls.of({"CPScheduleWakeAtDateWithIdentifier"}),
                ElementsAre(HasSubstr("\"com.quorbit.Noctara\"")));
}

// The sleep state.

TEST_F(TheMonitorsMethods, setState_switches_on_the_main_thread_then_announces_it) {
    const std::vector<std::string> operations{hop, "setIsInAirplaneMode:", "updateAirplaneMode",
                                              "notify_post"};
    const auto expect = [&](const char* airplane) {
        EXPECT_THAT(calls.of(operations),
                    ElementsAre(std::string(hop) + " [\"setStateAirplaneMode\"]",
                                std::string("setIsInAirplaneMode: ") + airplane,
                                "updateAirplaneMode",
                                "notify_post [\"com.sbsettings.refreshalltoggles\"]",
                                "notify_post [\"com.apple.radios\"]"));
    };
    onAnotherThread([&] { [monitor setState:YES]; });
    expect("[true]");
    for (const auto& line : calls.lines)
        EXPECT_EQ(line.thread, line.operation == hop || line.text.find("radios") != line.text.npos
                                   ? "monitor"
                                   : "main")
            << line.text;
    calls.clear();
    [monitor setState:NO];
    expect("[false]");
    calls.clear();
    [monitor setState:nonZero];
    expect("[true]");
}

TEST_F(TheMonitorsMethods, setStateAirplaneMode_switches_on_the_main_thread_alone) {
    [monitor setStateAirplaneMode];
    EXPECT_THAT(calls.of({hop, "setIsInAirplaneMode:", "notify_post"}),
                ElementsAre("setIsInAirplaneMode: [false]",
                            "notify_post [\"com.sbsettings.refreshalltoggles\"]"));
    calls.clear();
    onAnotherThread([&] { [monitor setStateAirplaneMode]; });
    EXPECT_THAT(calls.lines, IsEmpty());
}

TEST_F(TheMonitorsMethods, isEnabled_answers_whether_airplane_mode_is_on) {
    EXPECT_EQ([monitor isEnabled], NO);
    phone().happens(AirplaneModeSwitch{true});
    EXPECT_EQ([monitor isEnabled], YES);
    EXPECT_THAT(calls.of({"initWithContentsOfFile:"}),
                Contains(HasSubstr("com.apple.radios.plist")).Times(2));
}

TEST_F(TheMonitorsMethods, isAirplaneModeActive_asks_the_phone_if_airplane_mode_was_on_before) {
    phone().happens(AirplaneModeSwitch{true});
    EXPECT_EQ([monitor isAirplaneModeActive], NO);
    EXPECT_EQ(calls.count("isInAirplaneMode"), 0U);
    [monitor isEnabled];
    EXPECT_EQ([monitor isAirplaneModeActive], YES);
    phone().happens(AirplaneModeSwitch{false});
    EXPECT_EQ([monitor isAirplaneModeActive], NO);
    EXPECT_EQ(calls.count("isInAirplaneMode"), 2U);
}

TEST_F(TheMonitorsMethods, setLocationEnabled_and_setBluetoothEnabled_switch_the_radios) {
    [monitor setLocationEnabled:NO];
    [monitor setLocationEnabled:nonZero];
    EXPECT_THAT(
        calls.of({"setLocationServicesEnabled:", "setPowered:", "setEnabled:"}),
        ElementsAre("setLocationServicesEnabled: [false]", "setLocationServicesEnabled: [true]"));
    calls.clear();
    [monitor setBluetoothEnabled:NO];
    [monitor setBluetoothEnabled:nonZero];
    EXPECT_THAT(calls.of({"setLocationServicesEnabled:", "setPowered:", "setEnabled:"}),
                ElementsAre("setEnabled: [false]", "setPowered: [true]"));
}

TEST_F(TheMonitorsMethods, is3GEnabled_answers_by_the_allowed_rate) {
    EXPECT_EQ([monitor is3GEnabled], YES);
    phone().happens(MaxRateChange{DataRate::kCTRegistrationDataRate3G});
    EXPECT_EQ([monitor is3GEnabled], NO);
}

TEST_F(TheMonitorsMethods, hasCellularData_answers_YES_without_a_question) {
    EXPECT_EQ([monitor hasCellularData], YES);
    EXPECT_THAT(calls.lines, IsEmpty());
}

TEST_F(TheMonitorsMethods, belong_to_an_object_with_a_radio_controller_of_its_own) {
    ::RadiosLib* const radios = [monitor valueForKey:@"radiosLib"];
    EXPECT_STREQ(object_getClassName(radios), "RadiosLib");
    // Only the monitor's one goes down to 2G.
    EXPECT_EQ([radios set3GEnabled:NO], YES);
    EXPECT_THAT(calls.of({"CTRegistrationSetMaxAllowedDataRate"}),
                ElementsAre("CTRegistrationSetMaxAllowedDataRate [\"3G\"] -> true",
                            "CTRegistrationSetMaxAllowedDataRate [\"2G\"] -> true"));
    EXPECT_EQ(radios, [monitor valueForKey:@"radiosLib"]);
}

// Applications.

TEST_F(TheMonitorsMethods, startStopApplications_launches_and_quits_those_of_the_settings) {
    const std::vector<std::string> operations{"activate", "launch", "resumeToQuit", "kill"};
    settingsAre({{"launch-app-com.apple.maps", true}});
    calls.clear();
    [monitor startStopApplications:nonZero];
    EXPECT_THAT(calls.of(operations), ElementsAre("activate [\"com.apple.maps\"]"));
    calls.clear();
    [monitor startStopApplications:NO];
    EXPECT_THAT(calls.of(operations),
                ElementsAre("resumeToQuit [\"com.apple.maps\"]", "kill [\"com.apple.maps\"]"));
    calls.clear();
    [monitor startStopApplications:YES];
    EXPECT_THAT(calls.of(operations), ElementsAre("launch [\"com.apple.maps\"]"));
    phone().happens(SettingsRemoval{{"launch-app-com.apple.maps"}});
}

TEST_F(TheMonitorsMethods, activateApplication_launches_one_that_is_not_in_front) {
    [application(@"com.apple.maps") activate];
    calls.clear();
    EXPECT_EQ([monitor activateApplication:application(@"com.apple.maps")], NO);
    EXPECT_EQ(calls.count("launch"), 0U);
    EXPECT_EQ([monitor activateApplication:application(@"com.apple.clock")], YES);
    EXPECT_THAT(calls.of({"launch"}), ElementsAre("launch [\"com.apple.clock\"]"));
}

TEST_F(TheMonitorsMethods, activateApplication_takes_nil_for_the_home_screen) {
    [application(@"com.apple.maps") activate];
    calls.clear();
    EXPECT_EQ([monitor activateApplication:nil], YES);
    EXPECT_THAT(calls.of({"leafIconForIdentifier:"}),
                ElementsAre("leafIconForIdentifier: [\"com.apple.springboard\"] -> false"));
}

TEST_F(TheMonitorsMethods, topApplication_answers_SpringBoards_own_object) {
    [application(@"com.apple.maps") activate];
    EXPECT_EQ([monitor topApplication], application(@"com.apple.maps"));
    [application(@"com.apple.maps") kill];
    EXPECT_EQ([monitor topApplication], nil);
}

TEST_F(TheMonitorsMethods, activateApp_answers_its_argument) {
    NSObject* object = [[[NSObject alloc] init] autorelease];
    EXPECT_EQ([monitor activateApp:object], object);
    EXPECT_EQ([monitor activateApp:nil], nil);
}

// Cues.

TEST_F(TheMonitorsMethods, playAudioOnMainThread_plays_a_sound_on_the_main_thread) {
    onAnotherThread([&] { [monitor playAudioOnMainThread:0xfffffffe]; });
    EXPECT_THAT(calls.calls(), ElementsAre(std::string(hop) + " [\"playAudioAsync\"]",
                                           "AudioServicesPlaySystemSound [4294967294]"));
    EXPECT_EQ(calls.lines.front().thread, "monitor");
    EXPECT_EQ(calls.lines.back().thread, "main");
}

TEST_F(TheMonitorsMethods, playAudioAsync_plays_the_objects_own_last_sound_again) {
    [monitor playAudioOnMainThread:5];
    ::NoctaraThread* const other = make<::NoctaraThread>(@"NoctaraThread");
    [other playAudioOnMainThread:6];
    calls.clear();
    [monitor playAudioAsync];
    EXPECT_THAT(calls.calls(), ElementsAre("AudioServicesPlaySystemSound [5]"));
}

} // namespace

} // namespace noctara
