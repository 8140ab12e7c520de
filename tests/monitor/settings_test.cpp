/// Loading of the settings: each setting's key, conversion, default and log line.
#include "tests/monitor/a_settings_file.h"

#include <limits>

namespace noctara {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

template <auto member>
std::int32_t read(const NoctaraThread& monitor) {
    return monitor.*member;
}

struct Setting {
    const char* key;
    std::int32_t (*member)(const NoctaraThread&);
    std::int32_t initial;  ///< Before the first load.
    std::int32_t filledIn; ///< Written into a file that lacks the key.
    PropertyList other;    ///< A value that is neither.
    std::int32_t taken;    ///< What the member makes of it.
};

/// In the order in which they are taken over.
const std::vector<Setting> everySetting{
    {"Enabled", read<&NoctaraThread::enabled>, 0, 1, false, 0},
    {"ScanInterval", read<&NoctaraThread::sleepTime>, 0, 1, 3, 15},
    {"ScreenDown", read<&NoctaraThread::screenDown>, 0, 1, false, 0},
    {"ActiveOnSleep", read<&NoctaraThread::activeOnSleep>, 0, 1, false, 0},
    {"DetectManual", read<&NoctaraThread::disableOnManualChange>, 0, 1, false, 0},
    {"TimeLimit", read<&NoctaraThread::timeLimit>, 0, 0, true, 1},
    {"StartHour", read<&NoctaraThread::startTime>, 21, 21, 19, 19},
    {"StopHour", read<&NoctaraThread::stopTime>, 7, 7, 10, 10},
    {"PlaySound", read<&NoctaraThread::playSound>, 0, 1, false, 0},
    {"Vibrate", read<&NoctaraThread::vibrate>, 0, 1, false, 0},
    {"EnableOnAC", read<&NoctaraThread::enabledOnChargeOnly>, 0, 0, true, 1},
    {"Sensitivity", read<&NoctaraThread::sensitivity>, 5, 5, 9, 9},
    {"AirplaneSwitch", read<&NoctaraThread::airplaneSwitch>, 1, 1, false, 0},
    {"WifiSwitch", read<&NoctaraThread::wifiSwitch>, 0, 0, true, 1},
    {"BTSwitch", read<&NoctaraThread::bluetoothSwitch>, 0, 0, true, 1},
    {"PhoneSwitch", read<&NoctaraThread::phoneSwitch>, 0, 0, true, 1},
    {"EdgeSwitch", read<&NoctaraThread::edgeSwitch>, 0, 0, true, 1},
    {"3GSwitch", read<&NoctaraThread::_3GSwitch>, 0, 0, true, 1},
    {"LocationSwitch", read<&NoctaraThread::locationSwitch>, 0, 0, true, 1},
    {"Debug", read<&NoctaraThread::_DEBUG_>, 1, 0, true, 1},
};

std::string line(const char* key, std::int32_t value) {
    return "Noctara " + std::string(key) + " : " + std::to_string(value);
}

std::vector<std::int32_t> membersOf(const NoctaraThread& monitor) {
    std::vector<std::int32_t> values;
    for (const auto& setting : everySetting)
        values.push_back(setting.member(monitor));
    return values;
}

class EachSetting : public SettingsStage, public testing::WithParamInterface<Setting> {
protected:
    NoctaraThread& holding(const Dictionary& content) { return makeOn(Storage::memory, content); }

