/// Each invariant is broken by a monitor that misbehaves, and holds for one that does not.
#include "soak/invariants.h"

#include "host/host.h"
#include "monitor/noctara_thread.h"
#include "soak/night_watch.h"
#include "soak/soak_night.h"
#include "tests/full_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace noctara {

namespace {

using testing::HasSubstr;

/// Lies screen down after half an hour, is taken up 6 hours later.
Scenario aPlainNight() {
    Scenario scenario;
    scenario.settings = fullSettings({{"ActiveOnSleep", false}});
    scenario.applications = {{.identifier = "com.example.clock", .name = "Clock"}};
    scenario.wakes = {{"com.apple.alarm", {scenario.end.secondsSince1970 - 3600}}};
    const double start = scenario.start.secondsSince1970;
    scenario.events = {{{start + 1800}, PostureChange{NamedPosture::ScreenDown}},
                       {{start + 6 * 3600}, PostureChange{NamedPosture::InHand}}};
    return scenario;
}

constexpr double beforeQuiet = 900;
constexpr double whileQuiet = 2 * 3600;

struct Misbehaviour {
    const char* brokenInvariant; ///< The start of its sentence.
    double at;                   ///< Seconds after the start of the night.
    void (*act)(SimulatedPhone& phone, NoctaraThread& monitor);
};

/// Changes the monitor or calls its functions, as a wrong line in its code would.
const Misbehaviour misbehaviours[]{
    {"The state changes after three readings", beforeQuiet,
     [](SimulatedPhone& phone, NoctaraThread& monitor) {
         phone.asMonitorThread([&] { monitor.setState(true); });
     }},
    {"A cycle takes one reading", beforeQuiet,
     [](SimulatedPhone&, NoctaraThread& monitor) { monitor.enabledOnChargeOnly = true; }},
    {"Between two cycles", beforeQuiet,
     [](SimulatedPhone&, NoctaraThread& monitor) { monitor.sleepTime = 6; }},
    {"The monitor goes on", beforeQuiet,
     [](SimulatedPhone&, NoctaraThread& monitor) { monitor.stop(); }},
    {"Sounds and vibrations", beforeQuiet,
     [](SimulatedPhone&, NoctaraThread& monitor) { monitor.vibrate = false; }},
    {"Going quiet switches off", beforeQuiet,
     [](SimulatedPhone&, NoctaraThread& monitor) {
         monitor.airplaneSwitch = false;
         monitor.wifiSwitch = true;
     }},
    {"After coming back", whileQuiet,
     [](SimulatedPhone&, NoctaraThread& monitor) { monitor.airplaneSwitch = false; }},
    {"A radio is switched only if", beforeQuiet,
     [](SimulatedPhone&, NoctaraThread& monitor) { monitor.radiosLib->setWifiEnabled(false); }},
    {"The chosen applications", beforeQuiet,
     [](SimulatedPhone&, NoctaraThread& monitor) {
         monitor.applicationsToStart = {"com.example.clock"};
     }},
    {"Only wake-ups of the monitor", beforeQuiet,
     [](SimulatedPhone& phone, NoctaraThread&) {
         const auto alarm = phone.power.scheduledWakes().front();
         phone.asMonitorThread([&] { phone.power.cancel(alarm.at, alarm.scheduledBy); });
     }},
    {"With ActiveOnSleep", beforeQuiet,
     [](SimulatedPhone&, NoctaraThread& monitor) { monitor.activeOnSleep = true; }},
    {"Each question of the system", beforeQuiet,
     [](SimulatedPhone& phone, NoctaraThread& monitor) {
         monitor.switchingToAirplane = true;
         phone.happens(PowerMessage{kIOMessageCanSystemSleep});
     }},
    {"Radios are switched, and applications", beforeQuiet,
     [](SimulatedPhone& phone, NoctaraThread& monitor) {
         phone.asMonitorThread([&] { monitor.playAudioAsync(); });
     }},
    {"The accelerometer runs for one second", beforeQuiet,
     [](SimulatedPhone& phone, NoctaraThread&) { phone.radios.createServerConnection(nullptr); }},
    {"The monitor writes the settings file only", beforeQuiet,
     [](SimulatedPhone&, NoctaraThread& monitor) {
         monitor.saveValueToFile(settingsFilePath, "Enabled", 0);
     }},
};

std::optional<Breach> breachOf(const Scenario& scenario, const Misbehaviour& misbehaviour) {
    SimulatedPhone phone(scenario);
    NightWatch watch(phone, scenario);
    monitorObserver = &watch;
    phone.launch();
    phone.playFor(misbehaviour.at);
    EXPECT_FALSE(watch.breach()) << watch.breach()->what;
    misbehaviour.act(phone, *NoctaraInstance);
    phone.playToTheEnd();
    watch.endNight();
    return watch.breach();
}

TEST(TheInvariants, hold_in_a_plain_night) {
    SoakCounts counts;
    EXPECT_FALSE(playWatched(aPlainNight(), counts));
    EXPECT_EQ(counts.timesQuiet, 1U);
}

TEST(TheInvariants, are_each_broken_by_a_monitor_that_misbehaves) {
    std::vector<std::string_view> broken;
    for (const auto& misbehaviour : misbehaviours) {
        SCOPED_TRACE(misbehaviour.brokenInvariant);
        const auto breach = breachOf(aPlainNight(), misbehaviour);
        ASSERT_TRUE(breach);
        EXPECT_THAT(breach->invariant, testing::StartsWith(misbehaviour.brokenInvariant));
        broken.push_back(misbehaviour.brokenInvariant);
    }
    for (const auto sentence : invariantSentences()) {
        const bool isTested = sentence.starts_with("In a process other than SpringBoard") ||
                              std::any_of(broken.begin(), broken.end(), [&](const auto& start) {
                                  return sentence.starts_with(start);
                              });
        EXPECT_TRUE(isTested) << "no test breaks: " << sentence;
    }
}

TEST(TheInvariants, are_broken_by_a_library_that_acts_in_another_process) {
    Scenario scenario = aPlainNight();
    scenario.phone.bundle = "com.apple.Maps";
    SimulatedPhone phone(scenario);
    NightWatch watch(phone, scenario);
    phone.launch();
    EXPECT_FALSE(watch.breach());
    phone.radios.isPowered();
    ASSERT_TRUE(watch.breach());
    EXPECT_EQ(watch.breach()->what, "it calls isPowered");
}

TEST(TheInvariants, include_that_a_night_can_be_played_to_its_end) {
    Scenario scenario = aPlainNight();
    scenario.events.push_back(
        {{scenario.end.secondsSince1970 - 60},
         SettingsChange{
             {{"ScanInterval", 0}, {"TimeLimit", true}, {"StartHour", 12}, {"StopHour", 13}}}});
    SoakCounts counts;
    const auto breach = playWatched(scenario, counts);
    ASSERT_TRUE(breach);
    EXPECT_EQ(breach->invariant, "A night can be played to its end.");
    EXPECT_THAT(breach->what, HasSubstr("loops without waiting"));
}

TEST(AnExcuse, is_counted_if_a_radio_that_was_switched_by_hand_differs) {
    Scenario scenario = aPlainNight();
    scenario.events.insert(scenario.events.begin() + 1,
                           {{scenario.start.secondsSince1970 + 3600}, CellularDataSwitch{false}});
    SoakCounts counts;
    EXPECT_FALSE(playWatched(scenario, counts));
    EXPECT_EQ(counts.excuses[0], 1U);
    EXPECT_THAT(excuseSentences()[0], HasSubstr("by hand"));
}

} // namespace

} // namespace noctara
