/// The table of keys, compared with what the monitor and the settings page do.
#include "settings/setting_keys.h"

#include "phones/model/property_list_file.h"
#include "settings/setting_words.h"
#include "tests/a_night.h"

#include <fstream>
#include <map>
#include <sstream>
#include <string_view>

namespace noctara {

namespace {

/// What the monitor does with a settings file when the home screen starts.
class ASettingKey : public ANight {
protected:
    /// The settings of the monitor after it has loaded this file.
    std::map<std::string_view, std::int32_t> loaded(const Dictionary& file) {
        settings = file;
        begin();
        playFor(1);
        const NoctaraThread& m = monitor();
        return {
            {"Enabled", m.enabled},
            {"TimeLimit", m.timeLimit},
            {"StartHour", m.startTime},
            {"StopHour", m.stopTime},
            {"EnableOnAC", m.enabledOnChargeOnly},
            {"DetectManual", m.disableOnManualChange},
            {"ActiveOnSleep", m.activeOnSleep},
            {"ScreenDown", m.screenDown},
            {"Sensitivity", m.sensitivity},
            {"ScanInterval", m.sleepTime},
            {"AirplaneSwitch", m.airplaneSwitch},
            {"PhoneSwitch", m.phoneSwitch},
            {"WifiSwitch", m.wifiSwitch},
            {"BTSwitch", m.bluetoothSwitch},
            {"EdgeSwitch", m.edgeSwitch},
            {"3GSwitch", m._3GSwitch},
            {"LocationSwitch", m.locationSwitch},
            {"PlaySound", m.playSound},
            {"Vibrate", m.vibrate},
            {"Debug", m._DEBUG_},
        };
    }

    /// The settings file on the phone.
    Dictionary file() { return *phone().files.content(settingsFilePath).value->as<Dictionary>(); }

    /// Every other setting has neither its default nor the value that it has when it is missing.
    static Dictionary with(std::string_view key, std::int32_t value) {
        Dictionary all;
        for (const auto& other : settingKeys())
            all.set(other.name, other.kind == SettingKey::Kind::onOff ? other.standard == 0 : 3);
        all.set(key, value);
        return all;
    }
};

TEST_F(ASettingKey, that_is_missing_at_the_start_counts_as_the_table_says) {
    for (const auto& key : settingKeys()) {
        const Dictionary present = with(key.name, key.whenMissing);
        Dictionary missing = present;
        missing.remove(key.name);
        EXPECT_EQ(loaded(missing), loaded(present)) << key.name;
    }
}

TEST_F(ASettingKey, that_is_missing_gets_the_default_of_the_table) {
    loaded({});
    const Dictionary written = file();
    for (const auto& key : settingKeys()) {
        const PropertyList* const filledIn = written.find(key.name);
        EXPECT_EQ(filledIn != nullptr, key.name != "Stop") << key.name;
        EXPECT_EQ(filledIn ? filledIn->intValue() : key.standard, key.standard) << key.name;
    }
}

TEST_F(ASettingKey, is_in_the_table_if_and_only_if_the_monitor_knows_it) {
    scenario.settings = std::nullopt;
    switchOn();
    launch();
    playFor(1);
    EXPECT_EQ(file().size(), settingKeys().size());
    for (const auto& [name, value] : file()) {
        const SettingKey* const key = findSettingKey(name);
        ASSERT_TRUE(key) << name;
        EXPECT_EQ(value.intValue(), key->standard) << name;
        EXPECT_EQ(value.as<std::int64_t>() != nullptr && name != "PhoneSwitch",
                  key->kind == SettingKey::Kind::number)
            << name;
    }
}

TEST_F(ASettingKey, has_the_default_and_the_range_of_the_settings_page) {
    const auto page =
        readPropertyListFile(NOCTARA_SOURCE_DIR "/packaging/phone/SettingsPage.plist");
    std::size_t cells = 0;
    for (const auto& item : *page.value->as<Dictionary>()->find("items")->as<Array>()) {
        const Dictionary& cell = *item.as<Dictionary>();
        if (!cell.find("key"))
            continue;
        ++cells;
        const SettingKey* const key = findSettingKey(*cell.find("key")->as<std::string>());
        ASSERT_TRUE(key) << *cell.find("key")->as<std::string>();
        EXPECT_EQ(cell.find("default")->intValue(), key->standard) << key->name;
        const PropertyList* const values = cell.find("validValues");
        EXPECT_EQ(values != nullptr, key->kind == SettingKey::Kind::number) << key->name;
        if (values) {
            EXPECT_EQ(values->as<Array>()->front().intValue(), key->least) << key->name;
            EXPECT_EQ(values->as<Array>()->back().intValue(), key->most) << key->name;
        }
    }
    EXPECT_EQ(cells + 1, settingKeys().size()) << "the page has all keys but Stop";
}

TEST_F(ASettingKey, is_in_the_manual_if_it_does_not_count_as_its_default_when_it_is_missing) {
    std::ostringstream text;
    text << std::ifstream(NOCTARA_SOURCE_DIR "/docs/settings.md").rdbuf();
    const std::string manual = text.str();
    const std::string missing = manual.substr(manual.find("### Missing settings"));
    for (const auto& key : settingKeys()) {
        const std::string row = "| `" + std::string(key.name) + "` | ";
        const std::string meaning = row + settingInWords(key, key.whenMissing);
        const bool isTold = key.whenMissing != key.standard;
        EXPECT_EQ(missing.find(row) != missing.npos, isTold) << row;
        EXPECT_EQ(missing.find(meaning) != missing.npos, isTold) << meaning;
    }
}

TEST_F(ASettingKey, of_an_application_holds_its_identifier) {
    EXPECT_EQ(identifierInKey("launch-app-com.example.radio"), "com.example.radio");
    EXPECT_EQ(identifierInKey("launch-app-"), "");
    EXPECT_EQ(identifierInKey("Launch-app-com.example.radio"), std::nullopt);
}

TEST_F(ASettingKey, is_suggested_for_a_misspelt_one) {
    EXPECT_EQ(nearestSettingKey("sensitivty"), "Sensitivity");
    EXPECT_EQ(nearestSettingKey("wifi"), "WifiSwitch");
    EXPECT_EQ(nearestSettingKey("Version"), std::nullopt);
}

} // namespace

} // namespace noctara