    const Setting& setting = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Of, EachSetting, testing::ValuesIn(everySetting),
                         [](const auto& setting) { return std::string(setting.param.key); });

TEST_P(EachSetting, starts_as_the_monitor_was_made) {
    EXPECT_EQ(setting.member(holding(settings)), setting.initial);
}

TEST_P(EachSetting, is_taken_from_the_file_and_logged) {
    auto& monitor = holding(with({{"Debug", true}, {setting.key, setting.other}}));
    monitor.reloadPreferences();
    EXPECT_EQ(setting.member(monitor), setting.taken);
    EXPECT_THAT(calls.logged(), Contains(line(setting.key, setting.taken)).Times(1));
}

TEST_P(EachSetting, changes_no_other) {
    auto& monitor = holding(settings);
    monitor.reloadPreferences();
    std::vector<std::int32_t> expected = membersOf(monitor);
    for (std::size_t i = 0; i < everySetting.size(); ++i)
        if (std::string(everySetting[i].key) == setting.key)
            expected[i] = setting.taken;
    change({{setting.key, setting.other}});
    EXPECT_EQ(membersOf(monitor), expected);
}

TEST_P(EachSetting, missing_at_the_first_load_stays_as_the_monitor_was_made) {
    auto& monitor = holding(without({setting.key}));
    monitor.reloadPreferences();
    EXPECT_EQ(setting.member(monitor), setting.initial);
    EXPECT_EQ(*file()->find(setting.key), PropertyList(setting.filledIn));
}

TEST_P(EachSetting, missing_later_keeps_its_value_until_the_load_after_its_default_was_written) {
    auto& monitor = holding(with({{"Debug", true}, {setting.key, setting.other}}));
    monitor.reloadPreferences();
    calls.clear();

    phone().happens(SettingsRemoval{{setting.key}});
    EXPECT_EQ(setting.member(monitor), setting.taken);
    EXPECT_THAT(calls.logged(), Contains(line(setting.key, setting.taken)).Times(1));
    EXPECT_EQ(*file()->find(setting.key), PropertyList(setting.filledIn));
    EXPECT_EQ(calls.count("writeToFile:atomically:"), 1U);

    announce();
    const int factor = std::string(setting.key) == "ScanInterval" ? 5 : 1;
    EXPECT_EQ(setting.member(monitor), setting.filledIn * factor);
}

class Settings : public SettingsStage {
protected:
    NoctaraThread& holding(const std::optional<Dictionary>& content) {
        return makeOn(Storage::memory, content);
    }
};

TEST_F(Settings, are_read_in_one_go_and_a_complete_file_is_not_written) {
    holding(settings).reloadPreferences();
    const std::string path = '"' + settingsFilePath + '"';
    EXPECT_THAT(calls.calls(),
                ElementsAre("fileExistsAtPath: [" + path + "] -> true",
                            StartsWith("initWithContentsOfFile: [" + path + "] -> {")));
}

TEST_F(Settings, are_logged_line_by_line_while_debug_is_on) {
    makeOn(Storage::memory,
           Dictionary{
               {"Enabled", true},        {"ScanInterval", 3},    {"ScreenDown", true},
               {"ActiveOnSleep", false}, {"DetectManual", true}, {"TimeLimit", false},
               {"StartHour", 22},        {"StopHour", 6},        {"PlaySound", true},
               {"Vibrate", false},       {"EnableOnAC", 2},      {"Sensitivity", 4},
               {"AirplaneSwitch", true}, {"WifiSwitch", false},  {"BTSwitch", true},
               {"PhoneSwitch", false},   {"EdgeSwitch", true},   {"3GSwitch", false},
               {"LocationSwitch", true}, {"Debug", true},        {"launch-app-one", true},
           })
        .reloadPreferences();
    EXPECT_THAT(
        calls.logged(),
        ElementsAre("Noctara Rechargement du fichier de pref !",
                    "Noctara Chargement du fichier de pref : "
                    "/private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist",
                    "Noctara Chargement du fichier de pref dans le dictionnaire : {\n"
                    "    3GSwitch = 0;\n    ActiveOnSleep = 0;\n    AirplaneSwitch = 1;\n"
                    "    BTSwitch = 1;\n    Debug = 1;\n    DetectManual = 1;\n"
                    "    EdgeSwitch = 1;\n    EnableOnAC = 2;\n    Enabled = 1;\n"
                    "    LocationSwitch = 1;\n    PhoneSwitch = 0;\n    PlaySound = 1;\n"
                    "    ScanInterval = 3;\n    ScreenDown = 1;\n    Sensitivity = 4;\n"
                    "    StartHour = 22;\n    StopHour = 6;\n    TimeLimit = 0;\n"
                    "    Vibrate = 0;\n    WifiSwitch = 0;\n    \"launch-app-one\" = 1;\n}",
                    "Noctara parsing apps to monitor",
                    "This is an app=launch-app-one adding to array", "1 apps to monitor",
                    "app to monitor : one", "Noctara Enabled : 1", "Noctara ScanInterval : 15",
                    "Noctara ScreenDown : 1", "Noctara ActiveOnSleep : 0",
                    "Noctara DetectManual : 1", "Noctara TimeLimit : 0", "Noctara StartHour : 22",
                    "Noctara StopHour : 6", "Noctara PlaySound : 1", "Noctara Vibrate : 0",
                    "Noctara EnableOnAC : 1", "Noctara Sensitivity : 4",
                    "Noctara AirplaneSwitch : 1", "Noctara WifiSwitch : 0", "Noctara BTSwitch : 1",
                    "Noctara PhoneSwitch : 0", "Noctara EdgeSwitch : 1", "Noctara 3GSwitch : 0",
                    "Noctara LocationSwitch : 1", "Noctara Debug : 1"));
}

TEST_F(Settings, with_debug_off_are_still_logged_by_the_first_load_but_for_debug_itself) {
    holding(settings).reloadPreferences();
    EXPECT_TRUE(calls.hasLogged("Noctara Enabled : 1"));
    EXPECT_TRUE(calls.hasLogged("Noctara LocationSwitch : 0"));
    EXPECT_THAT(calls.logged(), Not(Contains(StartsWith("Noctara Debug"))));
    EXPECT_EQ(calls.logged().size(), 4U + 1U + 19U);

    calls.clear();
    announce();
    EXPECT_THAT(calls.logged(), ElementsAre("0 apps to monitor"));
}

TEST_F(Settings, that_switch_debug_on_log_it_at_once_and_the_others_from_the_next_load) {
    holding(settings).reloadPreferences();
    calls.clear();
    change({{"Debug", true}});
    EXPECT_THAT(calls.logged(), ElementsAre("0 apps to monitor", "Noctara Debug : 1"));

    calls.clear();
    announce();
    EXPECT_EQ(calls.logged().front(), "Noctara Rechargement du fichier de pref !");
    EXPECT_EQ(calls.logged().size(), 4U + 1U + 20U);
}

TEST_F(Settings, that_switch_debug_off_log_all_others_once_more) {
    holding(with({{"Debug", true}})).reloadPreferences();
    calls.clear();
    change({{"Debug", false}});
    EXPECT_TRUE(calls.hasLogged("Noctara LocationSwitch : 0"));
    EXPECT_FALSE(calls.hasLogged("Noctara Debug : 0"));
}

TEST_F(Settings, of_the_scan_interval_count_in_steps_of_five_seconds) {
    auto& monitor = holding(settings);
    const std::vector<std::pair<std::int32_t, std::int32_t>> expected{
        {3, 15},
        {0, 0},
        {-1, -5},
        {12, 60},
        {500'000'000, -1'794'967'296},
        {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::min()},
    };
    for (const auto& [interval, seconds] : expected) {
        change({{"ScanInterval", interval}});
        EXPECT_EQ(monitor.sleepTime, seconds) << interval;
    }
}

TEST_F(Settings, named_stop_change_nothing) {
    auto& monitor = holding(settings);
    monitor.reloadPreferences();
    const auto before = membersOf(monitor);
    calls.clear();
    change({{"Stop", true}});
    EXPECT_EQ(membersOf(monitor), before);
    EXPECT_TRUE(monitor.running);
    EXPECT_THAT(calls.of({"writeToFile:atomically:"}), IsEmpty());
}

TEST_F(Settings, are_not_bounded) {
    auto& monitor = holding(
        with({{"StartHour", 24}, {"StopHour", -3}, {"Sensitivity", -7}, {"ScanInterval", -2}}));
    monitor.reloadPreferences();
    EXPECT_EQ(monitor.startTime, 24);
    EXPECT_EQ(monitor.stopTime, -3);
    EXPECT_EQ(monitor.sensitivity, -7);
    EXPECT_EQ(monitor.sleepTime, -10);
    change({{"Sensitivity", 0}});
    EXPECT_EQ(monitor.sensitivity, 0);
}

TEST_F(Settings, of_an_unexpected_type_are_converted_and_never_rejected) {
    auto& monitor = holding(with({{"Enabled", "YES"},
                                  {"ScreenDown", 0.25},
                                  {"TimeLimit", -1},
                                  {"PlaySound", Array{true}},
                                  {"Vibrate", Data{1}},
                                  {"ScanInterval", "4 times"},
                                  {"StartHour", 22.9},
                                  {"StopHour", true},
                                  {"Sensitivity", (std::int64_t{1} << 32) + 6}}));
    monitor.playSound = true;
    monitor.vibrate = true;
    monitor.reloadPreferences();
    EXPECT_TRUE(monitor.enabled);
    EXPECT_TRUE(monitor.screenDown);
    EXPECT_TRUE(monitor.timeLimit);
    EXPECT_FALSE(monitor.playSound);
    EXPECT_FALSE(monitor.vibrate);
    EXPECT_EQ(monitor.sleepTime, 20);
    EXPECT_EQ(monitor.startTime, 22);
    EXPECT_EQ(monitor.stopTime, 1);
    EXPECT_EQ(monitor.sensitivity, 6);
    EXPECT_THAT(calls.of({"writeToFile:atomically:"}), IsEmpty());

    change({{"StopHour", Dictionary()}, {"StartHour", Date{5}}});
    EXPECT_EQ(monitor.stopTime, 0);
    EXPECT_EQ(monitor.startTime, 0);
}

TEST_F(Settings, of_an_announced_change_are_an_event_and_are_read_on_the_main_thread) {
    auto& monitor = holding(settings);
    EXPECT_FALSE(monitor.eventOccurred);
    change({{"StartHour", 20}});
    EXPECT_TRUE(monitor.eventOccurred);
    EXPECT_EQ(monitor.startTime, 20);
    for (const auto& made : calls.lines)
        EXPECT_EQ(made.thread, "main") << made.text;
}

class SettingsDuringANight : public ANight {
protected:
    std::vector<CallLog::Line> reads() const {
        std::vector<CallLog::Line> found;
        for (const auto& made : calls.lines)
            if (made.operation == "initWithContentsOfFile:" && made.argument(0) == settingsFilePath)
                found.push_back(made);
        return found;
    }
};

TEST_F(SettingsDuringANight, are_read_at_the_start_and_when_announced_and_never_else) {
    begin();
    EXPECT_EQ(reads().size(), 0U);
    playFor(3600);
    ASSERT_EQ(reads().size(), 1U);
    EXPECT_EQ(reads()[0].thread, "monitor");

    phone().files.writeByOthers(settingsFilePath, {{"Enabled", false}});
    playFor(3600);
    EXPECT_EQ(reads().size(), 1U);

    change({{"ScanInterval", 2}});
    EXPECT_GT(reads().size(), 1U);
    EXPECT_EQ(reads()[1].thread, "main");
    EXPECT_FALSE(monitor().enabled);
}

TEST_F(SettingsDuringANight, do_not_cut_a_pause_short) {
    settings.set("ScanInterval", 12);
    begin();
    playReadings(1);
    const double first = phone().clock.monotonic;
    playFor(10);
    change({{"ScanInterval", 1}});
    playReadings(1);
    EXPECT_GE(phone().clock.monotonic - first, 60);
    const double second = phone().clock.monotonic;
    playReadings(1);
    EXPECT_LT(phone().clock.monotonic - second, 10);
}

TEST_F(SettingsDuringANight, bound_the_scan_interval_only_at_the_start) {
    settings.set("ScanInterval", 0);
    begin();
    playReadings(1);
    EXPECT_EQ(monitor().sleepTime, 5);
    change({{"ScanInterval", 0}});
    EXPECT_EQ(monitor().sleepTime, 0);
}

} // namespace
} // namespace noctara
