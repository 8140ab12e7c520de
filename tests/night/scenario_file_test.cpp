/// The scenario that is read from a file.
#include "night/scenario_file.h"

#include "input/bad_input.h"
#include "tests/night/a_scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

Event onlyEvent(const std::string& text) {
    const Scenario scenario = parse(text);
    EXPECT_EQ(scenario.events.size(), 1U);
    return scenario.events.at(0).event;
}

/// The only event of a scenario with this text.
template <typename Kind>
Kind action(const std::string& text) {
    return std::get<Kind>(onlyEvent("[[event]]\nat = 23:00:00\n" + text));
}

struct TruthAction {
    std::string_view name;
    bool (*value)(const std::string& text);
};

template <typename Kind, bool Kind::*member>
constexpr TruthAction truthAction{
    Kind::name, [](const std::string& text) { return action<Kind>(text).*member; }};

std::string fileText(const std::filesystem::path& path) {
    std::ifstream stream(path);
    EXPECT_TRUE(stream) << path;
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

TEST(AScenario, of_an_empty_file_is_the_default_night) {
    const Scenario empty = parse("");
    const Scenario defaults;
    EXPECT_EQ(empty.start, Date{evening});
    EXPECT_EQ(empty.end, Date{evening + 9.5 * hour});
    EXPECT_EQ(empty.start, defaults.start);
    EXPECT_EQ(empty.end, defaults.end);
    EXPECT_EQ(empty.timezone, "UTC");
    EXPECT_EQ(empty.phone.posture, defaults.phone.posture);
    EXPECT_EQ(empty.settings, std::nullopt);
    EXPECT_TRUE(empty.applications.empty());
    EXPECT_TRUE(empty.wakes.empty());
    EXPECT_TRUE(empty.events.empty());
}

TEST(AScenario, takes_its_phone_from_the_file) {
    const auto phone = parse(R"([phone]
        bundle = "com.example.other"
        machine = "iPad2,1"
        idiom = 1
        corefoundation = 847
        capabilities = []
        rates = ["4G", "2G"]
        telephony_manager = false
        telephony_server = false
        gestalt = false
        sounds = false
        charger = true
        posture = [0, -1.5, 0.25]
        device_motion = true
        idle_sleep = 604800)")
                           .phone;
    EXPECT_EQ(phone.bundle, "com.example.other");
    EXPECT_EQ(phone.machine, "iPad2,1");
    EXPECT_EQ(phone.idiom, 1);
    EXPECT_EQ(phone.corefoundation, 847.0);
    EXPECT_TRUE(phone.capabilities.empty());
    EXPECT_THAT(phone.rates, ElementsAre(DataRate::kCTRegistrationDataRate4G,
                                         DataRate::kCTRegistrationDataRate2G));
    EXPECT_FALSE(phone.telephonyManager);
    EXPECT_FALSE(phone.telephonyServer);
    EXPECT_FALSE(phone.gestalt);
    EXPECT_FALSE(phone.sounds);
    EXPECT_TRUE(phone.charger);
    EXPECT_EQ(phone.posture, Posture(Acceleration{0, -1.5, 0.25}));
    EXPECT_TRUE(phone.deviceMotion);
    EXPECT_EQ(phone.idleSleep, 604800);
}

TEST(AScenario, takes_its_radios_from_the_file) {
    const auto radios = parse(R"([radios]
        airplane = true
        wifi = false
        wifi_powered = false
        bluetooth = false
        bluetooth_connected = true
        cellular_data = false
        max_rate = "4G"
        location = false
        push = false
        tethering = true
        call = "outgoing")")
                            .radios;
    EXPECT_TRUE(radios.airplane);
    EXPECT_FALSE(radios.wifi);
    EXPECT_FALSE(radios.wifiPowered);
    EXPECT_FALSE(radios.bluetooth);
    EXPECT_TRUE(radios.bluetoothConnected);
    EXPECT_FALSE(radios.cellularData);
    EXPECT_EQ(radios.maxRate, DataRate::kCTRegistrationDataRate4G);
    EXPECT_FALSE(radios.location);
    EXPECT_FALSE(radios.push);
    EXPECT_TRUE(radios.tethering);
    EXPECT_EQ(radios.call, CallState::outgoing);
}

TEST(AScenario, keeps_settings_of_every_type_in_the_order_of_the_file) {
    const Scenario scenario = parse(R"(timezone = "Europe/Paris"
        [settings]
        z = true
        a = -9223372036854775808
        real = 1.5
        text = "é"
        local = 2014-07-01T12:00:00
        instant = 2014-07-01T12:00:00-02:30
        list = [1, [false], {k = 2014-01-01T00:00:00Z}]
        table.y = 1
        table.x = 2)");
    const double noon = 1404208800; // 2014-07-01T10:00:00Z
    const Dictionary expected{
        {"z", true},
        {"a", std::numeric_limits<std::int64_t>::min()},
        {"real", 1.5},
        {"text", "é"},
        {"local", Date{noon}},
        {"instant", Date{noon + 4.5 * hour}},
        {"list", Array{1, Array{false}, Dictionary{{"k", Date{1388534400}}}}},
        {"table", Dictionary{{"y", 1}, {"x", 2}}},
    };
    ASSERT_TRUE(scenario.settings);
    EXPECT_EQ(*scenario.settings, expected);
    std::vector<std::string> order;
    for (const auto& entry : *scenario.settings)
        order.push_back(entry.key);
    EXPECT_THAT(order, ElementsAre("z", "a", "real", "text", "local", "instant", "list", "table"));
}

TEST(AScenario, with_an_empty_settings_table_has_an_empty_settings_file) {
    EXPECT_EQ(parse("[settings]").settings, Dictionary());
}

TEST(AScenario, lists_applications) {
    const auto applications = parse(R"(
        [[application]]
        identifier = "a"
        [[application]]
        identifier = "b"
        name = "B"
        icon = false
        front = true
        [[application]]
        identifier = "c"
        running = true)")
                                  .applications;
    ASSERT_EQ(applications.size(), 3U);
    EXPECT_EQ(applications[0].name, "a");
    EXPECT_FALSE(applications[0].running);
    EXPECT_TRUE(applications[0].icon);
    EXPECT_FALSE(applications[0].front);
    EXPECT_EQ(applications[1].name, "B");
    EXPECT_TRUE(applications[1].front);
    EXPECT_TRUE(applications[1].running) << "because it is in front";
    EXPECT_FALSE(applications[1].icon);
    EXPECT_TRUE(applications[2].running);
}

TEST(AScenario, lists_wake_ups_by_date_or_by_the_next_time_after_the_start) {
    const auto wakes = parse(R"(
        [[wake]]
        scheduledby = "com.apple.alarm"
        at = 2014-02-01T06:45:00
        [[wake]]
        scheduledby = "b"
        at = 22:30:00
        [[wake]]
        scheduledby = "c"
        at = 22:30:01)")
                           .wakes;
    ASSERT_EQ(wakes.size(), 3U);
    EXPECT_EQ(wakes[0].scheduledBy, "com.apple.alarm");
    EXPECT_EQ(wakes[0].at, Date{1391237100});
    EXPECT_EQ(wakes[1].at, Date{evening + 24 * hour});
    EXPECT_EQ(wakes[2].at, Date{evening + 1});
}

TEST(AnEvent, has_the_value_of_its_action) {
    EXPECT_EQ(action<PostureChange>("posture = \"in-pocket\"").posture,
              Posture(NamedPosture::InPocket));
    EXPECT_EQ(action<PostureChange>("posture = [1, 2, 3]").posture, Posture(Acceleration{1, 2, 3}));
    for (const auto& [name, value] :
         {truthAction<ChargerChange, &ChargerChange::plugged>,
          truthAction<AirplaneModeSwitch, &AirplaneModeSwitch::on>,
          truthAction<WifiSwitch, &WifiSwitch::on>,
          truthAction<BluetoothSwitch, &BluetoothSwitch::on>,
          truthAction<CellularDataSwitch, &CellularDataSwitch::on>,
          truthAction<LocationSwitch, &LocationSwitch::on>,
          truthAction<BluetoothConnection, &BluetoothConnection::connected>,
          truthAction<TelephonyServerChange, &TelephonyServerChange::answers>}) {
        EXPECT_TRUE(value(std::string(name) + " = true")) << name;
        EXPECT_FALSE(value(std::string(name) + " = false")) << name;
    }
    EXPECT_EQ(action<SettingsChange>("settings = {}").changed, Dictionary());
    EXPECT_EQ(action<SettingsChange>("[event.settings]\nEnabled = false").changed,
              (Dictionary{{"Enabled", false}}));
    EXPECT_THAT(action<SettingsRemoval>("remove_settings = [\"a\", \"b\"]").keys,
                ElementsAre("a", "b"));
    EXPECT_EQ(action<CallChange>("call = \"active\"").state, CallState::active);
    EXPECT_EQ(action<MaxRateChange>("max_rate = \"2G\"").rate, DataRate::kCTRegistrationDataRate2G);
    EXPECT_EQ(action<DiskChange>("disk = \"read-only\"").state, DiskState::readOnly);
    EXPECT_EQ(action<SettingsFileChange>("settings_file = \"damaged\"").fault,
              SettingsFileFault::damaged);
    EXPECT_EQ(action<PowerMessage>("power_message = 0xFFFFFFFF").type, 4294967295U);
    EXPECT_EQ(action<ClockChange>("clock = 2014-03-01T22:30:00").to, Date{evening});
    EXPECT_NO_THROW(action<ButtonPress>("button = true"));
    EXPECT_NO_THROW(action<MonitorStop>("stop = true"));
    EXPECT_EQ(nameOf(onlyEvent("event = [{at = 23:00:00, stop = true}]")), "stop");
}

class AScenarioFile : public testing::Test {
protected:
    void SetUp() override {
        folder = std::filesystem::temp_directory_path() /
                 ("noctara-scenario-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::filesystem::path written(const std::string& text) const {
        const auto path = folder / "night.toml";
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    static std::string refusalOf(const std::filesystem::path& path) {
        try {
            readScenario(path);
        } catch (const BadInput& error) {
            return error.what();
        }
        return {};
    }

    std::filesystem::path folder;
};

TEST_F(AScenarioFile, is_read_whole) {
    EXPECT_EQ(readScenario(written("timezone = \"Asia/Kolkata\"\nhours = 1")).timezone,
              "Asia/Kolkata");
    EXPECT_EQ(readScenario(written("")).timezone, "UTC");
    const auto path = written("hours = 0");
    EXPECT_THAT(refusalOf(path), StartsWith(path.string() + ":1:9: hours is out of range; "));
}

TEST_F(AScenarioFile, of_at_most_a_mebibyte_is_accepted) {
    EXPECT_EQ(refusalOf(written(std::string(1024 * 1024, '\n'))), "");
    const auto path = written(std::string(1024 * 1024 + 1, '\n'));
    EXPECT_EQ(refusalOf(path),
              path.string() + ": larger than 1 MiB; give the name of a scenario file");
}

TEST_F(AScenarioFile, that_cannot_be_read_is_refused) {
    const auto missing = folder / "missing.toml";
    EXPECT_EQ(refusalOf(missing),
              missing.string() + ": no such file; give the name of a scenario file");
    EXPECT_EQ(refusalOf(folder),
              folder.string() + ": a folder, not a file; give the name of a scenario file");
}

TEST(TheManual, has_only_valid_scenarios) {
    const std::string text =
        fileText(std::filesystem::path(NOCTARA_SOURCE_DIR) / "docs/scenarios.md");
    const std::string fence = "```toml\n";
    int blocks = 0;
    for (std::size_t at = text.find(fence); at != text.npos; at = text.find(fence, at)) {
        at += fence.size();
        const std::string block = text.substr(at, text.find("```", at) - at);
        EXPECT_EQ(refusal(block), "") << block;
        ++blocks;
    }
    EXPECT_GE(blocks, 2);
}

TEST(TheManual, gives_the_defaults_in_its_complete_example) {
    const std::string text =
        fileText(std::filesystem::path(NOCTARA_SOURCE_DIR) / "docs/scenarios.md");
    const std::size_t begin = text.find("```toml\n") + 8;
    const Scenario example = parse(text.substr(begin, text.find("```", begin) - begin));
    const Scenario::Phone phone;
    EXPECT_EQ(example.phone.machine, phone.machine);
    EXPECT_EQ(example.phone.corefoundation, phone.corefoundation);
    EXPECT_EQ(example.phone.capabilities, phone.capabilities);
    EXPECT_EQ(example.phone.rates, phone.rates);
    EXPECT_EQ(example.phone.posture, phone.posture);
    EXPECT_EQ(example.radios.maxRate, Scenario::Radios().maxRate);
    EXPECT_EQ(example.start, Date{evening - hour});
    EXPECT_EQ(example.end, Date{evening + 8.5 * hour});
    ASSERT_EQ(example.events.size(), 6U);
    EXPECT_EQ(example.events[2].at, Date{evening + 1.75 * hour});
    const auto* posture = std::get_if<PostureChange>(&example.events[5].event);
    ASSERT_NE(posture, nullptr);
    EXPECT_EQ(posture->posture, Posture(Acceleration{0, -0.5, -0.87}));
}

} // namespace
} // namespace noctara
