/// The stand-in phone from outside: the loader, virtual and real time, and the end of the process
/// during a night.
#include "input/temporary_folder.h"
#include "phones/model/property_list_file.h"
#include "tests/programs.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace noctara {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class AStandInPhone : public testing::Test {
protected:
    std::string file(const std::string& name) const { return (folder.path / name).string(); }

    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(file(name)) << text;
        return file(name);
    }

    Played springBoard(const std::string& arguments, const std::string& before = "") const {
        return run(before + " '" NOCTARA_SPRINGBOARD "' " + arguments + " 2>&1");
    }

    /// The calls in the trace that change airplane mode, sounds and applications, in order.
    std::vector<std::string> deeds(const std::string& trace) const {
        std::ifstream lines(trace);
        std::vector<std::string> found;
        for (std::string line; std::getline(lines, line);)
            for (const char* operation :
                 {"setIsInAirplaneMode:", "AudioServicesPlaySystemSound", "launch", "kill"}) {
                const auto place = line.find("\"op\":\"" + std::string(operation) + "\"");
                if (place != line.npos)
                    found.push_back(line.substr(place));
            }
        return found;
    }

    /// A night of a quarter of an hour.
    const std::string shortNight = "hours = 0.25\n"
                                   "[settings]\n"
                                   "Enabled = true\n"
                                   "ScanInterval = 1\n"
                                   "ScreenDown = true\n"
                                   "PlaySound = true\n"
                                   "Vibrate = true\n"
                                   "\"launch-app-com.example.alarm\" = true\n"
                                   "[[application]]\n"
                                   "identifier = \"com.example.alarm\"\n"
                                   "[[event]]\n"
                                   "at = 22:33:00\n"
                                   "posture = \"screen-down\"\n"
                                   "[[event]]\n"
                                   "at = 22:40:00\n"
                                   "posture = \"in-hand\"\n";

    const TemporaryFolder folder;
};

TEST_F(AStandInPhone, tells_the_story_of_the_typical_night_as_the_simulated_phone_does) {
    const Played night = run("'" NOCTARA_SPRINGBOARD "' 2>/dev/null");
    EXPECT_EQ(night.exitCode, 0);
    std::ostringstream story;
    story << std::ifstream(NOCTARA_SOURCE_DIR "/scenarios/typical-night.story").rdbuf();
    EXPECT_EQ(night.output, story.str());
}

TEST_F(AStandInPhone, does_the_same_in_real_time_as_on_the_virtual_clock) {
    const std::string night = write("night.toml", shortNight);
    EXPECT_EQ(springBoard(night + " --trace " + file("virtual.jsonl")).exitCode, 0);
    EXPECT_EQ(
        springBoard(night + " --real-time --speed 100 --trace " + file("real.jsonl")).exitCode, 0);
    EXPECT_THAT(deeds(file("virtual.jsonl")), testing::SizeIs(8));
    EXPECT_EQ(deeds(file("real.jsonl")), deeds(file("virtual.jsonl")));
}

TEST_F(AStandInPhone, leaves_nothing_out_when_its_clock_is_too_fast_for_it) {
    std::string changes = "start = 2014-03-01T22:30:00\nhours = 0.16695\n";
    for (int second = 0; second < 600; ++second)
        changes += fmt::format("[[event]]\nat = 2014-03-01T22:{}:{:02}\n"
                               "settings = {{ Sensitivity = {} }}\n",
                               30 + second / 60, second % 60, second % 9);
    for (const char* speed : {"4000", "8000"}) {
        springBoard(write("changes.toml", changes) + " --real-time --trace " + file("trace.jsonl") +
                    " --speed " + speed);
        EXPECT_EQ(run("grep -c '\"event\":' '" + file("trace.jsonl") + "'").output, "600\n")
            << speed;
    }
}

