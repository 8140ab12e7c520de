/// A scenario that is written as a file and read again is the same.
#include "night/scenario_file.h"
#include "night/scenario_text.h"
#include "soak/random_scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::Field;

Scenario readAgain(const Scenario& scenario) {
    return parseScenario(scenarioText(scenario), "written");
}

std::vector<Date> instants(const Scenario& scenario) {
    std::vector<Date> dates{scenario.start, scenario.end};
    for (const auto& wake : scenario.wakes)
        dates.push_back(wake.at);
    for (const auto& event : scenario.events)
        dates.push_back(event.at);
    return dates;
}

TEST(AScenarioAsText, is_read_as_the_same_scenario) {
    int withTwoHours = 0;
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        const auto length = seed % 2 == 0 ? NightLength::whole : NightLength::anHour;
        const Scenario scenario = parseScenario(randomScenario(seed, length), "random");
        const Scenario again = readAgain(scenario);
        EXPECT_EQ(scenarioText(again), scenarioText(scenario));
        EXPECT_EQ(again.settings, scenario.settings);
        EXPECT_EQ(instants(again), instants(scenario));
        withTwoHours += scenario.timezone == "Europe/Paris";
    }
    EXPECT_GT(withTwoHours, 5) << "no night in which the clocks can change";
}

TEST(AScenarioAsText, leaves_out_what_is_usual) {
    EXPECT_EQ(scenarioText(Scenario(), "One.\nTwo."), "# One.\n# Two.\n"
                                                      "start = 2014-03-01T22:30:00\n"
                                                      "end = 2014-03-02T08:00:00\n");
}

TEST(AScenarioAsText, keeps_every_value_of_the_phone) {
    Scenario scenario;
    scenario.phone = {.bundle = "com.apple.Maps",
                      .machine = "iPad2,1",
                      .idiom = 1,
                      .corefoundation = 847.2,
                      .capabilities = {"wifi"},
                      .rates = {DataRate::kCTRegistrationDataRate4G},
                      .telephonyManager = false,
                      .telephonyServer = false,
                      .gestalt = false,
                      .sounds = false,
                      .charger = true,
                      .posture = Acceleration{0.25, -1, 1e-9},
                      .deviceMotion = true,
                      .idleSleep = 90};
    scenario.radios = {.airplane = true,
                       .wifi = false,
                       .wifiPowered = false,
                       .bluetooth = false,
                       .bluetoothConnected = true,
                       .cellularData = false,
                       .maxRate = DataRate::kCTRegistrationDataRate2G,
                       .location = false,
                       .push = false,
                       .tethering = true,
                       .call = CallState::active};
    const Scenario::Phone phone = readAgain(scenario).phone;
    EXPECT_EQ(phone.bundle, "com.apple.Maps");
    EXPECT_EQ(phone.machine, "iPad2,1");
    EXPECT_EQ(phone.idiom, 1);
    EXPECT_EQ(phone.corefoundation, 847.2);
    EXPECT_THAT(phone.capabilities, ElementsAre("wifi"));
    EXPECT_THAT(phone.rates, ElementsAre(DataRate::kCTRegistrationDataRate4G));
    EXPECT_FALSE(phone.telephonyManager || phone.telephonyServer || phone.gestalt || phone.sounds);
    EXPECT_TRUE(phone.charger && phone.deviceMotion);
    EXPECT_EQ(std::get<Acceleration>(phone.posture).z, 1e-9);
    EXPECT_EQ(phone.idleSleep, 90);
    const Scenario::Radios radios = readAgain(scenario).radios;
    EXPECT_FALSE(radios.wifi || radios.wifiPowered || radios.bluetooth || radios.cellularData ||
                 radios.location || radios.push);
    EXPECT_TRUE(radios.airplane && radios.bluetoothConnected && radios.tethering);
    EXPECT_EQ(radios.maxRate, DataRate::kCTRegistrationDataRate2G);
    EXPECT_EQ(radios.call, CallState::active);
}

TEST(AScenarioAsText, keeps_settings_of_every_type_in_their_order) {
    Scenario scenario;
    scenario.settings = Dictionary{
        {"b", true},
        {"a key", std::int64_t{-7}},
        {"real", 3.0},
        {"text", "a \"quote\", a \\ and\na line\x7F"},
        {"date", Date{1393713000}},
        {"list", Array{std::int64_t{1}, "two", Dictionary{{"deep", Array{}}}}},
        {"", Dictionary{}},
    };
    EXPECT_EQ(readAgain(scenario).settings, scenario.settings);
}

TEST(AScenarioAsText, keeps_the_later_of_two_equal_times) {
    Scenario scenario;
    scenario.timezone = "Europe/Paris";
    scenario.start = {1414274400};      // 2014-10-26T00:00:00+02:00
    scenario.end = {1414288800 - 3600}; // 02:00:00+01:00, an hour after 02:00:00+02:00
    const double secondHour = 1414285200;
    scenario.events = {{{secondHour - 1800}, ButtonPress{}}, {{secondHour + 900}, ButtonPress{}}};
    EXPECT_EQ(instants(readAgain(scenario)), instants(scenario));
}

} // namespace

} // namespace noctara
