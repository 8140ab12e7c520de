/// Property-list files on a disk, also those of other programs.
#include "phones/model/property_list_file.h"

#include "input/temporary_folder.h"
#include "tests/phones/model/property_list_samples.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <bit>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {
namespace {

namespace fs = std::filesystem;

class PropertyListFile : public testing::Test {
protected:
    void put(std::string_view content) const { std::ofstream(file, std::ios::binary) << content; }

    std::string content() const {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder))
            all.push_back(entry.path().filename().string());
        return all;
    }

    /// Runs a shell command within the folder; true when it ended with 0.
    bool run(const std::string& command) const {
        return std::system(("cd '" + folder.string() + "' && " + command).c_str()) == 0;
    }

    static bool hasProgram(const std::string& name) {
        return std::system((name + " >/dev/null 2>&1").c_str()) == 0;
    }

    const TemporaryFolder temporary;
    const fs::path folder = temporary.path;
    fs::path file = folder / "settings.plist";
};

TEST_F(PropertyListFile, that_was_written_reads_back_equal) {
    ASSERT_TRUE(writePropertyListFile(file, everyType));
    const ParsedPropertyList parsed = readPropertyListFile(file);
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(*parsed.value, PropertyList(everyType));
    EXPECT_EQ(content(), propertyListXml(everyType));
    EXPECT_EQ(names(), std::vector<std::string>{"settings.plist"});
}

TEST_F(PropertyListFile, that_is_missing_is_no_such_file) {
    EXPECT_EQ(readPropertyListFile(file).error, "no such file");
    EXPECT_EQ(readPropertyListFile(folder / "none" / "x").error, "no such file");
    EXPECT_FALSE(readPropertyListFile(file).value);
}

TEST_F(PropertyListFile, that_is_empty_is_refused) {
    put("");
    EXPECT_EQ(readPropertyListFile(file).error, "empty");
}

TEST_F(PropertyListFile, that_is_a_folder_is_refused) {
    EXPECT_EQ(readPropertyListFile(folder).error, "a folder, not a file");
}

TEST_F(PropertyListFile, that_is_a_named_pipe_is_refused_without_waiting) {
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(readPropertyListFile(file).error, "not a regular file");
}

TEST_F(PropertyListFile, beneath_a_file_is_refused_with_the_system_error) {
    put("x");
    EXPECT_EQ(readPropertyListFile(file / "below").error, "Not a directory");
}

TEST_F(PropertyListFile, of_more_than_1_mib_is_refused) {
    put("<plist><string>" + std::string(1 << 20, 'x') + "</string></plist>");
    EXPECT_EQ(readPropertyListFile(file).error, "larger than 1 MiB");
}

TEST_F(PropertyListFile, keeps_its_mode_when_it_is_written_again) {
    put("old");
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    ASSERT_TRUE(writePropertyListFile(file, {{"a", 1}}));
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(PropertyListFile, when_new_has_the_mode_of_any_new_file) {
    const mode_t before = ::umask(027);
    const bool written = writePropertyListFile(file, {{"a", 1}});
    ::umask(before);
    ASSERT_TRUE(written);
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(PropertyListFile, is_replaced_not_overwritten) {
    put("old");
    fs::create_hard_link(file, folder / "other-name");
    ASSERT_TRUE(writePropertyListFile(file, {{"a", 1}}));
    std::ifstream stream(folder / "other-name");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), "old");
}

TEST_F(PropertyListFile, of_a_bare_name_is_written_in_the_current_folder) {
    const fs::path before = fs::current_path();
    fs::current_path(folder);
    const bool written = writePropertyListFile("settings.plist", {{"a", 1}});
    fs::current_path(before);
    EXPECT_TRUE(written);
    EXPECT_TRUE(readPropertyListFile(file).value);
}

TEST_F(PropertyListFile, in_a_missing_folder_is_not_written) {
    EXPECT_FALSE(writePropertyListFile(folder / "none" / "settings.plist", {{"a", 1}}));
    EXPECT_FALSE(fs::exists(folder / "none"));
    EXPECT_TRUE(names().empty());
}