TEST_F(AStandInPhone, does_the_same_where_the_clock_of_the_machine_is_fast) {
#ifdef NOCTARA_SANITIZED
    GTEST_SKIP() << "a sanitizer has to be the first library, and so has the one that makes clocks "
                    "fast";
#endif
    const std::string night = write("night.toml", shortNight);
    springBoard(night + " --trace " + file("virtual.jsonl"));
    EXPECT_EQ(
        springBoard(night + " --real-time --trace " + file("fast.jsonl"), "faketime -f '+0 x100'")
            .exitCode,
        0);
    EXPECT_THAT(deeds(file("virtual.jsonl")), testing::SizeIs(8));
    EXPECT_EQ(deeds(file("fast.jsonl")), deeds(file("virtual.jsonl")));
}

TEST_F(AStandInPhone, that_is_killed_in_the_night_finds_its_settings_when_it_starts_again) {
    const std::string night = write("night.toml", shortNight);
    const std::string root = " --root " + file("phone");
    const std::string settings =
        file("phone/private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist");

    // In the sleep state, at 22:36.
    const Played killed =
        run("timeout --signal=KILL 3.6 '" NOCTARA_SPRINGBOARD "' " + night + root +
            " --real-time --speed 100 --trace " + file("killed.jsonl") + " 2>&1; exit $?");
    EXPECT_EQ(killed.exitCode, 137);
    EXPECT_EQ(run("plistutil -i '" + settings + "' > /dev/null").exitCode, 0);

    const Played again = springBoard(night + root + " --trace " + file("again.jsonl"));
    EXPECT_EQ(again.exitCode, 0) << again.output;
    EXPECT_THAT(again.output, HasSubstr("The phone is back."));
}

TEST_F(AStandInPhone, loads_the_library_only_where_the_filter_lets_it) {
    const std::string maps =
        write("maps.toml", "hours = 1\n[phone]\nbundle = \"com.apple.Maps\"\n");
    const Played night = springBoard(maps + " --trace " + file("trace.jsonl"));
    EXPECT_EQ(night.exitCode, 0);
    EXPECT_THAT(night.output, HasSubstr("com.apple.Maps"));
    EXPECT_EQ(fs::file_size(file("trace.jsonl")), 0U);
}

TEST_F(AStandInPhone, reports_its_capabilities_as_the_simulated_phone_does) {
    const std::string phone =
        write("phone.toml",
              "[phone]\nmachine = \"iPhone5,1\"\ncapabilities = [\"gps\", \"telephony\"]\n");
    const Played report = run("'" NOCTARA_SPRINGBOARD "' --capabilities " + phone + " 2>/dev/null");
    EXPECT_EQ(report.exitCode, 0);
    EXPECT_THAT(report.output, HasSubstr("gps: Yes"));
    EXPECT_EQ(report.output, run("'" NOCTARA_COMMAND "' capabilities " + phone).output);
}

TEST_F(AStandInPhone, refuses_bad_input_in_one_line) {
    const auto refusal = [this](const std::string& arguments) {
        const Played refused = springBoard(arguments);
        EXPECT_EQ(refused.exitCode, 2) << refused.output;
        EXPECT_EQ(std::count(refused.output.begin(), refused.output.end(), '\n'), 1)
            << refused.output;
        return refused.output;
    };
    EXPECT_THAT(refusal("nowhere.toml"), HasSubstr("nowhere.toml"));
    EXPECT_THAT(refusal("--speed 10"), HasSubstr("--real-time"));
    EXPECT_THAT(refusal("--real-time --speed 0"), HasSubstr("--speed"));
    EXPECT_THAT(refusal("--library nowhere.so"), HasSubstr("nowhere.so"));
    const std::string noLibrary = write("no.so", "this is no library");
    EXPECT_THAT(refusal("--library " + noLibrary + " --filter " NOCTARA_OPEN_FILTER),
                HasSubstr("no.so"));
    EXPECT_THAT(refusal("--filter " + noLibrary), HasSubstr("filter"));
    EXPECT_THAT(refusal("--trace " + file("no/folder/trace.jsonl")), HasSubstr("--trace"));
}

