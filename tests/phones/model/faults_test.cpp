/// The simulated phone's files, in memory or on a disk: damaged and missing files, a disk that
/// cannot be written, and other faults.
#include "phones/model/files_model.h"

#include "input/temporary_folder.h"
#include "phones/simulated/simulated_phone.h"
#include "tests/a_night.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace noctara {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Gt;
using testing::IsEmpty;
using testing::StartsWith;

class TheSimulatedFiles : public ANight {
protected:
    const std::string path = settingsFilePath;

    Files& files() { return *phone().platform().files; }

    std::optional<Dictionary> settingsFile() {
        const auto file = phone().files.content(path);
        const auto* dictionary = file.value ? file.value->as<Dictionary>() : nullptr;
        return dictionary ? std::optional(*dictionary) : std::nullopt;
    }

    std::vector<std::string> night() {
        std::vector<std::string> found;
        for (const auto& line : calls.lines)
            found.push_back(line.json);
        return found;
    }

    /// The operations on files.
    std::vector<std::string> fileCalls() {
        return calls.of({"fileExistsAtPath:", "initWithContentsOfFile:", "writeToFile:atomically:",
                         "propertyListFromData:"});
    }
};

/// Each test runs with files in memory and with real files.
class EitherFileStore : public TheSimulatedFiles, public testing::WithParamInterface<bool> {
protected:
    void switchOnWithStore() {
        switchOn(GetParam() ? makeDirectoryFileStore(folder.path) : makeMemoryFileStore());
    }

    TemporaryFolder folder;
};

INSTANTIATE_TEST_SUITE_P(, EitherFileStore, testing::Bool(), [](const auto& store) {
    return store.param ? "of_real_files" : "in_memory";
});

const Dictionary someOfEverything{{"bool", true},
                                  {"integer", 42},
                                  {"large", std::int64_t{-9007199254740993}},
                                  {"real", 0.1},
                                  {"text", "d\xC3\xA9j\xC3\xA0 <vu> & \"\" "},
                                  {"date", Date{1393713000}},
                                  {"data", Data{0, 1, 255}},
                                  {"array", Array{1, "two", Array{}, Dictionary{}}},
                                  {"dictionary", Dictionary{{"z", 1}, {"a", false}}}};

TEST_P(EitherFileStore, reads_what_was_written) {
    scenario.settings = std::nullopt;
    switchOnWithStore();
    EXPECT_FALSE(files().exists(path));
    EXPECT_EQ(files().readDictionary(path), std::nullopt);
    std::string error;
    EXPECT_FALSE(files().parse(path, error));
    EXPECT_NE(error, "");

    EXPECT_TRUE(files().writeDictionary(path, someOfEverything));
    EXPECT_TRUE(files().exists(path));
    EXPECT_EQ(files().readDictionary(path), someOfEverything);
    error.clear();
    EXPECT_EQ(*files().parse(path, error), PropertyList(someOfEverything));
    EXPECT_EQ(error, "");
}

TEST_P(EitherFileStore, finds_a_file_under_both_names_of_its_folder) {
    switchOnWithStore();
    EXPECT_TRUE(files().writeDictionary("/var/mobile/a.plist", {{"a", 1}}));
    EXPECT_EQ(files().readDictionary("/private/var/mobile/a.plist"), (Dictionary{{"a", 1}}));
}

TEST_P(EitherFileStore, keeps_the_old_file_whole_on_a_full_or_read_only_disk) {
    scenario.settings = settings;
    switchOnWithStore();
    for (const DiskState disk : {DiskState::full, DiskState::readOnly}) {
        phone().happens(DiskChange{disk});
        EXPECT_FALSE(files().writeDictionary(path, {{"Enabled", false}}));
        EXPECT_FALSE(files().writeDictionary("/private/var/new.plist", {{"a", 1}}));
        EXPECT_EQ(files().readDictionary(path), settings);
        EXPECT_FALSE(files().exists("/private/var/new.plist"));
    }
    phone().happens(DiskChange{DiskState::ok});
    EXPECT_TRUE(files().writeDictionary(path, {{"Enabled", false}}));
    EXPECT_EQ(files().readDictionary(path), (Dictionary{{"Enabled", false}}));
}

TEST_P(EitherFileStore, can_have_its_settings_file_damaged_and_taken_away) {
    scenario.settings = settings;
    switchOnWithStore();
    phone().happens(SettingsFileChange{SettingsFileFault::damaged});
    EXPECT_TRUE(files().exists(path));
    EXPECT_EQ(files().readDictionary(path), std::nullopt);
    std::string error;
    EXPECT_FALSE(files().parse(path, error));
    EXPECT_NE(error, "");

    phone().happens(SettingsFileChange{SettingsFileFault::missing});
    EXPECT_FALSE(files().exists(path));
    EXPECT_EQ(files().readDictionary(path), std::nullopt);
}

