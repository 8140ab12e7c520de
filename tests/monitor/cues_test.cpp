/// When and how sounds and the vibration are played.
#include "tests/a_night.h"

namespace noctara {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const std::string hop =
    R"(performSelectorOnMainThread:withObject:waitUntilDone: ["playAudioAsync"])";
const std::string switchHop =
    R"(performSelectorOnMainThread:withObject:waitUntilDone: ["setStateAirplaneMode"])";

std::string play(SoundID sound) {
    return "AudioServicesPlaySystemSound [" + std::to_string(sound) + "]";
}

class ACue : public AMonitor {};

TEST_F(ACue, is_handed_to_the_main_thread_which_starts_it) {
    make();
    calls.clear();
    phone().asMonitorThread([&] { own->playAudioOnMainThread(17); });
    EXPECT_EQ(own->currentSoundId, 17U);
    ASSERT_THAT(calls.calls(), ElementsAre(hop, play(17)));
    EXPECT_EQ(calls.lines[0].thread, "monitor");
    EXPECT_EQ(calls.lines[1].thread, "main");
}

TEST_F(ACue, is_whatever_was_handed_over_last) {
    make();
    own->currentSoundId = vibrationSound;
    calls.clear();
    own->playAudioAsync();
    EXPECT_THAT(calls.calls(), ElementsAre("AudioServicesPlaySystemSound [4095]"));
}

TEST_F(ACue, of_the_largest_identifier_is_not_taken_for_a_negative_one) {
    make();
    calls.clear();
    own->playAudioOnMainThread(4294967295U);
    EXPECT_THAT(calls.calls(), ElementsAre(hop, play(4294967295U)));
}

class Cues : public ANight {
protected:
    /// What can be heard, felt and seen of the switching.
    std::vector<std::string> cues() const {
        return calls.of({"performSelectorOnMainThread:withObject:waitUntilDone:",
                         "AudioServicesPlaySystemSound", "setIsInAirplaneMode:"});
    }

    /// In the day state, on the table, without a reading of it yet.
    void beginOnTheTable() {
        begin();
        playReadings(1);
        lies(ScreenDown);
        calls.clear();
    }

    void beginAsleep() {
        begin();
        playReadings(1);
        fallAsleep();
        lies(InHand);
        calls.clear();
    }

    /// When the airplane flag was set to each of its values, in seconds since the start.
    std::vector<std::pair<double, std::string>> switches() {
        std::vector<std::pair<double, std::string>> found;
        for (const auto& made : calls.lines)
            if (made.operation == "setIsInAirplaneMode:")
                found.emplace_back(made.at - scenario.start.secondsSince1970, made.text);
        return found;
    }

    std::vector<std::pair<double, std::string>> switchesOfANightWithCues(bool on) {
        settings.set("PlaySound", on);
        settings.set("Vibrate", on);
        begin();
        playReadings(2);
        fallAsleep();
        playReadings(2);
        lies(InHand);
        playReadings(5);
        return switches();
    }
};

TEST_F(Cues, are_registered_before_the_settings_are_read_and_released_in_the_same_order) {
    begin();
    playReadings(1);
    const auto made = calls.of({"AudioServicesCreateSystemSoundID", "fileExistsAtPath:"});
    ASSERT_GE(made.size(), 3U);
    EXPECT_EQ(made[0], "AudioServicesCreateSystemSoundID "
                       "[\"/Library/Application Support/Noctara/Noctara-airplanemode.mp3\"] -> 1");
    EXPECT_EQ(made[1], "AudioServicesCreateSystemSoundID "
                       "[\"/Library/Application Support/Noctara/Noctara-off.mp3\"] -> 2");
    EXPECT_EQ(monitor().airplaneModeMP3, 1U);
    EXPECT_EQ(monitor().offMP3, 2U);

    calls.clear();
    phone().happens(MonitorStop{});
    playFor(60);
    EXPECT_THAT(calls.of({"AudioServicesDisposeSystemSoundID"}),
                ElementsAre("AudioServicesDisposeSystemSoundID [1]",
                            "AudioServicesDisposeSystemSoundID [2]"));
}

TEST_F(Cues, begin_with_the_warning_sound_at_the_first_positive_reading) {
    beginOnTheTable();
    EXPECT_FALSE(monitor().switchingToAirplane);
    playReadings(1);
    EXPECT_TRUE(monitor().switchingToAirplane);
    EXPECT_THAT(cues(), ElementsAre(hop, play(monitor().airplaneModeMP3)));
}

/// Looks at the monitor when the warning sound is played.
class Listener final : public PhoneObserver {
public:
    void called(const Call& call) override {
        if (call.operation == Operation::AudioServicesPlaySystemSound)
            switching.push_back(NoctaraInstance->switchingToAirplane);
    }
    void happens(const Happening&) override {}

