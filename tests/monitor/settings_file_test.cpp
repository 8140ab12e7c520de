/// The settings file: creation, missing keys, and errors.
#include "tests/monitor/a_settings_file.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace noctara {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

INSTANTIATE_TEST_SUITE_P(Kept, ASettingsFile, testing::Values(Storage::memory, Storage::disk),
                         storageName);

const std::vector<const char*> keysInOrder{
    "Enabled",     "ScanInterval", "ScreenDown",     "ActiveOnSleep",  "DetectManual",
    "TimeLimit",   "StartHour",    "StopHour",       "PlaySound",      "Vibrate",
    "EnableOnAC",  "Sensitivity",  "AirplaneSwitch", "WifiSwitch",     "BTSwitch",
    "PhoneSwitch", "EdgeSwitch",   "3GSwitch",       "LocationSwitch", "Debug",
};

const Dictionary newFile{
    {"Enabled", true},        {"ScanInterval", 1},    {"ScreenDown", true},
    {"ActiveOnSleep", true},  {"DetectManual", true}, {"TimeLimit", false},
    {"StartHour", 21},        {"StopHour", 7},        {"PlaySound", true},
    {"Vibrate", true},        {"EnableOnAC", false},  {"Sensitivity", 5},
    {"AirplaneSwitch", true}, {"WifiSwitch", false},  {"BTSwitch", false},
    {"EdgeSwitch", false},    {"3GSwitch", false},    {"LocationSwitch", false},
    {"Debug", false},         {"Stop", false},
};

/// The same keys with the same values, in whatever order.
void expectSame(const std::optional<Dictionary>& file, const Dictionary& expected) {
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size(), expected.size());
    for (const auto& [key, value] : expected) {
        ASSERT_TRUE(file->find(key)) << key;
        EXPECT_EQ(*file->find(key), value) << key;
    }
}

/// What the calls did to the file, without their values: "fileExistsAtPath: -> true".
std::vector<std::string> stepsOf(const CallLog& calls) {
    std::vector<std::string> steps;
    for (const auto& made : calls.lines) {
        if (made.operation.empty() || made.operation == "NSLog")
            continue;
        EXPECT_EQ(made.argument(0), settingsFilePath);
        const auto result = made.parsed()["result"];
        steps.push_back(made.operation +
                        (result.is_object() ? " -> dictionary" : " -> " + result.dump()));
    }
    return steps;
}

TEST_P(ASettingsFile, not_there_yet_is_created_read_back_and_completed) {
    auto& monitor = holding(std::nullopt);
    monitor._DEBUG_ = false;
    monitor.reloadPreferences();

    EXPECT_THAT(stepsOf(calls),
                ElementsAre("fileExistsAtPath: -> false", "writeToFile:atomically: -> true",
                            "fileExistsAtPath: -> true", "initWithContentsOfFile: -> dictionary",
                            "initWithContentsOfFile: -> dictionary",
                            "writeToFile:atomically: -> true"));
    EXPECT_THAT(calls.logged(),
                ElementsAre(settingsFileCreated, "0 apps to monitor", settingsFileCreated));
    EXPECT_FALSE(monitor.phoneSwitch);
    EXPECT_FALSE(monitor.recurseSafety);

    Dictionary completed = newFile;
    completed.set("PhoneSwitch", 0);
    EXPECT_EQ(completed.size(), 21U);
    expectSame(file(), completed);
}

TEST_P(ASettingsFile, made_from_nothing_first_holds_twenty_values_of_which_four_are_integers) {
    holding(std::nullopt).reloadPreferences();
    Dictionary written;
    for (const auto& made : calls.lines)
        if (made.operation == "initWithContentsOfFile:" && written.empty()) {
            const auto json = made.parsed();
            for (const auto& [key, value] : json["result"].items())
                written.set(key, value.is_boolean() ? PropertyList(value.get<bool>())
                                                    : PropertyList(value.get<std::int64_t>()));
        }
    expectSame(written, newFile);
}

TEST_P(ASettingsFile, made_from_nothing_gives_the_members_their_defaults) {
    auto& monitor = holding(std::nullopt);
    monitor.reloadPreferences();
    EXPECT_TRUE(monitor.enabled);
    EXPECT_EQ(monitor.sleepTime, 5);
    EXPECT_TRUE(monitor.screenDown);
    EXPECT_TRUE(monitor.activeOnSleep);
    EXPECT_TRUE(monitor.disableOnManualChange);
    EXPECT_FALSE(monitor.timeLimit);
    EXPECT_EQ(monitor.startTime, 21);
    EXPECT_EQ(monitor.stopTime, 7);
    EXPECT_TRUE(monitor.playSound);
    EXPECT_TRUE(monitor.vibrate);
    EXPECT_FALSE(monitor.enabledOnChargeOnly);
    EXPECT_EQ(monitor.sensitivity, 5);
    EXPECT_TRUE(monitor.airplaneSwitch);
    EXPECT_FALSE(monitor.wifiSwitch || monitor.bluetoothSwitch || monitor.phoneSwitch ||
                 monitor.edgeSwitch || monitor._3GSwitch || monitor.locationSwitch);
    EXPECT_FALSE(monitor._DEBUG_);
}

