/// The stage of tests that send messages to the library's objects, as other code in SpringBoard
/// does. This process is a phone of its own, with the library injected, whose SpringBoard has not
/// finished launching: no monitor runs but the test's.
#pragma once

#include "input/temporary_folder.h"
#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/main_run_loop.h"
#include "phones/stand_in/host/phone_in_real_time.h"
#include "phones/stand_in/host/springboard.h"
#include "phones/stand_in/host/watched_foundation.h"
#include "tests/call_log.h"
#include "tests/full_settings.h"

#import <Foundation/Foundation.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <objc/runtime.h>
#include <set>
#include <string>
#include <thread>

namespace noctara {

/// A BOOL is a byte on some systems; every value but 0 counts as YES. UndefinedBehaviorSanitizer
/// takes other values than 1 for a fault.
#if __has_feature(undefined_behavior_sanitizer)
constexpr BOOL nonZero = YES;
#else
constexpr BOOL nonZero = static_cast<BOOL>(2);
#endif

/// A method: its selector and the types of its arguments and result, as the runtime encodes them.
template <typename Result, typename... Arguments>
std::string method(const std::string& selector) {
    std::string text = selector + " ->" + @encode(Result);
    ((text += std::string(" ") + @encode(Arguments)), ...);
    return text;
}

/// GCC's runtime leaves the place of an argument after the encoding of its type.
inline std::string withoutPlace(std::string type) {
    type.erase(type.find_last_not_of("0123456789") + 1);
    return type;
}

/// The methods that a class itself defines, likewise.
inline std::set<std::string> methodsOf(Class theClass) {
    std::set<std::string> found;
    unsigned count = 0;
    Method* const methods = class_copyMethodList(theClass, &count);
    for (unsigned i = 0; i < count; ++i) {
        char type[64];
        method_getReturnType(methods[i], type, sizeof type);
        std::string text =
            sel_getName(method_getName(methods[i])) + std::string(" ->") + withoutPlace(type);
        // The first two arguments are the receiver and the selector.
        for (unsigned j = 2; j < method_getNumberOfArguments(methods[i]); ++j) {
            method_getArgumentType(methods[i], j, type, sizeof type);
            text += " " + withoutPlace(type);
        }
        found.insert(text);
    }
    free(methods);
    return found;
}

class ObjectsOnAPhone : public testing::Test {
protected:
    /// Every radio is on, on battery, and all settings have the defaults of a new file.
    ObjectsOnAPhone() {
        heard = {};
        phone().happens(AirplaneModeSwitch{false});
        phone().happens(WifiSwitch{true});
        phone().happens(BluetoothConnection{false});
        phone().happens(BluetoothSwitch{true});
        phone().happens(CellularDataSwitch{true});
        phone().happens(LocationSwitch{true});
        phone().happens(MaxRateChange{DataRate::kCTRegistrationDataRate4G});
        phone().happens(CallChange{CallState::none});
        phone().happens(ChargerChange{false});
        settingsAre({});
    }

    ~ObjectsOnAPhone() override {
        heard = {};
        [pool release];
    }

    /// A process has one phone and one library. Its phone has a 4G radio, shares its
    /// connection, and has two applications.
    static PhoneInRealTime& phone() {
        static auto& one = *[] {
            Scenario scenario;
            scenario.phone.rates = {DataRate::kCTRegistrationDataRate2G,
                                    DataRate::kCTRegistrationDataRate3G,
                                    DataRate::kCTRegistrationDataRate4G};
            scenario.radios.maxRate = DataRate::kCTRegistrationDataRate4G;
            scenario.radios.tethering = true;
            scenario.settings = fullSettings();
            scenario.applications = {{"com.apple.clock", "Clock"},
                                     {"com.apple.maps", "Maps", true, true, true}};
            static const TemporaryFolder folder;
            setUpFoundation("UTC");
            watchFoundation();
            auto* made = new PhoneInRealTime(scenario, folder.path, 1000);
            made->observe(listener);
            springBoard::begin();
            injectedLibrary::inject(NOCTARA_LIBRARY);
            return made;
        }();
        return one;
    }

    /// Changes the default settings and announces that. Every monitor of the process reads them.
    static void settingsAre(const Dictionary& changes) {
        phone().happens(SettingsChange{fullSettings(changes)});
    }

    /// A new object of one of the library's classes. The caller owns it.
    template <typename Object>
    static Object* make(NSString* className) {
        calls.clear();
        return static_cast<Object*>([[NSClassFromString(className) alloc] init]);
    }

    /// Runs `work` on another thread, and the main run loop until that has finished.
    static void onAnotherThread(const std::function<void()>& work) {
        std::atomic<bool> done = false;
        std::thread other([&] {
            GSRegisterCurrentThread();
            @autoreleasepool {
                work();
            }
            GSUnregisterCurrentThread();
            done = true;
            mainRunLoop::wake();
        });
        EXPECT_TRUE(becomesTrue([&] { return done.load(); }));
        other.join();
    }

    /// Runs the main run loop until the condition is true. False if that takes too long.
    static bool becomesTrue(const std::function<bool()>& condition) {
        for (int i = 0; i < 1000; ++i) {
            if (condition())
                return true;
            mainRunLoop::runOnce(0.01);
        }
        return false;
    }

    /// The calls of the library but for its reads of the clock.
    inline static CallLog& calls = *new CallLog;

    /// Called with each operation that `calls` has got.
    inline static std::function<void(Operation)> heard;

private:
    class Listener final : public PhoneObserver {
    public:
        void called(const Call& call) override {
            if (call.operation == Operation::time || call.operation == Operation::date)
                return;
            calls.called(call);
            // What is called may set another one.
            if (const auto now = heard)
                now(call.operation);
        }
        void happens(const Happening&) override {}
    };

    inline static Listener& listener = *new Listener;
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
};

} // namespace noctara
