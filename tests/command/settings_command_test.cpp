/// `noctara settings` from outside.
#include "input/temporary_folder.h"
#include "phones/model/property_list_file.h"
#include "tests/full_settings.h"
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace noctara {

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class TheSettingsCommand : public testing::Test {
protected:
    TheSettingsCommand() { holds(fullSettings()); }

    void holds(const Dictionary& settings) const {
        std::ofstream(file, std::ios::binary) << propertyListXml(settings);
    }

    Dictionary content() const { return *readPropertyListFile(file).value->as<Dictionary>(); }

    std::string bytes() const {
        std::ostringstream all;
        all << std::ifstream(file, std::ios::binary).rdbuf();
        return all.str();
    }

    Played settings(const std::string& arguments) const {
        return run("'" NOCTARA_COMMAND "' settings '" + file.string() + "' " + arguments + " 2>&1");
    }

    std::string output(const std::string& arguments) const {
        const Played outcome = settings(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
        return outcome.output;
    }

    /// One line and exit code 2. The file is as it was.
    std::string refusalOf(const std::string& arguments) const {
        const std::string before = bytes();
        const Played outcome = settings(arguments);
        EXPECT_EQ(outcome.exitCode, 2) << arguments;
        EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 1)
            << outcome.output;
        EXPECT_EQ(bytes(), before);
        return outcome.output;
    }

    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path / "settings.plist";
};

TEST_F(TheSettingsCommand, shows_each_setting_with_its_value_default_and_meaning) {
    holds(fullSettings({{"StartHour", 22}}));
    const std::string shown = output("show");
    EXPECT_THAT(shown, StartsWith("key             value  default  meaning\n"
                                  "Enabled         on     on       Noctara watches the phone\n"));
    EXPECT_THAT(shown, HasSubstr("\nStartHour       22     21       the hour at which "));
    EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 22);
    EXPECT_EQ(output(""), shown) << "to show is the default";
}

TEST_F(TheSettingsCommand, shows_applications_other_keys_and_what_is_odd) {
    Dictionary odd =
        fullSettings({{"launch-app-com.example.radio", true}, {"Version\x1B[1m", "two"}});
    odd.remove("Vibrate");
    holds(odd);
    const std::string shown = output("show");
    EXPECT_THAT(shown, HasSubstr("\nVibrate         missing  on       the phone vibrates "));
    EXPECT_THAT(shown, HasSubstr("\nlaunch-app-com.example.radio  on              off  launched "));
    EXPECT_THAT(shown, HasSubstr("\n\"Version?[1m\"                 the text \"two\"  -    no "
                                 "setting\n"));
    EXPECT_THAT(shown, HasSubstr("\nOdd: Vibrate is missing: "));
    EXPECT_THAT(shown, HasSubstr("\nOdd: \"Version?[1m\" is no setting and has no effect.\n"));
}

TEST_F(TheSettingsCommand, gets_a_value) {
    EXPECT_EQ(output("get Sensitivity"), "5\n");
    EXPECT_EQ(output("get TimeLimit"), "off\n");
    holds(fullSettings({{"PhoneSwitch", 1}, {"Version", 2}}));
    EXPECT_EQ(output("get PhoneSwitch"), "on\n");
    EXPECT_EQ(output("get Version"), "2\n");
}

TEST_F(TheSettingsCommand, says_what_a_missing_value_means) {
    holds(Dictionary{});
    EXPECT_THAT(refusalOf("get Enabled"),
                HasSubstr("settings.plist: has no Enabled; it counts as off when the home screen "
                          "starts, and as on, its default, from the next change of the settings "
                          "on\n"));
    EXPECT_THAT(refusalOf("get launch-app-x"), HasSubstr("the application is not launched"));
    EXPECT_THAT(refusalOf("get Sensitivty"), HasSubstr("did you mean \"Sensitivity\"?"));
}

TEST_F(TheSettingsCommand, sets_a_value) {
    EXPECT_EQ(output("set TimeLimit on"), "TimeLimit is on now; it was off.\n");
    EXPECT_EQ(output("set StopHour 6"), "StopHour is 6 now; it was 7.\n");
    EXPECT_EQ(content(), fullSettings({{"TimeLimit", true}, {"StopHour", 6}}));
}

TEST_F(TheSettingsCommand, leaves_the_file_alone_if_it_has_the_value) {
    const std::string asWritten = "<plist><dict><key>TimeLimit</key><true/></dict></plist>";
    std::ofstream(file) << asWritten;
    EXPECT_EQ(output("set TimeLimit on"), "TimeLimit is on already.\n");
    EXPECT_EQ(bytes(), asWritten);
}

TEST_F(TheSettingsCommand, says_if_the_new_value_is_odd_among_the_others) {
    output("set TimeLimit on");
    EXPECT_EQ(output("set StartHour 7"),
              "StartHour is 7 now; it was 21.\nOdd: StartHour and StopHour are both 7: with "
              "TimeLimit on, the phone never goes quiet.\n");
}