TEST_P(ASettingsFile, made_from_nothing_is_not_written_again_by_the_next_load) {
    auto& monitor = holding(std::nullopt);
    monitor.reloadPreferences();
    calls.clear();
    monitor.reloadPreferences();
    EXPECT_THAT(stepsOf(calls),
                ElementsAre("fileExistsAtPath: -> true", "initWithContentsOfFile: -> dictionary"));
}

TEST_P(ASettingsFile, not_there_yet_is_reported_while_debug_is_on) {
    holding(std::nullopt).reloadPreferences();
    const auto lines = calls.logged();
    ASSERT_GT(lines.size(), 4U);
    EXPECT_EQ(lines[0], "Noctara Rechargement du fichier de pref !");
    EXPECT_EQ(lines[1], "Noctara The file /private/var/mobile/Library/Preferences/"
                        "com.quorbit.Noctara.plist does not exists");
    EXPECT_EQ(lines[2], settingsFileCreated);
    EXPECT_EQ(lines[3], "Noctara Rechargement du fichier de pref !");
    EXPECT_EQ(lines[4], "Noctara Chargement du fichier de pref : " + settingsFilePath);
}

TEST_P(ASettingsFile, that_cannot_be_created_leaves_all_as_it_was_until_the_next_load) {
    for (const DiskState fault : {DiskState::full, DiskState::readOnly}) {
        auto& monitor = holding(std::nullopt);
        monitor.applicationsToStart = {"kept"};
        monitor.startTime = 3;
        monitor._DEBUG_ = false;
        phone().happens(DiskChange{fault});
        monitor.reloadPreferences();
        EXPECT_THAT(stepsOf(calls),
                    ElementsAre("fileExistsAtPath: -> false", "writeToFile:atomically: -> false"));
        EXPECT_THAT(calls.logged(), ElementsAre(settingsFileNotCreated));
        EXPECT_THAT(monitor.applicationsToStart, ElementsAre("kept"));
        EXPECT_FALSE(monitor.enabled);
        EXPECT_EQ(monitor.startTime, 3);
        EXPECT_FALSE(monitor.recurseSafety);
        EXPECT_FALSE(file());

        phone().happens(DiskChange{DiskState::ok});
        announce();
        EXPECT_TRUE(file());
        EXPECT_TRUE(monitor.enabled);
        EXPECT_THAT(monitor.applicationsToStart, IsEmpty());
        phone().files.remove(settingsFilePath);
    }
}

/// Takes the settings file away as soon as it is written.
class Remover final : public PhoneObserver {
public:
    Remover(SimulatedPhone& observed, const NoctaraThread& observing) :
        phone(observed), monitor(observing) {}

    void called(const Call& call) override {
        if (call.operation != Operation::writeToFileAtomically)
            return;
        phone.files.remove(settingsFilePath);
        guarded.push_back(monitor.recurseSafety);
    }
    void happens(const Happening&) override {}

    std::vector<bool> guarded; ///< Whether the monitor said to be inside its nested load.

private:
    SimulatedPhone& phone;
    const NoctaraThread& monitor;
};

TEST_P(ASettingsFile, that_vanishes_as_soon_as_it_is_created_is_created_only_twice) {
    auto& monitor = holding(std::nullopt);
    Remover remover(phone(), monitor);
    phone().observe(remover);
    monitor._DEBUG_ = false;
    monitor.reloadPreferences();
    EXPECT_THAT(calls.logged(), ElementsAre(settingsFileCreated, settingsFileNotCreated));
    EXPECT_THAT(remover.guarded, ElementsAre(false, true));
    EXPECT_FALSE(monitor.recurseSafety);
}

