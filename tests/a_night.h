/// The stage of most tests: a phone with all its settings, and a monitor that runs on it.
#pragma once

#include "host/host.h"
#include "phones/simulated/simulated_phone.h"
#include "tests/call_log.h"
#include "tests/full_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>

namespace noctara {

class ANight : public testing::Test {
protected:
    /// The defaults of a complete settings file, but for the wake-ups, which most tests leave out.
    /// Change `settings` and `scenario` before `begin`.
    ANight() { scenario.end.secondsSince1970 = scenario.start.secondsSince1970 + 7 * 86400; }

    /// The phone is switched on and SpringBoard has launched; the monitor thread has not run yet.
    void begin() {
        scenario.settings = settings;
        switchOn();
        launch();
    }

    /// The phone is switched on as `scenario` says; nothing is launched.
    void switchOn(std::unique_ptr<FileStore> files = makeMemoryFileStore()) {
        onePhone.emplace(scenario, std::move(files));
        onePhone->observe(calls);
    }

    void launch() { phone().launch(); }

    SimulatedPhone& phone() { return *onePhone; }
    NoctaraThread& monitor() { return *NoctaraInstance; }

    void lies(const char* posture) { phone().happens("posture", posture); }
    void playReadings(int count) { phone().playReadings(count); }
    void playFor(double seconds) { phone().playFor(seconds); }
    void change(const Dictionary& changed) { phone().happens("settings", changed); }

    /// Plays from the hand into the sleep state.
    void fallAsleep() {
        lies("screen-down");
        playReadings(3);
    }

    static double at(int year, unsigned month, unsigned day, int hour, int minute, int second) {
        using namespace std::chrono;
        const sys_days date{std::chrono::year(year) / static_cast<int>(month) /
                            static_cast<int>(day)};
        return static_cast<double>(
            (date + hours(hour) + minutes(minute) + seconds(second)).time_since_epoch() / 1s);
    }

    Scenario scenario;
    Dictionary settings = fullSettings({{"ActiveOnSleep", false}});
    CallLog calls;

private:
    std::optional<SimulatedPhone> onePhone;
};

/// A monitor of a test's own on a phone whose SpringBoard has not launched: its methods are called
/// one by one.
class AMonitor : public ANight {
protected:
    NoctaraThread& make() {
        if (!scenario.settings)
            scenario.settings = settings;
        switchOn();
        own = std::make_unique<NoctaraThread>(phone().platform());
        own->motionManager = phone().platform().motion.makeMotionManager();
        return *own;
    }

    void TearDown() override { own.reset(); }

    std::unique_ptr<NoctaraThread> own;
};

} // namespace noctara
