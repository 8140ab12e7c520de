/// The settings file. It is read at the start and when the settings screen announces a change. If a
/// key is missing, its default is written into the file. The default takes effect at the next
/// reload.
#include "monitor/description.h"
#include "monitor/noctara_thread.h"
#include "platform/files.h"

#include <array>
#include <string_view>

namespace noctara {

namespace {

constexpr const char* settingsPath =
    "/private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist";
constexpr std::string_view applicationPrefix = "launch-app-";

constexpr std::uint32_t secondsPerScanInterval = 5;

/// A key of the settings file and the member that holds its value: a boolean or an integer.
struct Setting {
    const char* key;
    SharedField<bool> NoctaraThread::*truth;
    SharedField<std::int32_t> NoctaraThread::*integer;
    std::int32_t missing; ///< Written into a file that lacks the key.

    constexpr Setting(const char* name, SharedField<bool> NoctaraThread::*member,
                      std::int32_t filledIn) :
        key(name), truth(member), integer(nullptr), missing(filledIn) {}
    constexpr Setting(const char* name, SharedField<std::int32_t> NoctaraThread::*member,
                      std::int32_t filledIn) :
        key(name), truth(nullptr), integer(member), missing(filledIn) {}
};

/// In the order of processing. "Debug" comes last, so that the previous value decides whether the
/// other settings are logged.
constexpr std::array settingsInOrder{
    Setting{"Enabled", &NoctaraThread::enabled, 1},
    Setting{"ScanInterval", &NoctaraThread::sleepTime, 1},
    Setting{"ScreenDown", &NoctaraThread::screenDown, 1},
    Setting{"ActiveOnSleep", &NoctaraThread::activeOnSleep, 1},
    Setting{"DetectManual", &NoctaraThread::disableOnManualChange, 1},
    Setting{"TimeLimit", &NoctaraThread::timeLimit, 0},
    Setting{"StartHour", &NoctaraThread::startTime, 21},
    Setting{"StopHour", &NoctaraThread::stopTime, 7},
    Setting{"PlaySound", &NoctaraThread::playSound, 1},
    Setting{"Vibrate", &NoctaraThread::vibrate, 1},
    Setting{"EnableOnAC", &NoctaraThread::enabledOnChargeOnly, 0},
    Setting{"Sensitivity", &NoctaraThread::sensitivity, 5},
    Setting{"AirplaneSwitch", &NoctaraThread::airplaneSwitch, 1},
    Setting{"WifiSwitch", &NoctaraThread::wifiSwitch, 0},
    Setting{"BTSwitch", &NoctaraThread::bluetoothSwitch, 0},
    Setting{"PhoneSwitch", &NoctaraThread::phoneSwitch, 0},
    Setting{"EdgeSwitch", &NoctaraThread::edgeSwitch, 0},
    Setting{"3GSwitch", &NoctaraThread::_3GSwitch, 0},
    Setting{"LocationSwitch", &NoctaraThread::locationSwitch, 0},
    Setting{"Debug", &NoctaraThread::_DEBUG_, 0},
};

/// The content of a new file. "PhoneSwitch" is missing; the load that follows adds it. Nothing
/// reads "Stop".
Dictionary settingsOfNewFile() {
    return {
        {"Enabled", true},        {"ScanInterval", 1},    {"ScreenDown", true},
        {"ActiveOnSleep", true},  {"DetectManual", true}, {"TimeLimit", false},
        {"StartHour", 21},        {"StopHour", 7},        {"PlaySound", true},
        {"Vibrate", true},        {"EnableOnAC", false},  {"Sensitivity", 5},
        {"AirplaneSwitch", true}, {"WifiSwitch", false},  {"BTSwitch", false},
        {"EdgeSwitch", false},    {"3GSwitch", false},    {"LocationSwitch", false},
        {"Debug", false},         {"Stop", false},
    };
}

} // namespace

void NoctaraThread::reloadPreferences() {
    debugLog("Noctara Rechargement du fichier de pref !");
    if (platform.files->exists(settingsPath))
        loadSettingsFile();
    else
        createSettingsFile();
}

void NoctaraThread::loadSettingsFile() {
    debugLog("Noctara Chargement du fichier de pref : %s", settingsPath);
    const auto file = platform.files->readDictionary(settingsPath);
    if (_DEBUG_)
        debugLog("Noctara Chargement du fichier de pref dans le dictionnaire : %s",
                 file ? description(*file).c_str() : nullDescription);
    if (!file)
        report([] { return SettingsFileUnreadable{}; });
    const Dictionary* found = file ? &*file : nullptr;
    rebuildApplicationsToStart(found);
    takeOverSettings(found);
}

void NoctaraThread::rebuildApplicationsToStart(const Dictionary* file) {
    const std::lock_guard guard(lock);
    ++applicationListChanges;
    applicationsToStart.clear();
    debugLog("Noctara parsing apps to monitor");
    if (file)
        for (const auto& [key, value] : *file)
            if (key.starts_with(applicationPrefix) && value.boolValue()) {
                log("This is an app=%s adding to array", key.c_str());
                applicationsToStart.push_back(key.substr(applicationPrefix.length()));
            }
    log("%d apps to monitor", static_cast<int>(applicationsToStart.size()));
    for (const auto& identifier : applicationsToStart)
        log("app to monitor : %s", identifier.c_str());
}

void NoctaraThread::takeOverSettings(const Dictionary* file) {
    for (const auto& setting : settingsInOrder) {
        const PropertyList* value = file ? file->find(setting.key) : nullptr;
        if (!value)
            saveValueToFile(settingsPath, setting.key, setting.missing);
        else if (setting.truth)
            this->*setting.truth = value->boolValue();
        else if (setting.integer == &NoctaraThread::sleepTime)
            // Any integer is accepted. The product wraps to 32 bits.
            sleepTime = static_cast<std::int32_t>(static_cast<std::uint32_t>(value->intValue()) *
                                                  secondsPerScanInterval);
        else
            this->*setting.integer = value->intValue();
        const std::int32_t now =
            setting.truth ? int{this->*setting.truth} : int{this->*setting.integer};
        debugLog("Noctara %s : %d", setting.key, now);
    }
}

void NoctaraThread::createSettingsFile() {
    debugLog("Noctara The file %s does not exists", settingsPath);
    const bool written = platform.files->writeDictionary(settingsPath, settingsOfNewFile());
    report([&] { return SettingsFileMade{written}; });
    if (written && !recurseSafety) {
        recurseSafety = true;
        log("Noctara file %s created", settingsPath);
        reloadPreferences();
    } else {
        log("Noctara file %s COULD NOT be created", settingsPath);
    }
    recurseSafety = false;
}

Settings NoctaraThread::settings() const {
    return {
        .enabled = enabled,
        .sleepTime = sleepTime,
        .sensitivity = sensitivity,
        .screenDown = screenDown,
        .timeLimit = timeLimit,
        .startTime = startTime,
        .stopTime = stopTime,
        .enabledOnChargeOnly = enabledOnChargeOnly,
        .airplaneSwitch = airplaneSwitch,
        .phoneSwitch = phoneSwitch,
        .wifiSwitch = wifiSwitch,
        .bluetoothSwitch = bluetoothSwitch,
        .edgeSwitch = edgeSwitch,
        ._3GSwitch = _3GSwitch,
        .locationSwitch = locationSwitch,
    };
}

void NoctaraThread::saveValueToFile(const std::string& path, const std::string& key,
                                    std::int32_t value) {
    auto file = platform.files->readDictionary(path);
    bool written = false;
    if (file) {
        file->set(key, value);
        written = platform.files->writeDictionary(path, *file);
    }
    log(written ? "Noctara file %s created" : "Noctara file %s COULD NOT be created", path.c_str());
    report([&] { return SettingFilledIn{key, written}; });
}

} // namespace noctara
