/// Reading and changing a settings file on a disk.
#include "settings/settings_file.h"

#include "input/bad_input.h"
#include "input/temporary_folder.h"
#include "phones/model/property_list_file.h"
#include "settings/setting_keys.h"
#include "settings/settings_check.h"
#include "tests/full_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace noctara {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;

class ASettingsFileOnADisk : public testing::Test {
protected:
    void holds(const std::string& bytes) const { std::ofstream(file, std::ios::binary) << bytes; }

    void holds(const Dictionary& settings) const { holds(propertyListXml(settings)); }

    std::string bytes() const {
        std::ostringstream all;
        all << std::ifstream(file, std::ios::binary).rdbuf();
        return all.str();
    }

    /// Why the file cannot be read, without its name. It is then not changed, either.
    std::string refusal() const {
        const std::string before = fs::is_regular_file(file) ? bytes() : "";
        std::string why = "is not refused";
        try {
            readSettingsFile(file);
        } catch (const BadInput& error) {
            why = std::string(error.what()).substr(file.string().size());
        }
        EXPECT_THROW(changeSettingsFile(file, "TimeLimit", true), BadInput);
        EXPECT_EQ(fs::is_regular_file(file) ? bytes() : "", before);
        return why;
    }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder.path))
            all.push_back(entry.path().filename());
        return all;
    }

    const TemporaryFolder folder;
    const fs::path file = folder.path / "settings.plist";
};

TEST_F(ASettingsFileOnADisk, is_changed_in_one_value) {
    holds(fullSettings());
    changeSettingsFile(file, "TimeLimit", true);
    EXPECT_EQ(readSettingsFile(file), fullSettings({{"TimeLimit", true}}));
    changeSettingsFile(file, "launch-app-com.example.radio", true);
    changeSettingsFile(file, "TimeLimit", std::nullopt);
    Dictionary expected = fullSettings({{"launch-app-com.example.radio", true}});
    expected.remove("TimeLimit");
    EXPECT_EQ(readSettingsFile(file), expected);
}

TEST_F(ASettingsFileOnADisk, keeps_its_permissions_and_owner) {
    holds(fullSettings());
    fs::permissions(file, fs::perms(0640));
    const bool isRoot = geteuid() == 0;
    ASSERT_TRUE(!isRoot || chown(file.c_str(), 1234, 2345) == 0);
    changeSettingsFile(file, "TimeLimit", true);
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    EXPECT_EQ(status.st_uid, isRoot ? 1234 : geteuid());
    EXPECT_EQ(status.st_gid, isRoot ? 2345 : getegid());
}

TEST_F(ASettingsFileOnADisk, is_changed_through_a_link_which_stays_one) {
    holds(fullSettings());
    const fs::path link = folder.path / "link.plist";
    fs::create_symlink(file, link);
    changeSettingsFile(link, "TimeLimit", true);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_EQ(readSettingsFile(file), fullSettings({{"TimeLimit", true}}));
}

TEST_F(ASettingsFileOnADisk, leaves_no_other_file) {
    holds(fullSettings());
    changeSettingsFile(file, "TimeLimit", true);
    EXPECT_THAT(names(), testing::ElementsAre("settings.plist"));
}

TEST_F(ASettingsFileOnADisk, is_refused_if_it_is_no_dictionary) {
    holds("");
    EXPECT_EQ(refusal(), ": empty; give an XML or binary property list");
    holds("junk");
    EXPECT_EQ(refusal(), ": not a property list; give an XML or binary property list");
    holds("<plist><array/></plist>");
    EXPECT_EQ(refusal(), ": the top level is not a dictionary; a settings file maps keys such as "
                         "Enabled to values");
    holds(std::string((1 << 20) + 1, ' '));
    EXPECT_EQ(refusal(), ": larger than 1 MiB; give an XML or binary property list");
    for (const char* old : {"{ Enabled = 1; }", "\n( 1, 2 )", "{\"Enabled\": true}"}) {
        holds(old);
        EXPECT_THAT(refusal(), HasSubstr("plutil -convert xml1"));
    }
}

TEST_F(ASettingsFileOnADisk, is_refused_if_it_is_no_file) {
    EXPECT_EQ(refusal(), ": no such file; give an XML or binary property list");
    fs::create_symlink("nowhere", file);
    EXPECT_EQ(refusal(), ": no such file; give an XML or binary property list");
    EXPECT_THROW(makeSettingsFile(file), BadInput);
    EXPECT_TRUE(fs::is_symlink(file));
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_EQ(refusal(), ": a folder, not a file; give an XML or binary property list");
    fs::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_THROW(changeSettingsFile(file, "Sensitivity", PropertyList(3)), BadInput);
}

TEST_F(ASettingsFileOnADisk, is_made_with_the_defaults) {
    makeSettingsFile(file);
    const Dictionary made = readSettingsFile(file);
    EXPECT_THAT(checkSettings(made, nullptr), IsEmpty());
    EXPECT_EQ(made.size(), settingKeys().size());
    for (const auto& [key, value] : made)
        EXPECT_EQ(value.intValue(), findSettingKey(key)->standard) << key;
}

TEST_F(ASettingsFileOnADisk, is_not_made_where_one_is) {
    holds(Dictionary{});
    EXPECT_THROW(makeSettingsFile(file), BadInput);
    EXPECT_EQ(readSettingsFile(file), Dictionary{});
}

} // namespace

} // namespace noctara