TEST_F(PropertyListFile, in_place_of_a_folder_is_not_written) {
    fs::create_directory(file);
    EXPECT_FALSE(writePropertyListFile(file, {{"a", 1}}));
    EXPECT_TRUE(fs::is_directory(file));
    EXPECT_EQ(names(), std::vector<std::string>{"settings.plist"});
}

TEST_F(PropertyListFile, is_as_it_was_after_a_write_that_failed_midway) {
    ASSERT_TRUE(writePropertyListFile(file, {{"a", "old"}}));
    const std::string old = content();

    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = before;
    small.rlim_cur = 4096;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool written = writePropertyListFile(file, {{"a", std::string(20000, 'x')}});
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);

    EXPECT_FALSE(written);
    EXPECT_EQ(content(), old);
    EXPECT_EQ(names(), std::vector<std::string>{"settings.plist"});
}

TEST_F(PropertyListFile, that_could_not_be_read_back_is_not_written) {
    ASSERT_TRUE(writePropertyListFile(file, {{"a", "old"}}));
    const std::string old = content();
    PropertyList deep = true;
    for (int i = 0; i < 64; ++i)
        deep = Array{deep};
    EXPECT_FALSE(writePropertyListFile(file, {{"a", std::string(1 << 20, 'x')}}));
    EXPECT_FALSE(writePropertyListFile(file, {{"a", deep}}));
    EXPECT_FALSE(writePropertyListFile(file, {{"a", "\xFF"}}));
    EXPECT_EQ(content(), old);
    EXPECT_EQ(names(), std::vector<std::string>{"settings.plist"});
}

// Files of other programs.

const Dictionary plainTypes{
    {"zeta", true},
    {"alpha", -42},
    {"real", 0.1},
    {"text", "<&>\"' \xF0\x9F\x98\x80 \xC3\xA9"},
    {"date", Date{1330837567}},
    {"data", Data{0, 1, 2, 255}},
    {"array", Array{1, "two", Array{}, Dictionary{{"three", 3}}}},
    {"large", std::int64_t{1} << 40},
};

TEST_F(PropertyListFile, made_binary_by_plistutil_is_read) {
    if (!hasProgram("plistutil --version"))
        GTEST_SKIP() << "plistutil is not installed";
    ASSERT_TRUE(writePropertyListFile(file, plainTypes));
    ASSERT_TRUE(run("plistutil -i settings.plist -f bin -o binary.plist"));
    file = folder / "binary.plist";
    ASSERT_EQ(content().substr(0, 8), "bplist00");
    const ParsedPropertyList parsed = readPropertyListFile(file);
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(*parsed.value, PropertyList(plainTypes));
}

class PythonPropertyListFile : public PropertyListFile {
protected:
    void SetUp() override {
        PropertyListFile::SetUp();
        if (!hasProgram("python3 -c 'import plistlib'"))
            GTEST_SKIP() << "python3 with plistlib is not installed";
    }

    void runPython(const std::string& script) const {
        std::ofstream(folder / "script.py") << script;
        ASSERT_TRUE(run("python3 script.py"));
    }

    /// Saves a setting as the monitor does.
    void saveOneKey() const {
        const ParsedPropertyList parsed = readPropertyListFile(file);
        ASSERT_TRUE(parsed.value) << parsed.error;
        Dictionary dictionary = *parsed.value->as<Dictionary>();
        dictionary.set("saved", 7);
        ASSERT_TRUE(writePropertyListFile(file, dictionary));
    }

    void dump(const std::string& format) const {
        runPython("import datetime, plistlib\n"
                  "value = {'zeta': True, 'alpha': -42, 'real': 0.1,\n"
                  "    'text': '<&>\"\\' \\U0001F600 \\u00e9',\n"
                  "    'date': datetime.datetime(2012, 3, 4, 5, 6, 7),\n"
                  "    'data': bytes([0, 1, 2, 255]),\n"
                  "    'array': [1, 'two', [], {'three': 3}], 'large': 1 << 40}\n"
                  "with open('settings.plist', 'wb') as file:\n"
                  "    plistlib.dump(value, file, sort_keys=False, fmt=plistlib." +
                  format + ")\n");
    }
};

TEST_F(PythonPropertyListFile, made_as_xml_is_read) {
    dump("FMT_XML");
    const ParsedPropertyList parsed = readPropertyListFile(file);
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(*parsed.value, PropertyList(plainTypes));
}

