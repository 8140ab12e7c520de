/// The settings page and the sounds of the phone's package agree with what the monitor reads and
/// plays, and its library is signed again on the phone.
#include "input/temporary_folder.h"
#include "monitor/posture.h"
#include "phones/model/property_list_file.h"
#include "tests/monitor/a_settings_file.h"
#include "tests/programs.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace noctara {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;
using testing::UnorderedElementsAreArray;

const std::filesystem::path packaging = NOCTARA_SOURCE_DIR "/packaging";

/// Empty if there is none, or if it is not text.
std::string textIn(const Dictionary& specifier, const char* key) {
    const auto* value = specifier.find(key);
    const auto* text = value ? value->as<std::string>() : nullptr;
    return text ? *text : "";
}

const PropertyList& valueIn(const Dictionary& dictionary, const std::string& key) {
    const auto* value = dictionary.find(key);
    if (!value)
        throw std::runtime_error("there is no " + key);
    return *value;
}

template <typename T>
const T& in(const Dictionary& dictionary, const std::string& key) {
    const auto* value = valueIn(dictionary, key).as<T>();
    if (!value)
        throw std::runtime_error(key + " is of another type");
    return *value;
}

Dictionary dictionaryFrom(const std::filesystem::path& file) {
    const auto parsed = readPropertyListFile(file);
    if (!parsed.value || !parsed.value->as<Dictionary>())
        throw std::runtime_error(file.string() + ": " + parsed.error);
    return *parsed.value->as<Dictionary>();
}

class TheSettingsPage : public SettingsStage {
protected:
    TheSettingsPage() {
        for (const auto& item : in<Array>(page, "items"))
            items.push_back(*item.as<Dictionary>());
    }

    /// The items that show and change a setting.
    std::vector<Dictionary> controls() const {
        std::vector<Dictionary> found;
        for (const auto& item : items)
            if (item.find("key"))
                found.push_back(item);
        return found;
    }

    const Dictionary& control(const std::string& key) const {
        for (const auto& item : items)
            if (textIn(item, "key") == key)
                return item;
        throw std::runtime_error("there is no control for " + key);
    }

    /// The numbers to choose from, each with its title.
    std::vector<std::pair<std::int32_t, std::string>> choices(const std::string& key) const {
        const auto& values = in<Array>(control(key), "validValues");
        const auto& titles = in<Array>(control(key), "validTitles");
        EXPECT_EQ(values.size(), titles.size()) << key;
        std::vector<std::pair<std::int32_t, std::string>> found;
        for (std::size_t index = 0; index < std::min(values.size(), titles.size()); ++index) {
            EXPECT_TRUE(values[index].as<std::int64_t>()) << key;
            found.emplace_back(values[index].intValue(), *titles[index].as<std::string>());
        }
        return found;
    }

    const Dictionary& applications() const {
        for (const auto& item : items)
            if (textIn(item, "bundle") == "AppList")
                return item;
        throw std::runtime_error("there is no list of applications");
    }

    Dictionary page = dictionaryFrom(packaging / "phone/SettingsPage.plist");
    std::vector<Dictionary> items;
};

TEST_F(TheSettingsPage, has_every_setting_of_a_new_file_once_with_its_default) {
    makeOn(Storage::memory, std::nullopt).reloadPreferences();
    Dictionary newFile = *file();
    ASSERT_TRUE(newFile.remove("Stop")); // Nothing reads it.

    std::vector<std::string> expected, shown;
    for (const auto& [key, value] : newFile)
        expected.push_back(key);
    for (const auto& specifier : controls())
        shown.push_back(textIn(specifier, "key"));
    EXPECT_THAT(shown, SizeIs(20));
    ASSERT_THAT(shown, UnorderedElementsAreArray(expected));

    for (const auto& specifier : controls()) {
        const auto key = textIn(specifier, "key");
        const auto& value = valueIn(newFile, key);
        const auto& shownDefault = valueIn(specifier, "default");
        if (textIn(specifier, "cell") == "PSSwitchCell") {
            ASSERT_TRUE(shownDefault.as<bool>()) << key;
            EXPECT_EQ(shownDefault.boolValue(), value.boolValue()) << key;
            // The monitor adds this key itself, as a number.
            EXPECT_TRUE(value.as<bool>() || key == "PhoneSwitch") << key;
        } else {
            EXPECT_EQ(textIn(specifier, "cell"), "PSLinkListCell") << key;
            EXPECT_EQ(shownDefault, value) << key;
        }
    }
}

