/// The stage of most tests: a phone with all its settings, and a monitor that runs on it.
#pragma once

#include "host/host.h"
#include "phones/simulated/simulated_phone.h"
#include "tests/call_log.h"
#include "tests/full_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace noctara {

class ANight : public testing::Test {
protected:
    using enum NamedPosture;

    /// The defaults of a complete settings file, but for the wake-ups, which most tests leave out.
    /// Change `settings` and `scenario` before `begin`.
    ANight();
    ~ANight() override;

    /// The phone is switched on and SpringBoard has launched; the monitor thread has not run yet.
    void begin();

    /// The phone is switched on as `scenario` says; nothing is launched.
    void switchOn(std::unique_ptr<FileStore> files = makeMemoryFileStore());

    void launch();

    SimulatedPhone& phone() { return *onePhone; }
    NoctaraThread& monitor() { return *NoctaraInstance; }

    void lies(const Posture& posture);
    void playReadings(int count);
    void playFor(double seconds);
    void change(const Dictionary& changed);

    /// Plays from the hand into the sleep state.
    void fallAsleep();

    static double at(int year, unsigned month, unsigned day, int hour, int minute, int second);

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
    AMonitor();
    ~AMonitor() override;

    NoctaraThread& make();

    void TearDown() override;

    std::unique_ptr<NoctaraThread> own;
};

} // namespace noctara