TEST_F(PythonPropertyListFile, made_binary_is_read) {
    dump("FMT_BINARY");
    ASSERT_EQ(content().substr(0, 8), "bplist00");
    const ParsedPropertyList parsed = readPropertyListFile(file);
    ASSERT_TRUE(parsed.value) << parsed.error;
    EXPECT_EQ(*parsed.value, PropertyList(plainTypes));
}

TEST_F(PythonPropertyListFile, made_binary_with_thousands_of_objects_is_read) {
    runPython("import plistlib\n"
              "with open('settings.plist', 'wb') as file:\n"
              "    plistlib.dump([{'n': n, 's': str(n)} for n in range(5000)], file,\n"
              "        fmt=plistlib.FMT_BINARY)\n");
    const ParsedPropertyList parsed = readPropertyListFile(file);
    ASSERT_TRUE(parsed.value) << parsed.error;
    const auto* array = parsed.value->as<Array>();
    ASSERT_NE(array, nullptr);
    ASSERT_EQ(array->size(), 5000u);
    EXPECT_EQ((*array)[4321], PropertyList(Dictionary{{"n", 4321}, {"s", "4321"}}));
}

TEST_F(PythonPropertyListFile, keeps_all_other_values_when_one_key_is_saved) {
    for (const char* format : {"FMT_XML", "FMT_BINARY"}) {
        std::ofstream(folder / "values.py")
            << "import datetime, plistlib\n"
               "name = 'settings.plist'\n"
               "format = plistlib."
            << format
            << "\n"
               "value = {'greatest': 2**64 - 1, 'above': 2**63, 'below': 2**63 - 1,\n"
               "    'least': -2**63, 'minus': -1, 'real': 0.1, 'minus zero': -0.0,\n"
               "    'inside': [-0.0, {'a': -0.0, 'b': 2**64 - 1, 'c': 0}],\n"
               "    'text': '<real>0.0</real>', 'truth': True, 'one': 1, 'uid': {'CF$UID': 300},\n"
               "    'date': datetime.datetime(2012, 3, 4, 5, 6, 7), 'data': bytes([0, 255])}\n";
        runPython("from values import *\n"
                  "if format == plistlib.FMT_BINARY: value['uid'] = plistlib.UID(300)\n"
                  "with open(name, 'wb') as file:\n"
                  "    plistlib.dump(value, file, sort_keys=False, fmt=format)\n");
        saveOneKey();
        runPython("from values import *\n"
                  "value['saved'] = 7\n"
                  "with open(name, 'rb') as file: found = plistlib.load(file)\n"
                  "assert repr(found) == repr(value), found\n");
    }
}

TEST_F(PythonPropertyListFile, keeps_a_real_of_single_precision_when_one_key_is_saved) {
    put(binaryOf({byte(0xD1) + byte(1) + byte(2), byte(0x51) + "f",
                  byte(0x22) + bigEndian(std::bit_cast<std::uint32_t>(0.1F), 4)}));
    saveOneKey();
    runPython("import plistlib, struct\n"
              "with open('settings.plist', 'rb') as file: value = plistlib.load(file)\n"
              "assert value == {'f': struct.unpack('f', struct.pack('f', 0.1))[0],\n"
              "    'saved': 7}, value\n");
}

TEST_F(PythonPropertyListFile, reads_what_is_written_here) {
    ASSERT_TRUE(writePropertyListFile(file, plainTypes));
    runPython("import datetime, plistlib\n"
              "with open('settings.plist', 'rb') as file:\n"
              "    value = plistlib.load(file)\n"
              "assert list(value) == ['zeta', 'alpha', 'real', 'text', 'date', 'data', 'array',\n"
              "    'large']\n"
              "assert value == {'zeta': True, 'alpha': -42, 'real': 0.1,\n"
              "    'text': '<&>\"\\' \\U0001F600 \\u00e9',\n"
              "    'date': datetime.datetime(2012, 3, 4, 5, 6, 7),\n"
              "    'data': bytes([0, 1, 2, 255]),\n"
              "    'array': [1, 'two', [], {'three': 3}], 'large': 1 << 40}, value\n");
}

} // namespace
} // namespace noctara
