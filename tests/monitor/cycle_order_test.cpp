/// The order of the main loop's steps: every call of a start, a cycle, a change of state and an
/// end, with its thread.
#include "tests/a_night.h"

#include <functional>
#include <map>

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

/// Looks at the phone whenever an operation is called.
class Glances final : public PhoneObserver {
public:
    void called(const Call& call) override {
        if (const auto found = at.find(call.operation); found != at.end())
            found->second();
    }
    void happens(const Happening&) override {}

    std::map<Operation, std::function<void()>> at;
};

using Lines = std::vector<std::string>;

Lines operator+(Lines left, const Lines& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

const Lines pause{"monitor: sleep [1]"};

const Lines scanInterval = pause + pause + pause + pause + pause;

Lines reading(const std::string& sample) {
    return {"monitor: startAccelerometerUpdates",
            "monitor: setAccelerometerUpdateInterval: [0.2]",
            "monitor: sleep [1]",
            "monitor: deviceMotion -> null",
            "monitor: accelerometerData -> " + sample,
            "monitor: sleep [0]",
            "monitor: stopAccelerometerUpdates"};
}

const Lines readingInHand = reading("[0.0,-0.6,-0.8]");
const Lines readingScreenDown = reading("[0.0,0.0,1.0]");

Lines cue(int sound) {
    return {"monitor: performSelectorOnMainThread:withObject:waitUntilDone: [\"playAudioAsync\"]",
            "main: AudioServicesPlaySystemSound [" + std::to_string(sound) + "]"};
}

Lines switching(const std::string& before, const std::string& after) {
    return {"monitor: performSelectorOnMainThread:withObject:waitUntilDone: "
            "[\"setStateAirplaneMode\"]",
            "main: objc_getClass [\"SBApplicationController\"] -> true",
            "main: allApplications -> []",
            "main: objc_getClass [\"SBTelephonyManager\"] -> true",
            "main: sharedTelephonyManager -> true",
            "main: isInAirplaneMode -> " + before,
            "main: setIsInAirplaneMode: [" + after + "]",
            "main: updateAirplaneMode",
            "main: notify_post [\"com.sbsettings.refreshalltoggles\"]",
            "monitor: notify_post [\"com.apple.radios\"]"};
}

const Lines sounds{"monitor: AudioServicesCreateSystemSoundID [\"/Library/Application "
                   "Support/Noctara/Noctara-airplanemode.mp3\"] -> 1",
                   "monitor: AudioServicesCreateSystemSoundID [\"/Library/Application "
                   "Support/Noctara/Noctara-off.mp3\"] -> 2"};

const Lines snapshot{
    "monitor: initWithContentsOfFile: "
    "[\"/var/preferences/SystemConfiguration/com.apple.radios.plist\"] -> "
    "{\"AirplaneMode\":false}",
    "monitor: initWithContentsOfFile: "
    "[\"/private/var/mobile/Library/Preferences/com.apple.preferences.network.plist\"] -> "
    "{\"wifi-network\":true,\"bluetooth-network\":true}",
    "monitor: CTRegistrationGetCellularDataIsEnabled -> true",
    "monitor: CTRegistrationGetCurrentMaxAllowedDataRate -> \"3G\"",
    "monitor: initWithContentsOfFile: "
    "[\"/var/mobile/Library/Preferences/com.apple.locationd.plist\"] -> "
    "{\"LocationServicesEnabled\":true}"};

const Lines ending{"monitor: AudioServicesDisposeSystemSoundID [1]",
                   "monitor: AudioServicesDisposeSystemSoundID [2]"};

class TheCycle : public ANight {
protected:
    /// Everything but log lines; the settings as they are read are cut off.
    Lines made() const {
        return texts([](const CallLog::Line& line) { return line.operation != "NSLog"; });
    }

    /// With the log lines, but for those about what a reading measured.
    Lines madeAndLogged() const {
        return texts([](const CallLog::Line& line) {
            const auto tells = [&](const char* measure) {
                return line.text.find(measure) != std::string::npos;
            };
            return line.operation != "NSLog" ||
                   !(tells("angle") || tells("vector") || tells("tolerance"));
        });
    }

    /// Plays until the first reading is done, with nothing recorded of it.
    void beginInHand(bool debug = false) {
        settings.set("Debug", debug);
        begin();
        playFor(1.5);
        calls.clear();
    }

    /// A start that is watched at single operations.
    void beginWatched() {
        scenario.settings = settings;
        switchOn();
        phone().observe(glances);
        launch();
    }

    Glances glances;

private:
    template <typename Predicate>
    Lines texts(Predicate wanted) const {
        Lines found;
        for (const auto& line : calls.lines)
            if (wanted(line))
                found.push_back((line.operation.empty() ? "" : line.thread + ": ") +
                                line.text.substr(0, line.text.find(" -> {\"Enabled\"")));
        return found;
    }
};

TEST_F(TheCycle, follows_the_sounds_the_settings_and_the_snapshot_of_the_radios) {
    begin();
    calls.clear();
    playFor(0.5);
    const Lines loading{
        "monitor: fileExistsAtPath: "
        "[\"/private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist\"] -> true",
        "monitor: initWithContentsOfFile: "
        "[\"/private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist\"]"};
    const Lines firstCycle(readingInHand.begin(), readingInHand.begin() + 3);
    EXPECT_THAT(made(), ElementsAreArray(sounds + loading + snapshot + firstCycle));
}

TEST_F(TheCycle, follows_these_log_lines_and_no_others) {
    settings.set("Debug", true);
    begin();
    playFor(0.5);
    auto lines = calls.logged();
    const auto isSetting = [](const std::string& line) {
        return line.starts_with("Noctara ") && line.find(" : ", 8) != line.npos &&
               !line.starts_with("Noctara Chargement");
    };
    EXPECT_EQ(std::erase_if(lines, isSetting), 20);
    EXPECT_THAT(
        lines,
        ElementsAre(
            "Noctara hooked SpringBoard !", "Noctara thread started !",
            "Noctara IORegisterForSystemPower done", "Noctara : NoctaraThread start",
            "Noctara Rechargement du fichier de pref !",
            "Noctara Chargement du fichier de pref : "
            "/private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist",
            testing::StartsWith("Noctara Chargement du fichier de pref dans le dictionnaire : {"),
            "Noctara parsing apps to monitor", "0 apps to monitor", "Noctara : Wifi is ENABLED",
            "Noctara : BT is ENABLED", "Noctara : Edge (data) is ENABLED",
            "Noctara : 3G is ENABLED", "Noctara : AirPlaine is disabled",
            "Noctara : Phone is ENABLED", "Noctara : Location is ENABLED"));
}

TEST_F(TheCycle, when_nothing_changes_reads_and_waits) {
    beginInHand();
    playFor(12);
    EXPECT_THAT(made(), ElementsAreArray(pause + pause + pause + pause + readingInHand +
                                         scanInterval + readingInHand + pause));
}

TEST_F(TheCycle, with_debug_on_says_what_it_read_and_that_it_runs) {
    beginInHand(true);
    playFor(5.6);
    EXPECT_THAT(madeAndLogged(),
                ElementsAreArray(pause + pause + pause + pause + readingInHand +
                                 Lines{"monitor: NSLog [\"Noctara : Mode normal\"]",
                                       "monitor: NSLog [\"Noctara : Running...\"]"} +
                                 pause));
    lies(ScreenDown);
    playFor(5.5);
    calls.clear();
    playFor(1);
    EXPECT_THAT(madeAndLogged(),
                ElementsAreArray(Lines(readingScreenDown.begin() + 3, readingScreenDown.end()) +
                                 Lines{"monitor: NSLog [\"Noctara : Mode avion\"]"} + cue(1) +
                                 Lines{"monitor: NSLog [\"Noctara : Running...\"]"} + pause));
}

TEST_F(TheCycle, counting_down_warns_at_the_first_reading_and_switches_at_the_third) {
    beginInHand(true);
    playFor(4); // the wait ends at second 6, still to come
    lies(ScreenDown);
    calls.clear();
    playFor(7);
    EXPECT_THAT(made(), ElementsAreArray(readingScreenDown + cue(1) + pause + readingScreenDown +
                                         pause + readingScreenDown + cue(4095) +
                                         switching("false", "true") + pause + pause));
}

TEST_F(TheCycle, waking_plays_its_sound_then_vibrates_then_switches) {
    beginInHand(true);
    fallAsleep();
    playFor(4.5);
    lies(InHand);
    calls.clear();
    playFor(7);
    EXPECT_THAT(made(),
                ElementsAreArray(readingInHand + pause + readingInHand + pause + readingInHand +
                                 cue(2) + cue(4095) + switching("true", "false") + pause + pause));
}

TEST_F(TheCycle, suspended_reads_nothing_and_waits_twice) {
    settings.set("Enabled", false);
    settings.set("Debug", true);
    begin();
    playFor(0.5);
    calls.clear();
    playFor(10);
    EXPECT_THAT(made(), ElementsAreArray(scanInterval + scanInterval));
    EXPECT_THAT(madeAndLogged(),
                ElementsAreArray(Lines(scanInterval.begin() + 1, scanInterval.end()) +
                                 scanInterval +
                                 Lines{"monitor: NSLog [\"Noctara : NOT Running...\"]"} + pause));
}

TEST_F(TheCycle, renews_the_wake_up_after_its_decision_and_before_its_wait) {
    settings.set("ActiveOnSleep", true);
    beginInHand(true);
    playFor(5.6);
    const auto all =
        calls.of({"NSLog", "propertyListFromData:", "sleep", "CPCancelWakeAtDateWithIdentifier",
                  "CPScheduleWakeAtDateWithIdentifier"});
    const auto runs = std::find(all.begin(), all.end(), "NSLog [\"Noctara : Running...\"]");
    ASSERT_EQ(all.end() - runs, 6);
    EXPECT_THAT(runs[1], testing::StartsWith("propertyListFromData:"));
    EXPECT_THAT(runs[2], testing::StartsWith("NSLog [\"Noctara Cancelling previous wake at "));
    EXPECT_EQ(runs[3], "CPCancelWakeAtDateWithIdentifier [1393713901,\"com.quorbit.Noctara\"]");
    EXPECT_EQ(runs[4], "CPScheduleWakeAtDateWithIdentifier [1393713907,\"com.quorbit.Noctara\"]");
    EXPECT_EQ(runs[5], "sleep [1]");
}

TEST_F(TheCycle, that_finds_the_loop_stopped_is_the_last) {
    beginInHand(true);
    phone().happens(MonitorStop{});
    calls.clear();
    playFor(60);
    EXPECT_THAT(madeAndLogged(),
                ElementsAreArray(pause + pause + pause + pause +
                                 Lines{"monitor: NSLog [\"Noctara : Thread is dying...\"]"} +
                                 ending));
    EXPECT_EQ(monitor().motionManager, nullptr);
}

TEST_F(TheCycle, under_way_when_the_loop_is_stopped_is_finished_first) {
    beginInHand();
    playFor(5); // into the reading that ends at second 7
    phone().happens(MonitorStop{});
    calls.clear();
    playFor(60);
    EXPECT_THAT(made(), ElementsAreArray(Lines(readingInHand.begin() + 3, readingInHand.end()) +
                                         scanInterval + ending));
}

TEST_F(TheCycle, does_not_come_about_when_the_loop_is_stopped_before_it_starts) {
    begin();
    monitor().stop();
    calls.clear();
    playFor(60);
    EXPECT_THAT(calls.of({"AudioServicesCreateSystemSoundID", "fileExistsAtPath:",
                          "CTRegistrationGetCellularDataIsEnabled", "startAccelerometerUpdates",
                          "sleep", "AudioServicesDisposeSystemSoundID"}),
                testing::SizeIs(6))
        << "two sounds, the settings and the snapshot; then the sounds go again";
    EXPECT_EQ(calls.count("sleep"), 0U);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0U);
    EXPECT_EQ(calls.lines.back().text, "AudioServicesDisposeSystemSoundID [2]");
}

