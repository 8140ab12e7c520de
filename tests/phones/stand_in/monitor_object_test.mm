/// The monitor of a night as the object that the library exports. This process is a phone of its
/// own, with the library injected.
#include "input/temporary_folder.h"
#include "phones/springboard/noctara_thread.h"
#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/phone_on_virtual_clock.h"
#include "phones/stand_in/host/springboard.h"
#include "phones/stand_in/host/watched_foundation.h"
#include "tests/full_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <map>
#include <objc/runtime.h>

namespace noctara {

namespace {

using testing::Contains;

/// The object that the library exports; nil before there is one.
::NoctaraThread* monitor() {
    void* const library = dlopen(NOCTARA_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    return *static_cast<::NoctaraThread**>(dlsym(library, "NoctaraInstance"));
}

/// What happened in half an hour in which the phone lay down, until its monitor was sent `stop`.
struct Night final : PhoneObserver {
    void called(const Call& call) override {
        operations.push_back(call.operation);
        if (call.operation == Operation::IORegisterForSystemPower)
            atRegistration = monitor();
    }
    void happens(const Happening&) override {}

    id atLoad = nil;
    id atRegistration = nil; ///< When the library registered for power messages.
    bool ended = false;
    std::vector<Operation> operations;
    std::vector<std::string> received; ///< By the exported object, with the thread.
};

Night& theNight = *new Night;

/// Replaces a method by one that notes its message and goes on to the original.
template <const char* selector>
void watch() {
    using Original = void (*)(id, SEL);
    static Original original;
    const IMP noting = reinterpret_cast<IMP>(+[](id self, SEL name) {
        if (self == monitor())
            theNight.received.push_back(
                std::string([NSThread isMainThread] ? "main " : "monitor ") + sel_getName(name));
        original(self, name);
    });
    const Method method =
        class_getInstanceMethod(NSClassFromString(@"NoctaraThread"), sel_registerName(selector));
    original = reinterpret_cast<Original>(method_setImplementation(method, noting));
}

constexpr char run[] = "run";
constexpr char playAudioAsync[] = "playAudioAsync";
constexpr char setStateAirplaneMode[] = "setStateAirplaneMode";

const Night& night() {
    static const bool played = [] {
        static const TemporaryFolder folder;
        Scenario scenario;
        scenario.end.secondsSince1970 = scenario.start.secondsSince1970 + 3600;
        scenario.phone.posture = NamedPosture::ScreenDown;
        scenario.settings = fullSettings();
        scenario.events = {{{scenario.start.secondsSince1970 + 1800}, MonitorStop{}}};
        setUpFoundation("UTC");
        watchFoundation();
        auto& phone = *new PhoneOnVirtualClock(scenario, folder.path);
        phone.observe(theNight);
        springBoard::begin();
        injectedLibrary::inject(NOCTARA_LIBRARY);
        theNight.atLoad = monitor();
        injectedLibrary::stopMonitor();
        watch<run>();
        watch<playAudioAsync>();
        watch<setStateAirplaneMode>();
        springBoard::didFinishLaunching();
        theNight.ended = phone.playToTheEnd();
        return true;
    }();
    static_cast<void>(played);
    return theNight;
}

TEST(TheMonitor, is_nil_until_SpringBoard_has_launched) {
    EXPECT_EQ(night().atLoad, nil);
}

TEST(TheMonitor, is_there_when_the_library_registers_for_power_messages) {
    EXPECT_NE(night().atRegistration, nil);
    EXPECT_EQ(night().atRegistration, monitor());
}

TEST(TheMonitor, is_a_NoctaraThread) {
    night();
    EXPECT_STREQ(object_getClassName(monitor()), "NoctaraThread");
}

TEST(TheMonitor, is_sent_run_on_its_thread_and_the_work_on_the_main_thread) {
    EXPECT_THAT(night().received,
                testing::ElementsAre("monitor run", "main playAudioAsync", "main playAudioAsync",
                                     "main setStateAirplaneMode"));
}

TEST(TheMonitor, ends_its_thread_when_it_is_sent_stop) {
    EXPECT_TRUE(night().ended);
    EXPECT_THAT(night().operations,
                Contains(Operation::AudioServicesDisposeSystemSoundID).Times(2));
}

TEST(TheMonitor, stays_when_its_thread_has_ended) {
    night();
    EXPECT_NE(monitor(), nil);
}

} // namespace

} // namespace noctara
