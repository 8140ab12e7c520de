/// The monitor on two real threads, which run concurrently, unlike those of the simulated phone.
/// Meant to be run with a sanitizer.
#include "host/host.h"
#include "monitor/noctara_thread.h"
#include "tests/full_settings.h"
#include "tests/live/live_phone.h"

#include <gtest/gtest.h>

#ifdef __clang__
#pragma GCC diagnostic ignored "-Wdollar-in-identifier-extension"
#endif

namespace noctara {

namespace {

class ALivePhone : public testing::Test {
protected:
    /// SpringBoard has launched.
    void launch() {
        phone.changeSettingsQuietly(fullSettings(
            {{"TimeLimit", true}, {"Debug", true}, {"launch-app-com.example.alarm", true}}));
        processPlatform = &platform;
        orig_SpringBoard_applicationDidFinishLaunching = [](ObjectRef, SelectorRef, ObjectRef) {};
        orig_SBUIController_ACPowerChanged = [](ObjectRef, SelectorRef) {};
        $SpringBoard$applicationDidFinishLaunching$(nullptr, nullptr, nullptr);
    }

    ~ALivePhone() override {
        if (NoctaraInstance) {
            NoctaraInstance->stop();
            phone.workUntil([this] { return phone.monitorHasEnded(); }, [] {});
        }
        phone.joinMonitor();
        delete NoctaraInstance;
        NoctaraInstance = nullptr;
        root_port = 0;
        orig_SpringBoard_applicationDidFinishLaunching = nullptr;
        orig_SBUIController_ACPowerChanged = nullptr;
        processPlatform = nullptr;
    }

    LivePhone phone;
    Platform platform = phone.platform();
};

TEST_F(ALivePhone, goes_into_the_sleep_state_and_comes_back) {
    launch();
    phone.lieDown(true);
    phone.workUntil([this] { return phone.transitions == 1; }, [] {});
    EXPECT_TRUE(phone.airplane);
    EXPECT_EQ(phone.applications.launches, 1);
    phone.lieDown(false);
    phone.workUntil([this] { return phone.transitions == 2; }, [] {});
    EXPECT_FALSE(phone.airplane);
}

TEST_F(ALivePhone, stands_a_thousand_changes_from_the_main_thread_at_a_running_monitor) {
    launch();
    int changes = 0;
    phone.workUntil([&] { return changes >= 1000 && phone.transitions >= 4; },
                    [&] {
                        ++changes;
                        phone.lieDown(changes / 250 % 2 == 0);
                        phone.onCharger = changes % 2 == 0;
                        replaced_SBUIController_ACPowerChanged(nullptr, nullptr);
                        phone.changeSettings({{"Sensitivity", changes % 9},
                                              {"Debug", changes % 3 == 0},
                                              {"Vibrate", changes % 5 == 0}});
                        phone.powerMessage(kIOMessageCanSystemSleep);
                        phone.powerMessage(kIOMessageSystemWillSleep);
                    });
    EXPECT_GE(phone.allowed + phone.cancelled, 2000);
    EXPECT_GE(phone.allowed, 1000) << "a forced sleep is never refused";
    EXPECT_GT(phone.readings, 10);
}

} // namespace

} // namespace noctara