TEST_F(TheSettingsPage, writes_the_file_that_the_monitor_reads_and_announces_it_as_it_listens) {
    switchOn();
    launch();
    const std::filesystem::path settingsFile = settingsFilePath;
    for (const auto& specifier : controls()) {
        EXPECT_EQ(textIn(specifier, "defaults"), settingsFile.stem());
        EXPECT_THAT(calls.of({"notify_register_dispatch"}),
                    ElementsAre("notify_register_dispatch [\"" +
                                textIn(specifier, "PostNotification") + "\"]"));
    }
    EXPECT_EQ("/private" + textIn(applications(), "ALSettingsPath"), settingsFile);
    EXPECT_EQ(textIn(applications(), "ALChangeNotification"),
              textIn(control("Enabled"), "PostNotification"));
}

TEST_F(TheSettingsPage, offers_numbers_under_titles_that_say_what_the_monitor_makes_of_them) {
    for (const char* key : {"StartHour", "StopHour"}) {
        std::int32_t expected = 0;
        for (const auto& [value, title] : choices(key)) {
            EXPECT_EQ(value, expected++);
            EXPECT_EQ(title, std::to_string(value) + ":00");
        }
        EXPECT_EQ(expected, 24);
    }

    std::int32_t sensitivity = 0;
    for (const auto& [value, title] : choices("Sensitivity")) {
        EXPECT_EQ(value, sensitivity++);
        std::array<char, 40> expected{};
        std::snprintf(expected.data(), expected.size(), "%d (%.1f°)", value,
                      postureTolerance(value) * degreesPerRadian);
        EXPECT_EQ(title, expected.data());
    }
    EXPECT_EQ(sensitivity, 10);

    auto& monitor = makeOn(Storage::memory, settings);
    std::int32_t previous = 0;
    for (const auto& [value, title] : choices("ScanInterval")) {
        EXPECT_GT(value, previous);
        previous = value;
        change({{"ScanInterval", value}});
        EXPECT_EQ(title, std::to_string(monitor.sleepTime) + " s");
    }
    EXPECT_GE(previous, 6);
}

TEST_F(TheSettingsPage, has_the_default_of_a_number_among_its_choices) {
    for (const char* key : {"StartHour", "StopHour", "Sensitivity", "ScanInterval"})
        EXPECT_THAT(in<Array>(control(key), "validValues"),
                    Contains(valueIn(control(key), "default")))
            << key;
}

TEST_F(TheSettingsPage, chooses_applications_that_the_monitor_launches) {
    const auto& list = applications();
    EXPECT_EQ(valueIn(list, "ALSettingsDefaultValue"), PropertyList(false));
    auto& monitor = makeOn(Storage::memory, settings);
    change({{textIn(list, "ALSettingsKeyPrefix") + "com.apple.mobiletimer", true},
            {textIn(list, "ALSettingsKeyPrefix") + "com.apple.mobilemail", false}});
    EXPECT_THAT(monitor.applicationsToStart, ElementsAre("com.apple.mobiletimer"));
}

TEST_F(TheSettingsPage, labels_every_control_and_explains_every_group) {
    for (const auto& item : items)
        EXPECT_NE(textIn(item, textIn(item, "cell") == "PSGroupCell" ? "footerText" : "label"), "")
            << textIn(item, "key");
    EXPECT_EQ(textIn(in<Dictionary>(page, "entry"), "cell"), "PSLinkCell");
}

