/// The monitor reads settings files of other programs, and they can read the monitor's.
#include "tests/monitor/a_settings_file.h"

#include <cstdlib>
#include <fstream>

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* editedByHand = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>3GSwitch</key>
	<true/>
	<key>ActiveOnSleep</key>
	<integer>0</integer>
	<key>AirplaneSwitch</key>
	<false/>
	<key>BTSwitch</key>
	<true/>
	<key>Debug</key>
	<false/>
	<!-- added by hand -->
	<key>DetectManual</key>
	<false/>
	<key>EdgeSwitch</key>
	<true/>
	<key>EnableOnAC</key>
	<true/>
	<key>Enabled</key>
	<true/>
	<key>LocationSwitch</key>
	<true/>
	<key>PhoneSwitch</key>
	<false/>
	<key>PlaySound</key>
	<true/>
	<key>ScanInterval</key>
	<integer>4</integer>
	<key>ScreenDown</key>
	<false/>
	<key>Sensitivity</key>
	<real>2.75</real>
	<key>StartHour</key>
	<integer>23</integer>
	<key>StopHour</key>
	<string>8</string>
	<key>TimeLimit</key>
	<true/>
	<key>WifiSwitch</key>
	<true/>
	<key>launch-app-com.apple.mobiletimer</key>
	<true/>
	<key>launch-app-com.example.R&amp;D</key>
	<true/>
	<key>launch-app-off</key>
	<false/>
</dict>
</plist>
)";

class ASettingsFileOfAnotherProgram : public SettingsStage {
protected:
    /// The monitor sees whatever then comes to be in the settings file's place.
    void SetUp() override {
        makeOn(Storage::disk, std::nullopt);
        std::filesystem::create_directories(placeOnDisk().parent_path());
        std::ofstream(byHand()) << editedByHand;
    }

    std::filesystem::path byHand() const {
        return placeOnDisk().parent_path() / "edited-by-hand.xml";
    }

    /// A shell command in which "$1" is the file edited by hand and "$2" the settings file.
    bool run(const std::string& command) const {
        return std::system(("set -- '" + byHand().string() + "' '" + placeOnDisk().string() +
                            "'; " + command)
                               .c_str()) == 0;
    }

    bool python(const std::string& program) const {
        return run("python3 -c \"import datetime, plistlib, sys\n" + program + "\" \"$1\" \"$2\"");
    }

    static bool isInstalled(const std::string& probe) {
        return std::system((probe + " >/dev/null 2>&1").c_str()) == 0;
    }