TEST_F(TheSettingsCommand, refuses_a_value_that_the_settings_page_could_not_write) {
    EXPECT_EQ(refusalOf("set Sensitivity 10"),
              "noctara: set: Sensitivity is 10; accepted: 0 to 9\n");
    EXPECT_EQ(refusalOf("set Sensitivity -1"),
              "noctara: set: Sensitivity is -1; accepted: 0 to 9\n");
    EXPECT_EQ(refusalOf("set TimeLimit 2"),
              "noctara: set: TimeLimit is \"2\"; accepted: on, off\n");
    EXPECT_EQ(refusalOf("set Timelimt on"),
              "noctara: set: unknown setting \"Timelimt\"; did you mean \"TimeLimit\"?\n");
}

TEST_F(TheSettingsCommand, makes_a_missing_file_only_if_asked_to) {
    std::filesystem::remove(file);
    EXPECT_THAT(refusalOf("set TimeLimit on"),
                HasSubstr("settings.plist: no such file; --create makes one with the defaults\n"));
    EXPECT_THAT(refusalOf("set --create TimeLimit maybe"), HasSubstr("accepted: on, off"));
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(output("set --create TimeLimit on"), "TimeLimit is on now; it was off.\n");
    EXPECT_EQ(output("set --create StopHour 6"), "StopHour is 6 now; it was 7.\n");
    EXPECT_EQ(output("check"), "Nothing is odd.\n");
}

TEST_F(TheSettingsCommand, checks_a_file) {
    EXPECT_EQ(output("check"), "Nothing is odd.\n");
    holds(fullSettings({{"Sensitivity", 12}, {"Sensitivty", 3}}));
    const Played checked = settings("check");
    EXPECT_EQ(checked.exitCode, 1);
    EXPECT_EQ(checked.output,
              "Sensitivity is 12, not 0 to 9: the phone may be tilted by 0.97° at most.\n"
              "\"Sensitivty\" is no setting and has no effect; did you mean \"Sensitivity\"?\n");
}

TEST_F(TheSettingsCommand, adds_lists_and_removes_applications) {
    EXPECT_EQ(output("launch list"), "");
    EXPECT_EQ(output("launch add com.example.radio"),
              "launch-app-com.example.radio is on now; it was missing.\n");
    output("launch add launch-app-com.example.game");
    EXPECT_EQ(output("launch list"), "com.example.radio\ncom.example.game\n");
    EXPECT_EQ(output("launch remove com.example.radio"),
              "launch-app-com.example.radio is removed.\n");
    EXPECT_EQ(content(), fullSettings({{"launch-app-com.example.game", true}}));
    EXPECT_THAT(refusalOf("launch remove com.example.gmae"),
                HasSubstr("did you mean \"com.example.game\"?"));
    EXPECT_THAT(refusalOf("launch add launch-app-"), HasSubstr("names no application"));
}

TEST_F(TheSettingsCommand, refuses_a_command_that_it_does_not_know) {
    for (const char* arguments : {"shwo", "show more", "launch", "launch add", "set", "get",
                                  "set TimeLimit", "set TimeLimit on off"})
        EXPECT_THAT(refusalOf(arguments), HasSubstr("--help")) << arguments;
}

TEST_F(TheSettingsCommand, says_that_the_file_comes_first) {
    for (const char* arguments : {"set TimeLimit on", "check", "show x.plist"}) {
        const Played outcome =
            run(std::string("'" NOCTARA_COMMAND "' settings ") + arguments + " 2>&1");
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_THAT(outcome.output, HasSubstr("the name of the file comes first: noctara settings "
                                              "FILE "));
    }
}

/// Other programs read the other values as before.
class AChangedFile : public TheSettingsCommand {
protected:
    /// A Python expression of values of each type that its library can write.
    static constexpr const char* everyKind =
        "{'Enabled': 1, 'unsigned': 2**64 - 1, 'negative': -2**63, 'real': 0.1, 'text': 'Ä<&>', "
        "'date': datetime.datetime(2014, 3, 1, 22, 30), 'data': bytes(range(256)), 'nested': "
        "{'array': [True, {'deep': b'x'}, []]}}";

    std::string python(const std::string& program) const {
        const Played outcome =
            run("FILE='" + file.string() + "' python3 -c \"import datetime, os, plistlib\n" +
                "name = os.environ['FILE']\n" + program + "\" 2>&1");
        EXPECT_EQ(outcome.exitCode, 0);
        return outcome.output;
    }
};

TEST_F(AChangedFile, has_the_values_that_it_had_for_other_programs) {
    for (const std::string form : {"FMT_XML", "FMT_BINARY"}) {
        python("plistlib.dump(" + std::string(everyKind) + ", open(name, 'wb'), fmt=plistlib." +
               form + ")");
        output("set TimeLimit on");
        EXPECT_EQ(python("changed = plistlib.load(open(name, 'rb'), fmt=plistlib." + form +
                         ")\n"
                         "other = " +
                         everyKind +
                         "\n"
                         "print(changed.pop('TimeLimit'), changed == other, "
                         "all(type(changed[key]) == type(other[key]) for key in other))"),
                  "True True True\n")
            << form;
        const Played converted = run("plistutil -f xml -i '" + file.string() + "' 2>&1");
        EXPECT_EQ(converted.exitCode, 0);
        EXPECT_THAT(converted.output, HasSubstr("<key>TimeLimit</key>"));
    }
}

} // namespace

} // namespace noctara