TEST_P(ASettingsFile, without_a_key_gets_it_at_the_cost_of_one_reading_and_one_writing) {
    auto& monitor = holding(without({"Debug", "ScreenDown", "StartHour"}));
    monitor._DEBUG_ = false;
    monitor.reloadPreferences();
    EXPECT_THAT(
        stepsOf(calls),
        ElementsAre("fileExistsAtPath: -> true", "initWithContentsOfFile: -> dictionary",
                    "initWithContentsOfFile: -> dictionary", "writeToFile:atomically: -> true",
                    "initWithContentsOfFile: -> dictionary", "writeToFile:atomically: -> true",
                    "initWithContentsOfFile: -> dictionary", "writeToFile:atomically: -> true"));
    EXPECT_THAT(calls.logged(), ElementsAre("0 apps to monitor", settingsFileCreated,
                                            settingsFileCreated, settingsFileCreated));

    std::vector<std::size_t> sizes;
    std::vector<std::string> last;
    for (const auto& made : calls.lines)
        if (made.operation == "writeToFile:atomically:") {
            const auto json = made.parsed();
            sizes.push_back(json["args"][1].size());
            last.push_back((--json["args"][1].end()).key());
        }
    EXPECT_THAT(sizes, ElementsAre(19, 20, 21));
    EXPECT_THAT(last, ElementsAre("ScreenDown", "StartHour", "Debug"));
}