    std::string text() const {
        std::ifstream in(placeOnDisk(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    /// "Vibrate" is not in the file; everything else is taken over from it.
    void expectTakenOver() {
        own->_DEBUG_ = false;
        own->vibrate = true;
        announce();
        EXPECT_TRUE(own->enabled);
        EXPECT_EQ(own->sleepTime, 20);
        EXPECT_FALSE(own->screenDown);
        EXPECT_FALSE(own->activeOnSleep);
        EXPECT_FALSE(own->disableOnManualChange);
        EXPECT_TRUE(own->timeLimit);
        EXPECT_EQ(own->startTime, 23);
        EXPECT_EQ(own->stopTime, 8);
        EXPECT_TRUE(own->playSound);
        EXPECT_TRUE(own->vibrate);
        EXPECT_TRUE(own->enabledOnChargeOnly);
        EXPECT_EQ(own->sensitivity, 2);
        EXPECT_FALSE(own->airplaneSwitch);
        EXPECT_TRUE(own->wifiSwitch);
        EXPECT_TRUE(own->bluetoothSwitch);
        EXPECT_FALSE(own->phoneSwitch);
        EXPECT_TRUE(own->edgeSwitch);
        EXPECT_TRUE(own->_3GSwitch);
        EXPECT_TRUE(own->locationSwitch);
        EXPECT_FALSE(own->_DEBUG_);
        EXPECT_THAT(own->applicationsToStart,
                    testing::UnorderedElementsAre("com.apple.mobiletimer", "com.example.R&D"));
        EXPECT_EQ(calls.count("writeToFile:atomically:"), 1U);
        EXPECT_TRUE(calls.hasLogged(settingsFileCreated));
    }

    /// The one missing key is filled in, all others are as they were, and the form is XML.
    void expectCompleted() {
        EXPECT_THAT(text(), StartsWith("<?xml"));
        EXPECT_THAT(text(), HasSubstr("com.example.R&amp;D"));
        const auto completed = file();
        ASSERT_TRUE(completed);
        EXPECT_EQ(completed->size(), 23U);
        EXPECT_EQ(*completed->find("Vibrate"), PropertyList(1));
        EXPECT_EQ(*completed->find("StopHour"), PropertyList("8"));
        EXPECT_EQ(*completed->find("Sensitivity"), PropertyList(2.75));
        EXPECT_EQ(*completed->find("3GSwitch"), PropertyList(true));
        EXPECT_EQ(*completed->find("ActiveOnSleep"), PropertyList(0));

        calls.clear();
        announce();
        EXPECT_THAT(calls.of({"writeToFile:atomically:"}), IsEmpty());
    }
};

TEST_F(ASettingsFileOfAnotherProgram, edited_by_hand_as_xml_is_taken_over_and_completed) {
    std::filesystem::copy_file(byHand(), placeOnDisk());
    expectTakenOver();
    expectCompleted();
}

TEST_F(ASettingsFileOfAnotherProgram, with_a_byte_order_mark_and_dos_line_ends_is_taken_over) {
    std::string dos = "\xEF\xBB\xBF";
    for (const char c : std::string(editedByHand))
        dos += c == '\n' ? std::string("\r\n") : std::string(1, c);
    std::ofstream(placeOnDisk(), std::ios::binary) << dos;
    expectTakenOver();
    expectCompleted();
}

TEST_F(ASettingsFileOfAnotherProgram, made_binary_by_plistutil_is_taken_over_and_completed) {
    if (!isInstalled("plistutil --version"))
        GTEST_SKIP() << "plistutil is not installed";
    ASSERT_TRUE(run("plistutil -i \"$1\" -o \"$2\" -f bin"));
    ASSERT_THAT(text(), StartsWith("bplist00"));
    expectTakenOver();
    expectCompleted();
}

class ASettingsFileOfPython : public ASettingsFileOfAnotherProgram {
protected:
    void SetUp() override {
        if (!isInstalled("python3 -c 'import plistlib'"))
            GTEST_SKIP() << "python3 with plistlib is not installed";
        ASettingsFileOfAnotherProgram::SetUp();
    }

    bool write(const std::string& form) const {
        return python("with open(sys.argv[1], 'rb') as file: settings = plistlib.load(file)\n"
                      "with open(sys.argv[2], 'wb') as file: plistlib.dump(settings, file, fmt=" +
                      form + ")");
    }
};

TEST_F(ASettingsFileOfPython, made_binary_is_taken_over_and_completed) {
    ASSERT_TRUE(write("plistlib.FMT_BINARY"));
    ASSERT_THAT(text(), StartsWith("bplist00"));
    expectTakenOver();
    expectCompleted();
}

TEST_F(ASettingsFileOfPython, made_as_xml_is_taken_over_and_completed) {
    ASSERT_TRUE(write("plistlib.FMT_XML, sort_keys=False"));
    expectTakenOver();
    expectCompleted();
}

TEST_F(ASettingsFileOfPython, that_is_binary_and_empty_becomes_a_complete_one) {
    ASSERT_TRUE(python("with open(sys.argv[2], 'wb') as file:\n"
                       "    plistlib.dump({}, file, fmt=plistlib.FMT_BINARY)"));
    own->reloadPreferences();
    EXPECT_EQ(calls.count("writeToFile:atomically:"), 20U);
    EXPECT_EQ(file()->size(), 20U);
}

TEST_F(ASettingsFileOfPython, whose_top_is_an_array_counts_as_damaged) {
    ASSERT_TRUE(python("with open(sys.argv[2], 'wb') as file:\n"
                       "    plistlib.dump([True], file, fmt=plistlib.FMT_BINARY)"));
    const std::string before = text();
    own->reloadPreferences();
    EXPECT_THAT(calls.logged(), testing::Contains(settingsFileNotCreated).Times(20));
    EXPECT_EQ(text(), before);
}

TEST_F(ASettingsFileOfPython, keeps_its_other_values_when_it_is_completed) {
    ASSERT_TRUE(python(
        "with open(sys.argv[2], 'wb') as file:\n"
        "    plistlib.dump({'seen': datetime.datetime(2014, 3, 1, 22, 30), 'token': b'\\0\\xff',\n"
        "                   'big': 2 ** 62, 'nested': {'list': [1, 'Größe', -0.5]}},\n"
        "                  file, fmt=plistlib.FMT_BINARY)"));
    own->reloadPreferences();
    EXPECT_TRUE(python("with open(sys.argv[2], 'rb') as file: found = plistlib.load(file)\n"
                       "assert found['seen'] == datetime.datetime(2014, 3, 1, 22, 30), found\n"
                       "assert found['token'] == b'\\0\\xff' and found['big'] == 2 ** 62, found\n"
                       "assert found['nested'] == {'list': [1, 'Größe', -0.5]}, found\n"
                       "assert found['StartHour'] == 21 and len(found) == 24, found"));
}

TEST_F(ASettingsFileOfPython, made_by_the_monitor_is_read_by_python_with_all_its_types) {
    own->reloadPreferences();
    EXPECT_TRUE(python(
        "with open(sys.argv[2], 'rb') as file: found = plistlib.load(file)\n"
        "expected = dict(Enabled=True, ScanInterval=1, ScreenDown=True, ActiveOnSleep=True,\n"
        "    DetectManual=True, TimeLimit=False, StartHour=21, StopHour=7, PlaySound=True,\n"
        "    Vibrate=True, EnableOnAC=False, Sensitivity=5, AirplaneSwitch=True,\n"
        "    WifiSwitch=False, BTSwitch=False, PhoneSwitch=0, EdgeSwitch=False,\n"
        "    LocationSwitch=False, Debug=False, Stop=False)\n"
        "expected['3GSwitch'] = False\n"
        "assert found == expected, found\n"
        "assert all(type(found[key]) is type(expected[key]) for key in expected), found"));
}

TEST_F(ASettingsFileOfAnotherProgram, replaced_during_the_night_takes_effect_when_announced) {
    own->reloadPreferences();
    EXPECT_EQ(own->startTime, 21);
    std::filesystem::copy_file(byHand(), placeOnDisk(),
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(own->startTime, 21);
    announce();
    EXPECT_EQ(own->startTime, 23);
    EXPECT_THAT(own->applicationsToStart, ElementsAre("com.apple.mobiletimer", "com.example.R&D"));
}

} // namespace
} // namespace noctara