    std::vector<bool> switching;
};

TEST_F(Cues, warn_only_after_idle_sleep_is_held_back) {
    Listener listener;
    scenario.settings = settings;
    switchOn();
    phone().observe(listener);
    launch();
    playReadings(1);
    lies(ScreenDown);
    playReadings(1);
    EXPECT_THAT(listener.switching, ElementsAre(true));
}

TEST_F(Cues, are_silent_at_the_second_reading) {
    beginOnTheTable();
    playReadings(1);
    calls.clear();
    playReadings(1);
    EXPECT_THAT(cues(), IsEmpty());
}

TEST_F(Cues, vibrate_before_the_switch_at_the_third_reading_without_a_sound) {
    beginOnTheTable();
    playReadings(2);
    calls.clear();
    playReadings(1);
    EXPECT_THAT(cues(), ElementsAre(hop, play(4095), switchHop, "setIsInAirplaneMode: [true]"));
}

TEST_F(Cues, of_waking_are_the_sound_then_the_vibration_each_by_a_hop_of_its_own) {
    beginAsleep();
    playReadings(2);
    EXPECT_THAT(cues(), IsEmpty());
    playReadings(1);
    EXPECT_THAT(cues(), ElementsAre(hop, play(monitor().offMP3), hop, play(4095), switchHop,
                                    "setIsInAirplaneMode: [false]"));
}

TEST_F(Cues, of_waking_are_silent_without_the_sound) {
    settings.set("PlaySound", false);
    beginAsleep();
    playReadings(3);
    EXPECT_THAT(cues(), ElementsAre(hop, play(4095), switchHop, "setIsInAirplaneMode: [false]"));
}

TEST_F(Cues, of_waking_are_only_heard_without_the_vibration) {
    settings.set("Vibrate", false);
    beginAsleep();
    playReadings(3);
    EXPECT_THAT(cues(), ElementsAre(hop, play(monitor().offMP3), switchHop,
                                    "setIsInAirplaneMode: [false]"));
}

TEST_F(Cues, of_falling_asleep_are_only_felt_without_the_sound) {
    settings.set("PlaySound", false);
    beginOnTheTable();
    playReadings(1);
    EXPECT_FALSE(monitor().switchingToAirplane);
    playReadings(2);
    EXPECT_THAT(cues(), ElementsAre(hop, play(4095), switchHop, "setIsInAirplaneMode: [true]"));
}

TEST_F(Cues, of_falling_asleep_are_only_heard_without_the_vibration) {
    settings.set("Vibrate", false);
    beginOnTheTable();
    playReadings(3);
    EXPECT_THAT(cues(), ElementsAre(hop, play(monitor().airplaneModeMP3), switchHop,
                                    "setIsInAirplaneMode: [true]"));
}

TEST_F(Cues, switched_off_are_never_played_and_the_switches_come_at_the_same_moments) {
    const auto withCues = switchesOfANightWithCues(true);
    EXPECT_EQ(calls.count("AudioServicesPlaySystemSound"), 4U);
    calls.clear();
    const auto without = switchesOfANightWithCues(false);
    EXPECT_THAT(calls.of({"AudioServicesPlaySystemSound"}), IsEmpty());
    EXPECT_THAT(calls.calls(), Not(Contains(hop)));
    ASSERT_EQ(withCues.size(), 2U);
    EXPECT_EQ(without, withCues);
}

TEST_F(Cues, warn_again_after_an_interrupted_countdown) {
    beginOnTheTable();
    playReadings(2);
    lies(InHand);
    playReadings(1);
    EXPECT_THAT(cues(), ElementsAre(hop, play(monitor().airplaneModeMP3)));
    EXPECT_FALSE(phone().radios.states().airplane);
    EXPECT_TRUE(monitor().switchingToAirplane);

    calls.clear();
    lies(ScreenDown);
    playReadings(2);
    EXPECT_THAT(cues(), ElementsAre(hop, play(monitor().airplaneModeMP3)));
}

TEST_F(Cues, without_their_sound_files_go_on_with_sound_zero) {
    scenario.phone.sounds = false;
    beginOnTheTable();
    EXPECT_EQ(monitor().airplaneModeMP3, 0U);
    EXPECT_EQ(monitor().offMP3, 0U);
    playReadings(3);
    EXPECT_THAT(cues(), ElementsAre(hop, play(0), hop, play(4095), switchHop,
                                    "setIsInAirplaneMode: [true]"));
    EXPECT_THAT(calls.logged(), IsEmpty());
    lies(InHand);
    calls.clear();
    playReadings(3);
    EXPECT_THAT(cues(), ElementsAre(hop, play(0), hop, play(4095), switchHop,
                                    "setIsInAirplaneMode: [false]"));
}

TEST_F(Cues, start_on_the_main_thread_at_the_monitors_demand) {
    beginOnTheTable();
    playReadings(3);
    std::vector<std::string> threads;
    for (const auto& made : calls.lines)
        if (made.text == hop || made.operation == "AudioServicesPlaySystemSound")
            threads.push_back(made.thread);
    EXPECT_THAT(threads, ElementsAre("monitor", "main", "monitor", "main"));
}

} // namespace
} // namespace noctara