TEST_F(TheCycle, ends_at_once_when_the_loop_is_stopped_at_a_change_by_hand) {
    scenario.radios.airplane = true;
    settings.set("Debug", true);
    beginWatched();
    playReadings(3);
    phone().happens(AirplaneModeSwitch{true});
    glances.at[Operation::isInAirplaneMode] = [this] { monitor().stop(); };
    playFor(4.5);
    calls.clear();
    playFor(60);
    EXPECT_FALSE(monitor().enabled);
    EXPECT_THAT(madeAndLogged(),
                ElementsAreArray(Lines{"monitor: objc_getClass [\"SBTelephonyManager\"] -> true",
                                       "monitor: sharedTelephonyManager -> true",
                                       "monitor: isInAirplaneMode -> true",
                                       "monitor: NSLog [\"Noctara : airPlaneMode : ENABLED\"]",
                                       "monitor: NSLog [\"Noctara : Thread is dying...\"]"} +
                                 ending));
}

TEST_F(TheCycle, forgets_at_its_start_a_countdown_that_was_marked_before) {
    settings.set("Enabled", false);
    begin();
    monitor().switchingToAirplane = true;
    playFor(0.5);
    EXPECT_FALSE(monitor().switchingToAirplane);
}

TEST_F(TheCycle, starts_in_the_sleep_state_on_a_phone_in_airplane_mode) {
    scenario.radios.airplane = true;
    begin();
    playFor(0.5);
    EXPECT_TRUE(monitor().lastStateWasPlane);
}