TEST_F(AStandInPhone, leaves_no_files_behind) {
    const std::string night = write("night.toml", "hours = 0.1\n");
    fs::create_directory(file("temporary"));
    const Played played =
        springBoard(night, "TMPDIR='" + file("temporary") + "' HOME='" + file("home") + "'");
    EXPECT_EQ(played.exitCode, 0);
    EXPECT_TRUE(fs::is_empty(file("temporary")));
    EXPECT_FALSE(fs::exists(file("home")));
}

TEST_F(AStandInPhone, that_is_interrupted_ends_its_night_in_order) {
    fs::create_directory(file("temporary"));
    for (const std::string signal : {"INT", "TERM", "HUP"}) {
        const Played night =
            springBoard("--real-time --speed 60 --trace " + file("trace.jsonl"),
                        "TMPDIR='" + file("temporary") +
                            "' timeout --preserve-status --signal=" + signal + " 1.5");
        EXPECT_EQ(night.exitCode, 1) << signal;
        EXPECT_THAT(night.output, HasSubstr("Figures of"));
        EXPECT_THAT(night.output, HasSubstr("the night ended early: it was interrupted."));
        EXPECT_THAT(run("tail -c 2 '" + file("trace.jsonl") + "'").output, "}\n");
        EXPECT_TRUE(fs::is_empty(file("temporary")));
    }
}

TEST_F(AStandInPhone, keeps_the_other_values_of_the_settings_file_when_it_saves_missing_ones) {
    const std::string night = write("night.toml", "timezone = \"Europe/Paris\"\nhours = 0.01\n");
    const std::string preferences = "/private/var/mobile/Library/Preferences/";
    for (const std::string& phone :
         {"'" NOCTARA_SPRINGBOARD "' " + night, "'" NOCTARA_COMMAND "' night " + night}) {
        fs::create_directories(file("phone" + preferences));
        const std::string settings =
            write("phone" + preferences + "com.quorbit.Noctara.plist",
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
                  "<key>zero</key><real>-0.0</real><key>real</key><real>0.1</real>"
                  "<key>date</key><date>2012-07-04T05:06:07Z</date><key>truth</key><true/>"
                  "<key>inside</key><array><real>-0.0</real><integer>-1</integer></array>"
                  "</dict></plist>");
        EXPECT_EQ(run(phone + " --root '" + file("phone") + "'").exitCode, 0);
        write("show.py",
              "import plistlib\n"
              "with open('" +
                  settings +
                  "', 'rb') as file: found = plistlib.load(file)\n"
                  "for key in 'zero', 'real', 'date', 'truth', 'inside', 'Sensitivity':\n"
                  "    print(repr(found[key]))\n");
        EXPECT_EQ(run("python3 '" + file("show.py") + "'").output,
                  "-0.0\n0.1\ndatetime.datetime(2012, 7, 4, 5, 6, 7)\nTrue\n[-0.0, -1]\n5\n")
            << phone;
    }
}

TEST_F(AStandInPhone, that_is_interrupted_leaves_the_files_of_its_last_moment) {
    // In the sleep state, from 22:33 on.
    const std::string night = write("night.toml", shortNight);
    const Played interrupted =
        springBoard(night + " --real-time --speed 100 --root " + file("phone"),
                    "timeout --preserve-status --signal=INT 3.6");
    EXPECT_THAT(interrupted.output, HasSubstr("it was interrupted"));
    const auto radios = readPropertyListFile(
        file("phone/private/var/preferences/SystemConfiguration/com.apple.radios.plist"));
    EXPECT_EQ(*radios.value, PropertyList(Dictionary{{"AirplaneMode", true}}));
}

} // namespace

} // namespace noctara