TEST(TheLoadersFilter, names_springboard_only) {
    EXPECT_EQ(dictionaryFrom(packaging / "phone/Noctara.plist"),
              (Dictionary{{"Filter", Dictionary{{"Bundles", Array{"com.apple.springboard"}}}}}));
}

/// The length in seconds of a file that consists of frames of MPEG 1, layer III; 0 for any other
/// file.
double lengthOfMp3(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(in), {});
    constexpr std::array kilobits{0,   32,  40,  48,  56,  64,  80,  96,
                                  112, 128, 160, 192, 224, 256, 320, 0};
    constexpr std::array rates{44100, 48000, 32000, 0};
    double length = 0;
    for (std::size_t at = 0; at < bytes.size();) {
        const auto byte = [&](std::size_t offset) -> unsigned {
            return at + offset < bytes.size() ? static_cast<unsigned char>(bytes[at + offset]) : 0U;
        };
        const int bitrate = kilobits[byte(2) >> 4U] * 1000;
        const int rate = rates[(byte(2) >> 2U) & 3U];
        if (byte(0) != 0xFF || (byte(1) & 0xFEU) != 0xFA || bitrate == 0 || rate == 0)
            return 0;
        at += static_cast<std::size_t>(144 * bitrate / rate) + ((byte(2) >> 1U) & 1U);
        if (at > bytes.size())
            return 0;
        length += 1152.0 / rate;
    }
    return length;
}

class TheSounds : public ANight {};

TEST_F(TheSounds, that_the_monitor_asks_for_are_there_and_short) {
    begin();
    playReadings(1);
    const std::string folder = "/Library/Application Support/Noctara";
    std::vector<std::filesystem::path> asked;
    for (const auto& line : calls.lines)
        if (line.operation == "AudioServicesCreateSystemSoundID")
            asked.emplace_back(line.argument(0));
    ASSERT_THAT(asked, SizeIs(2));
    for (const auto& sound : asked) {
        EXPECT_EQ(sound.parent_path(), folder);
        const double length = lengthOfMp3(packaging / "sounds" / sound.filename());
        EXPECT_GT(length, 0.5) << sound;
        EXPECT_LT(length, 3) << sound;
    }
    EXPECT_EQ(lengthOfMp3(packaging / "sounds/make-sounds"), 0);
}

/// Runs the script of the package that follows the unpacking, on a phone that has these tools.
Played installWith(const std::filesystem::path& tools, const std::string& action) {
    return run("PATH='" + tools.string() + "' /bin/sh '" + (packaging / "phone/postinst").string() +
               "' " + action + " 2>&1");
}

class AnInstallation : public testing::Test {
protected:
    void addSigningTool(const std::string& script) const {
        const auto tool = tools.path / "ldid";
        std::ofstream(tool) << "#!/bin/sh\n" << script;
        std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    }

    TemporaryFolder tools;
};

TEST_F(AnInstallation, signs_the_library_with_the_phones_own_tool) {
    addSigningTool("echo \"$@\"");
    const auto installed = installWith(tools.path, "configure");
    EXPECT_EQ(installed.output, "-S /Library/MobileSubstrate/DynamicLibraries/Noctara.dylib\n");
    EXPECT_EQ(installed.exitCode, 0);
}

TEST_F(AnInstallation, does_nothing_on_a_phone_without_the_tool) {
    const auto installed = installWith(tools.path, "configure");
    EXPECT_EQ(installed.output, "");
    EXPECT_EQ(installed.exitCode, 0);
}

TEST_F(AnInstallation, fails_if_the_library_cannot_be_signed) {
    addSigningTool("exit 1");
    EXPECT_NE(installWith(tools.path, "configure").exitCode, 0);
}

TEST_F(AnInstallation, that_is_undone_signs_nothing) {
    addSigningTool("echo \"$@\"");
    EXPECT_EQ(installWith(tools.path, "abort-remove").output, "");
}

} // namespace
} // namespace noctara