TEST_F(TheCycle, marks_the_countdown_before_its_sound_and_ends_it_after_the_switch) {
    std::vector<bool> marked, asleep;
    glances.at[Operation::AudioServicesPlaySystemSound] =
        glances.at[Operation::updateAirplaneMode] = glances.at[Operation::notify_post] = [&] {
            marked.push_back(monitor().switchingToAirplane);
            asleep.push_back(monitor().lastStateWasPlane);
        };
    beginWatched();
    playReadings(1);
    fallAsleep();
    // The sound, the vibration, the switch, and its two notifications.
    EXPECT_THAT(marked, ElementsAre(true, true, true, true, true));
    EXPECT_THAT(asleep, ElementsAre(false, false, false, false, false));
    EXPECT_FALSE(monitor().switchingToAirplane);
    EXPECT_TRUE(monitor().lastStateWasPlane);
}

TEST_F(TheCycle, leaves_the_sleep_state_after_the_switch) {
    std::vector<bool> marked, asleep, goesOnDetecting;
    scenario.phone.charger = true;
    settings.set("EnableOnAC", true);
    beginWatched();
    playReadings(1);
    fallAsleep();
    phone().happens(ChargerChange{false});
    lies(InHand);
    glances.at[Operation::AudioServicesPlaySystemSound] =
        glances.at[Operation::updateAirplaneMode] = glances.at[Operation::notify_post] = [&] {
            marked.push_back(monitor().switchingToAirplane);
            asleep.push_back(monitor().lastStateWasPlane);
            goesOnDetecting.push_back(monitor().continueToMonitorAfterAC);
        };
    monitor().switchingToAirplane = true;
    playReadings(3);
    EXPECT_THAT(marked, ElementsAre(true, true, true, true, true));
    EXPECT_THAT(asleep, ElementsAre(true, true, true, true, true));
    EXPECT_THAT(goesOnDetecting, ElementsAre(true, true, true, true, true));
    EXPECT_FALSE(monitor().lastStateWasPlane);
    EXPECT_FALSE(monitor().continueToMonitorAfterAC);
    EXPECT_FALSE(monitor().switchingToAirplane);
}

} // namespace

} // namespace noctara