TEST_P(ASettingsFile, that_is_empty_gets_every_key_in_order_as_an_integer) {
    holding(Dictionary()).reloadPreferences();
    const auto found = file();
    ASSERT_TRUE(found);
    std::vector<std::string> keys;
    std::vector<std::int64_t> values;
    for (const auto& [key, value] : *found) {
        keys.push_back(key);
        ASSERT_TRUE(value.as<std::int64_t>()) << key;
        values.push_back(*value.as<std::int64_t>());
    }
    EXPECT_THAT(keys, ElementsAreArray(keysInOrder));
    EXPECT_THAT(values, ElementsAre(1, 1, 1, 1, 1, 0, 21, 7, 1, 1, 0, 5, 1, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(calls.count("writeToFile:atomically:"), 20U);
}

TEST_P(ASettingsFile, without_enabled_switches_monitoring_on_only_at_the_second_load) {
    auto& monitor = holding(without({"Enabled"}));
    monitor.reloadPreferences();
    EXPECT_FALSE(monitor.enabled);
    EXPECT_EQ(*file()->find("Enabled"), PropertyList(1));
    announce();
    EXPECT_TRUE(monitor.enabled);
}

TEST_P(ASettingsFile, keeps_what_else_is_in_it_when_a_key_is_filled_in) {
    Dictionary expected = with({{"Version", "1.2"},
                                {"Seen", Date{1393713000}},
                                {"Token", Data{0, 255}},
                                {"Ratio", 0.5},
                                {"List", Array{1, "two", Array{}}},
                                {"Nested", Dictionary{{"deep", true}}},
                                {"launch-app-com.apple.mobiletimer", true},
                                {"Größe & <klein>", "é"}});
    Dictionary lacking = expected;
    lacking.remove("Vibrate");
    expected.set("Vibrate", 1);
    holding(lacking).reloadPreferences();
    expectSame(file(), expected);
}

TEST_P(ASettingsFile, that_cannot_be_completed_stays_and_the_failure_is_logged) {
    auto& monitor = holding(without({"PlaySound", "Sensitivity"}));
    monitor._DEBUG_ = false;
    phone().happens(DiskChange{DiskState::full});
    monitor.reloadPreferences();
    EXPECT_THAT(calls.logged(),
                ElementsAre("0 apps to monitor", settingsFileNotCreated, settingsFileNotCreated));
    EXPECT_EQ(calls.count("writeToFile:atomically:"), 2U);
    EXPECT_TRUE(monitor.enabled);
    EXPECT_FALSE(monitor.playSound);
    EXPECT_EQ(monitor.sensitivity, 5);
    expectSame(file(), without({"PlaySound", "Sensitivity"}));
}

TEST_P(ASettingsFile, that_is_damaged_is_never_overwritten_and_changes_no_setting) {
    auto& monitor = holding(with({{"StartHour", 20}, {"launch-app-one", true}}));
    monitor.reloadPreferences();
    ASSERT_THAT(monitor.applicationsToStart, ElementsAre("one"));
    phone().happens(SettingsFileChange{SettingsFileFault::damaged});
    calls.clear();
    monitor.reloadPreferences();

    std::vector<std::string> steps{"fileExistsAtPath: -> true"};
    steps.insert(steps.end(), 21, "initWithContentsOfFile: -> null");
    EXPECT_THAT(stepsOf(calls), ElementsAreArray(steps));
    std::vector<std::string> lines{"0 apps to monitor"};
    lines.insert(lines.end(), 20, settingsFileNotCreated);
    EXPECT_THAT(calls.logged(), ElementsAreArray(lines));
    EXPECT_THAT(monitor.applicationsToStart, IsEmpty());
    EXPECT_TRUE(monitor.enabled);
    EXPECT_EQ(monitor.startTime, 20);
    EXPECT_FALSE(file());
}

TEST_P(ASettingsFile, that_is_damaged_is_described_as_null_while_debug_is_on) {
    auto& monitor = holding(settings);
    phone().files.damage(settingsFilePath);
    monitor.reloadPreferences();
    EXPECT_TRUE(
        calls.hasLogged("Noctara Chargement du fichier de pref dans le dictionnaire : (null)"));
    EXPECT_EQ(calls.logged().size(), 5U + 40U);
    EXPECT_EQ(calls.logged()[5], settingsFileNotCreated);
    EXPECT_EQ(calls.logged()[6], "Noctara Enabled : 0");
    EXPECT_EQ(calls.logged().back(), "Noctara Debug : 1");
}

TEST_P(ASettingsFile, takes_one_value_without_touching_the_others) {
    auto& monitor = holding(settings);
    monitor._DEBUG_ = false;
    monitor.saveValueToFile(settingsFilePath, "Enabled", -12);
    EXPECT_THAT(stepsOf(calls), ElementsAre("initWithContentsOfFile: -> dictionary",
                                            "writeToFile:atomically: -> true"));
    EXPECT_THAT(calls.logged(), ElementsAre(settingsFileCreated));
    expectSame(file(), with({{"Enabled", -12}}));
}

TEST_P(ASettingsFile, at_another_path_takes_a_value_and_is_named_in_the_log) {
    auto& monitor = holding(settings);
    phone().files.writeByOthers("/private/var/other.plist", Dictionary());
    monitor.saveValueToFile("/private/var/other.plist", "Key", 3);
    monitor.saveValueToFile("/private/var/none.plist", "Key", 3);
    EXPECT_THAT(calls.logged(),
                ElementsAre("Noctara file /private/var/other.plist created",
                            "Noctara file /private/var/none.plist COULD NOT be created"));
    EXPECT_EQ(phone().files.content("/private/var/other.plist").value,
              PropertyList(Dictionary{{"Key", 3}}));
    EXPECT_EQ(calls.count("writeToFile:atomically:"), 1U);
    expectSame(file(), settings);
}

TEST_P(ASettingsFile, not_there_at_the_first_start_gives_a_night_with_the_defaults) {
    switchOn(store(GetParam()));
    launch();
    fallAsleep();
    EXPECT_TRUE(phone().radios.states().airplane);
    EXPECT_TRUE(file()->find("PhoneSwitch"));
}

class ASettingsFileOnDisk : public SettingsStage {
protected:
    std::string text() {
        std::ifstream in(placeOnDisk(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
};

TEST_F(ASettingsFileOnDisk, is_written_as_xml_and_leaves_nothing_beside_it) {
    makeOn(Storage::disk, std::nullopt).reloadPreferences();
    EXPECT_THAT(text(), StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
    for (const auto& file : std::filesystem::directory_iterator(placeOnDisk().parent_path()))
        EXPECT_EQ(file.path().extension(), ".plist") << file;
}

TEST_F(ASettingsFileOnDisk, that_is_no_dictionary_is_treated_like_a_damaged_one) {
    auto& monitor = makeOn(Storage::disk, settings);
    for (const char* content : {"<plist version=\"1.0\"><array><true/></array></plist>", "", "{",
                                "bplist00", "<plist version=\"1.0\"><dict><key>Enabled</key>"}) {
        std::ofstream(placeOnDisk()) << content;
        calls.clear();
        monitor.reloadPreferences();
        EXPECT_EQ(calls.of({"initWithContentsOfFile:"}).size(), 21U) << content;
        EXPECT_THAT(calls.of({"initWithContentsOfFile:"}), Each(testing::EndsWith("] -> null")));
        EXPECT_THAT(calls.logged(), Contains(settingsFileNotCreated).Times(20));
        EXPECT_FALSE(monitor.enabled);
        EXPECT_EQ(text(), content);
    }
}

TEST_F(ASettingsFileOnDisk, whose_place_is_taken_by_a_folder_is_there_but_cannot_be_read) {
    auto& monitor = makeOn(Storage::disk, std::nullopt);
    std::filesystem::create_directories(placeOnDisk());
    monitor.reloadPreferences();
    EXPECT_THAT(calls.of({"writeToFile:atomically:"}), IsEmpty());
    EXPECT_THAT(calls.logged(), Contains(settingsFileNotCreated).Times(20));
    EXPECT_THAT(calls.logged(), Not(Contains(settingsFileCreated)));
}

} // namespace
} // namespace noctara
