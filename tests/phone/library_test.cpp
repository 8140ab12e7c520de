/// What the library shows to the process that it is loaded into.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <dlfcn.h>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    std::array<char, 4096> chunk;
    while (const auto size = std::fread(chunk.data(), 1, chunk.size(), pipe.get()))
        output.append(chunk.data(), size);
    return output;
}

TEST(TheLibrary, exports_its_seven_entry_points_and_nothing_else) {
    if (outputOf("command -v nm").empty())
        GTEST_SKIP() << "there is no nm on this machine";
    std::istringstream lines(outputOf("nm -D --defined-only '" NOCTARA_LIBRARY "'"));
    std::vector<std::string> names;
    for (std::string address, type, name; lines >> address >> type >> name;)
        names.push_back(name);
    EXPECT_THAT(names, testing::UnorderedElementsAre(
                           "NoctaraInitialize", "NoctaraInstance", "isDebug", "MySleepCallBack",
                           "registerPowerListener", "replaced_SBUIController_ACPowerChanged",
                           "callbackCTServerConnectionCreate"));
}

TEST(TheLibrary, is_inert_in_a_process_without_a_phone) {
    void* const library = dlopen(NOCTARA_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto initialize = reinterpret_cast<void (*)()>(dlsym(library, "NoctaraInitialize"));
    const auto isDebug = reinterpret_cast<bool (*)()>(dlsym(library, "isDebug"));
    const auto instance = reinterpret_cast<void**>(dlsym(library, "NoctaraInstance"));
    ASSERT_TRUE(initialize && isDebug && instance);
    initialize();
    EXPECT_EQ(*instance, nullptr);
    EXPECT_FALSE(isDebug());
    dlclose(library);
}

} // namespace
