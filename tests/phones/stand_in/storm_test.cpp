/// The library on two real threads that run concurrently, with a high rate of events on the main
/// thread. Meant to be run with a sanitizer.
#include "input/temporary_folder.h"
#include "tests/programs.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace noctara {

namespace {

/// A charger change, a settings announcement and a power message in each of `count` seconds.
/// Sometimes the phone is put down or picked up.
std::string storm(int count, const std::string& bundle) {
    std::string text = fmt::format("start = 2014-03-01T22:30:00\n"
                                   "hours = {}\n"
                                   "[phone]\n"
                                   "bundle = \"{}\"\n"
                                   "[settings]\n"
                                   "Enabled = true\n"
                                   "ScanInterval = 1\n"
                                   "ScreenDown = true\n"
                                   "ActiveOnSleep = true\n"
                                   "PlaySound = true\n"
                                   "Vibrate = true\n"
                                   "Debug = true\n"
                                   "\"launch-app-com.example.alarm\" = true\n"
                                   "[[application]]\n"
                                   "identifier = \"com.example.alarm\"\n",
                                   (count + 60) / 3600.0, bundle);
    for (int i = 0; i < count; ++i) {
        const int second = i + 5;
        const auto event = [&](const std::string& action) {
            text += fmt::format("[[event]]\nat = 2014-03-01T{:02}:{:02}:{:02}\n{}\n",
                                22 + (30 + second / 60) / 60, (30 + second / 60) % 60, second % 60,
                                action);
        };
        event(fmt::format("charger = {}", i % 2 == 0));
        event(fmt::format("settings = {{ Sensitivity = {}, Debug = {}, Vibrate = {} }}", i % 9,
                          i % 3 == 0, i % 5 == 0));
        event(fmt::format("power_message = {}", i % 2 == 0 ? 0xE0000270U : 0xE0000280U));
        if (i % 50 == 0)
            event(fmt::format("posture = \"{}\"", i / 50 % 2 == 0 ? "screen-down" : "in-hand"));
    }
    return text;
}

struct Counts {
    int charger = 0;
    int reloads = 0;
    int answers = 0;
    int transitions = 0;
};

class AStorm : public testing::Test {
protected:
    Played play(int count, const std::string& options,
                const std::string& bundle = "com.apple.springboard") {
        const std::string scenario = (folder.path / "storm.toml").string();
        std::ofstream(scenario) << storm(count, bundle);
        return run("'" NOCTARA_SPRINGBOARD "' " + scenario + " --real-time " + options + " 2>&1");
    }

    Counts countTrace() const {
        Counts counts;
        std::ifstream lines(trace());
        for (std::string line; std::getline(lines, line);) {
            const auto has = [&](const char* text) { return line.find(text) != line.npos; };
            counts.charger += has("\"op\":\"isOnAC\"");
            counts.reloads += has("\"thread\":\"main\",\"op\":\"initWithContentsOfFile:\"") &&
                              has("com.quorbit.Noctara.plist");
            counts.answers +=
                has("\"op\":\"IOAllowPowerChange\"") || has("\"op\":\"IOCancelPowerChange\"");
            counts.transitions += has("\"op\":\"updateAirplaneMode\"");
        }
        return counts;
    }

    std::string trace() const { return (folder.path / "storm.jsonl").string(); }

    const TemporaryFolder folder;
};

TEST_F(AStorm, of_a_thousand_changes_is_answered_whole) {
    const Played night = play(1000, "--speed 50 --trace " + trace());
    EXPECT_EQ(night.exitCode, 0) << night.output;
    EXPECT_THAT(night.output, testing::Not(testing::HasSubstr("Sanitizer")));
    const Counts counts = countTrace();
    EXPECT_EQ(counts.charger, 1001) << "one of them at the start";
    EXPECT_GE(counts.reloads, 1000) << "a reload that fills in missing keys reads more than once";
    EXPECT_EQ(counts.answers, 1000);
    EXPECT_GE(counts.transitions, 10);
}

/// The size of the heap from `--usage`, in KiB.
long heapInUse(const Played& night) {
    const std::string words = "heap in use ";
    const auto place = night.output.find(words);
    EXPECT_NE(place, night.output.npos) << night.output;
    return place == night.output.npos ? 0 : std::atol(night.output.c_str() + place + words.size());
}

TEST_F(AStorm, of_twice_the_length_needs_no_more_memory) {
#ifdef NOCTARA_SANITIZED
    GTEST_SKIP() << "the sanitizers have a heap of their own";
#endif
    // The phone itself uses as much as the same night in a process without the library.
    const auto heapOfTheLibrary = [this](int count) {
        const std::string options = "--speed 400 --usage";
        const long with = heapInUse(play(count, options, "com.apple.springboard"));
        return with - heapInUse(play(count, options, "com.apple.Maps"));
    };
    // Foundation fills caches of its own in the first minutes.
    const long shortStorm = heapOfTheLibrary(1500);
    const long longStorm = heapOfTheLibrary(3000);
    EXPECT_GT(shortStorm, 0);
    EXPECT_LT(longStorm - shortStorm, 1500 * 3 * 16 / 1024)
        << "16 bytes for each change: " << shortStorm << " KiB, then " << longStorm;
}

} // namespace

} // namespace noctara
