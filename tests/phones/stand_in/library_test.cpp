/// The symbols of the library, and its effects on a process that is not SpringBoard.
#include "input/temporary_folder.h"
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace noctara {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// The symbols that the library defines, by nm with these options.
std::vector<std::string> definedSymbols(const std::string& options) {
    std::istringstream lines(run("nm --defined-only " + options + " '" NOCTARA_LIBRARY "'").output);
    std::vector<std::string> names;
    for (std::string address, type, name; lines >> address >> type >> name;)
        names.push_back(name);
    return names;
}

TEST(TheLibrary, exports_its_seven_entry_points_and_nothing_else) {
    EXPECT_THAT(definedSymbols("-D"),
                testing::UnorderedElementsAre("NoctaraInitialize", "NoctaraInstance", "isDebug",
                                              "MySleepCallBack", "registerPowerListener",
                                              "replaced_SBUIController_ACPowerChanged",
                                              "callbackCTServerConnectionCreate"));
}

#ifndef NOCTARA_SANITIZED
TEST(TheLibrary, is_built_with_the_hardening_options) {
    const auto headers = [](const std::string& options) {
        return run("LC_ALL=C readelf --wide " + options + " '" NOCTARA_LIBRARY "'").output;
    };
    EXPECT_THAT(headers("--dyn-syms"), HasSubstr("__stack_chk_fail@"));
    EXPECT_THAT(headers("--dynamic"), HasSubstr("BIND_NOW"));
    EXPECT_THAT(headers("--program-headers"), HasSubstr("GNU_RELRO"));
    EXPECT_THAT(headers("--program-headers"), testing::ContainsRegex("GNU_STACK .* RW "));
}
#endif

TEST(TheLibrary, has_the_classes_of_the_monitor_and_the_radio_controller_and_no_others) {
    const std::string prefix = "_OBJC_CLASS_";
    std::vector<std::string> classes;
    for (const auto& name : definedSymbols(""))
        if (name.starts_with(prefix))
            classes.push_back(name.substr(prefix.size()));
    EXPECT_THAT(classes, testing::UnorderedElementsAre("NoctaraThread", "RadiosLib"));
}

/// Whether a name belongs to the phone's frameworks and the method-hooking loader.
bool isThePhones(const std::string& name) {
    for (const char* prefix : {"CF", "kCF", "CP", "CT", "_CT", "kCT", "GS", "IO", "Audio", "MS",
                               "MG", "notify_", "dispatch_"})
        if (name.starts_with(prefix))
            return true;
    return false;
}

// These two lists repeat the names, because stand-in and adapter share their declarations: a wrong
// name there would be wrong in both and not be noticed.

TEST(TheLibrary, asks_the_phone_for_these_functions) {
    std::istringstream lines(run("nm -D --undefined-only '" NOCTARA_LIBRARY "'").output);
    std::vector<std::string> names;
    for (std::string type, name; lines >> type >> name;)
        if (isThePhones(name))
            names.push_back(name);
    EXPECT_THAT(
        names,
        testing::UnorderedElementsAre(
            "AudioServicesCreateSystemSoundID", "AudioServicesDisposeSystemSoundID",
            "AudioServicesPlaySystemSound", "CFPreferencesAppSynchronize",
            "CFPreferencesSetAppValue", "CFRelease", "CFRunLoopAddSource", "CFRunLoopGetCurrent",
            "CPCancelWakeAtDateWithIdentifier", "CPScheduleWakeAtDateWithIdentifier",
            "CTCellularDataPlanGetIsEnabled", "CTCellularDataPlanSetIsEnabled",
            "CTRegistrationCopySupportedDataRates", "CTRegistrationGetCellularDataIsEnabled",
            "CTRegistrationGetCurrentMaxAllowedDataRate", "CTRegistrationSetMaxAllowedDataRate",
            "GSSystemHasCapability", "IOAllowPowerChange", "IOCancelPowerChange",
            "IONotificationPortGetRunLoopSource", "IORegisterForSystemPower", "MSHookMessageEx",
            "_CTServerConnectionCreate", "dispatch_get_main_queue", "kCFAllocatorDefault",
            "kCFCoreFoundationVersionNumber", "kCFRunLoopCommonModes", "kCTRegistrationDataRate2G",
            "kCTRegistrationDataRate3G", "kCTRegistrationDataRate4G", "notify_post",
            "notify_register_dispatch"));
}

TEST(TheLibrary, sends_the_phone_these_messages) {
    std::ifstream file(NOCTARA_LIBRARY, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    for (const std::string selector : {"sharedInstance",
                                       "isOnAC",
                                       "sharedTelephonyManager",
                                       "isInAirplaneMode",
                                       "setIsInAirplaneMode:",
                                       "updateAirplaneMode",
                                       "inCall",
                                       "outgoingCallExists",
                                       "incomingCallExists",
                                       "activeCallExists",
                                       "isNetworkTethering",
                                       "isPowered",
                                       "wiFiEnabled",
                                       "setWiFiEnabled:",
                                       "enabled",
                                       "connected",
                                       "setPowered:",
                                       "setEnabled:",
                                       "locationServicesEnabled",
                                       "setLocationServicesEnabled:",
                                       "allApplications",
                                       "displayIdentifier",
                                       "displayName",
                                       "process",
                                       "activate",
                                       "resumeToQuit",
                                       "kill",
                                       "springBoard",
                                       "sharedApplication",
                                       "_accessibilityFrontMostApplication",
                                       "leafIconForIdentifier:",
                                       "iconForDisplayIdentifier:",
                                       "launch",
                                       "currentDevice",
                                       "userInterfaceIdiom",
                                       "startAccelerometerUpdates",
                                       "setAccelerometerUpdateInterval:",
                                       "deviceMotion",
                                       "gravity",
                                       "accelerometerData",
                                       "acceleration",
                                       "stopAccelerometerUpdates",
                                       "supportsCapability:",
                                       "fetchCapability:",
                                       "capabilityArray",
                                       "scanCapabilities"})
        EXPECT_NE(bytes.find('\0' + selector + '\0'), bytes.npos) << selector;
}

TEST(TheLibrary, has_nothing_to_destroy_at_the_end_of_the_process) {
    // The monitor thread may be running at that moment.
    EXPECT_THAT(run("nm -D --undefined-only '" NOCTARA_LIBRARY "'").output,
                testing::Not(HasSubstr("atexit")));
}

TEST(TheLibrary, starts_nothing_in_a_process_that_is_not_SpringBoard) {
    const TemporaryFolder home;
    const std::string inHome = "cd '" + home.path.string() + "' && HOME=$PWD ";
    const Played plain = run(inHome + "'" NOCTARA_PLAIN_PROCESS "' '" NOCTARA_LIBRARY "' 2>&1");
    EXPECT_EQ(plain.exitCode, 0);
    EXPECT_EQ(plain.output, "threads 0, files 0, monitor none\n");
    EXPECT_TRUE(fs::is_empty(home.path));
}

TEST(TheLibrary, hooks_nothing_in_another_process_of_the_phone) {
    const TemporaryFolder folder;
    const fs::path trace = folder.path / "trace.jsonl";
    const fs::path scenario = folder.path / "maps.toml";
    run("printf 'hours = 1\\n[phone]\\nbundle = \"com.apple.Maps\"\\n' > '" + scenario.string() +
        "'");
    const Played night =
        run("'" NOCTARA_SPRINGBOARD "' '" + scenario.string() +
            "' --filter '" NOCTARA_OPEN_FILTER "' --trace '" + trace.string() + "' 2>/dev/null");
    EXPECT_EQ(night.exitCode, 0);
    const std::string lines = run("cat '" + trace.string() + "'").output;
    EXPECT_THAT(lines, HasSubstr("bundleIdentifier"));
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 1);
}

} // namespace

} // namespace noctara