TEST_P(EitherFileStore, merges_changed_settings_in_their_places) {
    scenario.settings = Dictionary{{"Enabled", true}, {"Debug", false}, {"Stop", false}};
    switchOnWithStore();
    change({{"Debug", true}, {"New", 7}});
    EXPECT_EQ(settingsFile(),
              (Dictionary{{"Enabled", true}, {"Debug", true}, {"Stop", false}, {"New", 7}}));
    phone().happens(SettingsRemoval{{"Enabled", "New", "never there"}});
    EXPECT_EQ(settingsFile(), (Dictionary{{"Debug", true}, {"Stop", false}}));
}

TEST_F(TheSimulatedFiles, give_the_same_calls_in_memory_and_as_real_files) {
    const TemporaryFolder folder;
    scenario.end.secondsSince1970 = scenario.start.secondsSince1970 + 5400;
    scenario.phone.idleSleep = 300;
    settings = {{"ScanInterval", 5}, {"ActiveOnSleep", true}, {"AirplaneSwitch", false},
                {"Debug", true},     {"PhoneSwitch", true},   {"note", "caf\xC3\xA9"}};
    const double start = scenario.start.secondsSince1970;
    scenario.wakes = {{"com.apple.alarm", {start + 4000.5}}};
    scenario.events = {{{start + 60}, PostureChange{ScreenDown}},
                       {{start + 200}, SettingsChange{{{"Sensitivity", 3}, {"real", 0.3}}}},
                       {{start + 250}, SettingsRemoval{{"Vibrate"}}},
                       {{start + 700}, DiskChange{DiskState::full}},
                       {{start + 720}, SettingsFileChange{SettingsFileFault::missing}},
                       {{start + 730}, SettingsChange{{{"Enabled", true}}}},
                       {{start + 800}, DiskChange{DiskState::ok}},
                       {{start + 810}, SettingsChange{{{"Debug", true}}}},
                       {{start + 820}, SettingsFileChange{SettingsFileFault::damaged}},
                       {{start + 830}, SettingsChange{{{"TimeLimit", false}}}},
                       {{start + 5000}, PostureChange{InHand}}};
    scenario.settings = settings;

    std::vector<std::vector<std::string>> nights;
    for (const bool real : {false, true}) {
        calls.clear();
        switchOn(real ? makeDirectoryFileStore(folder.path) : makeMemoryFileStore());
        launch();
        phone().playToTheEnd();
        nights.push_back(night());
        EXPECT_THAT(fileCalls().size(), Gt(20U));
    }
    EXPECT_EQ(nights[0], nights[1]);
}

TEST_F(TheSimulatedFiles, can_be_seen_from_outside_as_real_files) {
    const TemporaryFolder folder;
    scenario.settings = settings;
    scenario.radios.push = false;
    switchOn(makeDirectoryFileStore(folder.path));
    for (const char* file :
         {"private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist",
          "private/var/preferences/SystemConfiguration/com.apple.radios.plist",
          "private/var/preferences/SystemConfiguration/com.apple.AutoWake.plist",
          "private/var/mobile/Library/Preferences/com.apple.preferences.network.plist",
          "private/var/mobile/Library/Preferences/com.apple.locationd.plist",
          "private/var/mobile/Library/Preferences/com.apple.persistentconnection-mcc.plist"}) {
        std::ifstream in(folder.path / file);
        std::string firstLine;
        EXPECT_TRUE(std::getline(in, firstLine)) << file;
        EXPECT_THAT(firstLine, StartsWith("<?xml")) << file;
    }
}

TEST_F(TheSimulatedFiles, of_the_system_are_up_to_date_outside_at_the_end_of_the_night) {
    const TemporaryFolder folder;
    scenario.settings = settings;
    scenario.end.secondsSince1970 = scenario.start.secondsSince1970 + 60;
    switchOn(makeDirectoryFileStore(folder.path));
    launch();
    lies(ScreenDown);
    phone().playToTheEnd();
    const auto file =
        makeDirectoryFileStore(folder.path)
            ->read("/private/var/preferences/SystemConfiguration/com.apple.radios.plist");
    EXPECT_EQ(file.value, PropertyList(Dictionary{{"AirplaneMode", true}}));
}

TEST_F(TheSimulatedFiles, of_the_system_are_not_written_when_they_are_read) {
    const TemporaryFolder folder;
    switchOn(makeDirectoryFileStore(folder.path));
    const std::string radios =
        "/private/var/preferences/SystemConfiguration/com.apple.radios.plist";
    std::filesystem::remove(folder.path.string() + radios);
    EXPECT_EQ(files().readDictionary(radios), (Dictionary{{"AirplaneMode", false}}));
    EXPECT_FALSE(std::filesystem::exists(folder.path.string() + radios));
}

TEST_F(TheSimulatedFiles, changed_by_others_are_no_calls) {
    scenario.settings = settings;
    switchOn();
    change({{"Debug", true}});
    phone().happens(SettingsRemoval{{"Debug"}});
    phone().happens(SettingsFileChange{SettingsFileFault::damaged});
    phone().happens(SettingsFileChange{SettingsFileFault::missing});
    phone().happens(DiskChange{DiskState::full});
    EXPECT_THAT(calls.calls(),
                ElementsAre(R"(event settings {"Debug":true})",
                            R"(event remove_settings ["Debug"])",
                            R"(event settings_file "damaged")", R"(event settings_file "missing")",
                            R"(event disk "full")"));
}

TEST_F(TheSimulatedFiles, announce_changed_settings_after_the_file_is_written) {
    begin();
    playReadings(1);
    calls.clear();
    change({{"Sensitivity", 9}});
    EXPECT_EQ(calls.lines.front().text, R"(event settings {"Sensitivity":9})");
    EXPECT_EQ(calls.count("initWithContentsOfFile:"), 1U);
    EXPECT_EQ(monitor().sensitivity, 9);
}

TEST_F(TheSimulatedFiles, announce_settings_that_stayed_as_they_were) {
    begin();
    playReadings(1);
    calls.clear();
    change({{"Sensitivity", 5}});
    EXPECT_EQ(calls.count("initWithContentsOfFile:"), 1U);
}

TEST_F(TheSimulatedFiles, announce_settings_that_a_full_disk_did_not_take) {
    begin();
    playReadings(1);
    phone().happens(DiskChange{DiskState::full});
    calls.clear();
    change({{"Sensitivity", 9}});
    EXPECT_EQ(calls.count("initWithContentsOfFile:"), 1U);
    EXPECT_EQ(monitor().sensitivity, 5);
    EXPECT_EQ(settingsFile(), settings);
}

TEST_F(TheSimulatedFiles, damaged_or_missing_are_not_announced) {
    begin();
    playReadings(1);
    calls.clear();
    phone().happens(SettingsFileChange{SettingsFileFault::damaged});
    phone().happens(SettingsFileChange{SettingsFileFault::missing});
    EXPECT_THAT(fileCalls(), IsEmpty());
}

TEST_F(TheSimulatedFiles, that_are_missing_are_made_anew_by_the_settings_screen) {
    switchOn();
    for (const auto& [fault, word] : settingsFileFaultWords) {
        phone().happens(SettingsFileChange{fault});
        change({{"Enabled", true}});
        EXPECT_EQ(settingsFile(), (Dictionary{{"Enabled", true}})) << word;
    }
}

TEST_F(TheSimulatedFiles, are_settings_only_when_the_scenario_has_some) {
    switchOn();
    EXPECT_FALSE(files().exists(path));
    launch();
    playReadings(1);
    EXPECT_TRUE(files().exists(path));
}

TEST_F(TheSimulatedFiles, include_the_two_sounds_unless_they_are_not_installed) {
    for (const bool installed : {true, false}) {
        scenario.phone.sounds = installed;
        switchOn();
        SoundID sound = 77;
        EXPECT_EQ(phone().platform().sounds->create("/a.mp3", sound), installed);
        EXPECT_EQ(sound, installed ? 1U : 77U);
    }
    EXPECT_THAT(calls.calls(), ElementsAre(R"(AudioServicesCreateSystemSoundID ["/a.mp3"] -> 1)",
                                           R"(AudioServicesCreateSystemSoundID ["/a.mp3"] -> 0)"));
}

TEST_F(TheSimulatedFiles, say_nothing_of_an_accelerometer_that_delivers_no_sample) {
    scenario.phone.posture = NamedPosture::None;
    begin();
    playReadings(1);
    EXPECT_THAT(calls.of({"deviceMotion", "accelerometerData"}),
                ElementsAre("deviceMotion -> null", "accelerometerData -> null"));
    lies(ScreenDown);
    playReadings(1);
    EXPECT_THAT(calls.of({"accelerometerData"}), Contains("accelerometerData -> [0.0,0.0,1.0]"));
}

} // namespace

} // namespace noctara
