/// The library for the phone itself, as other tools read it.
#include "input/temporary_folder.h"
#include "tests/phones/springboard/ios/mach_o.h"
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace noctara {
namespace {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::UnorderedElementsAre;

const fs::path sources = NOCTARA_SOURCE_DIR;
const fs::path built = NOCTARA_DYLIB;

/// The imports, as the list beside this file has them.
Imports listedImports() {
    std::ifstream in(sources / "tests/phones/springboard/ios/imports.txt");
    Imports listed;
    std::string library;
    for (std::string line; std::getline(in, line);)
        if (line.starts_with('/'))
            library = line;
        else if (line.starts_with("  ? "))
            listed[line.substr(4)] = {library, true};
        else if (line.starts_with("  "))
            listed[line.substr(2)] = {library, false};
    return listed;
}

void replace(std::string& text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    ASSERT_NE(at, text.npos) << from;
    text.replace(at, from.length(), to);
}

class ThePhonesLibrary : public testing::Test {
protected:
    MachO library{built};
};

TEST_F(ThePhonesLibrary, is_a_dynamic_library_for_arm64_without_pointer_authentication) {
    const auto header = library.read("--file-headers");
    EXPECT_THAT(header, HasSubstr("FileType: DynamicLibrary"));
    EXPECT_THAT(header, HasSubstr("CpuSubType: CPU_SUBTYPE_ARM64_ALL"));
    EXPECT_THAT(header, HasSubstr("MH_TWOLEVEL"));
}

TEST_F(ThePhonesLibrary, runs_on_ios_9_3_and_later) {
    EXPECT_THAT(library.loadCommands("LC_VERSION_MIN_IPHONEOS"),
                ElementsAre(HasSubstr("version 9.3\n")));
    EXPECT_THAT(library.loadCommands("LC_BUILD_VERSION"), IsEmpty());
}

TEST_F(ThePhonesLibrary, is_in_a_package_that_asks_for_such_a_system) {
    std::ifstream in(sources / "packaging/phone/control");
    const std::string control{std::istreambuf_iterator<char>(in), {}};
    EXPECT_THAT(control, HasSubstr("Depends: firmware (>= 9.3), "));
}

TEST_F(ThePhonesLibrary, is_bound_in_the_form_that_the_oldest_systems_know) {
    EXPECT_THAT(library.loadCommands("LC_DYLD_INFO_ONLY"), SizeIs(1));
    EXPECT_THAT(library.loadCommands("LC_DYLD_CHAINED_FIXUPS"), IsEmpty());
}

TEST_F(ThePhonesLibrary, has_the_name_of_its_place_in_the_loaders_folder) {
    EXPECT_THAT(
        library.loadCommands("LC_ID_DYLIB"),
        ElementsAre(HasSubstr("name /Library/MobileSubstrate/DynamicLibraries/Noctara.dylib\n")));
}

TEST_F(ThePhonesLibrary, exports_seven_symbols) {
    EXPECT_THAT(library.exports(),
                UnorderedElementsAre("_NoctaraInitialize", "_NoctaraInstance", "_isDebug",
                                     "_MySleepCallBack", "_registerPowerListener",
                                     "_replaced_SBUIController_ACPowerChanged",
                                     "_callbackCTServerConnectionCreate"));
}

TEST_F(ThePhonesLibrary, imports_each_symbol_from_the_library_of_the_phone_that_has_it) {
    const auto listed = listedImports();
    const auto imports = library.imports();
    for (const auto& [symbol, import] : imports) {
        const auto expected = listed.find(symbol);
        ASSERT_NE(expected, listed.end()) << symbol << " is not in the list";
        EXPECT_EQ(import.library, expected->second.library) << symbol;
        EXPECT_EQ(import.weak, expected->second.weak) << symbol;
    }
    for (const auto& [symbol, import] : listed)
        EXPECT_TRUE(imports.contains(symbol)) << symbol << " is no longer imported";
}

TEST_F(ThePhonesLibrary, loads_without_the_libraries_of_which_it_imports_weakly_only) {
    std::set<std::string> strong, weak;
    for (const auto& [symbol, import] : library.imports())
        (import.weak ? weak : strong).insert(import.library);
    for (const auto& command : library.loadCommands("LC_LOAD_WEAK_DYLIB"))
        for (const auto& needed : strong)
            EXPECT_THAT(command, Not(HasSubstr("name " + needed + '\n')));
    EXPECT_THAT(library.loadCommands("LC_LOAD_WEAK_DYLIB"), SizeIs(weak.size()));
    EXPECT_THAT(library.loadCommands("LC_LOAD_DYLIB"), SizeIs(strong.size()));
}

TEST_F(ThePhonesLibrary, carries_a_signature_of_each_of_its_pages) {
    EXPECT_THAT(library.pagesThatDifferFromTheSignature(), IsEmpty());
}

TEST_F(ThePhonesLibrary, carries_a_signature_that_a_changed_byte_breaks) {
    const TemporaryFolder folder;
    auto bytes = library.bytes();
    bytes[3 * 4096 + 17] ^= 1;
    const auto changed = folder.path / "Noctara.dylib";
    std::ofstream(changed, std::ios::binary) << bytes;
    EXPECT_THAT(MachO(changed).pagesThatDifferFromTheSignature(), ElementsAre(3));
}

TEST_F(ThePhonesLibrary, is_stripped_of_the_names_of_its_own_functions) {
    const auto undefinedOrExported = library.imports().size() + library.exports().size();
    const auto symbols = [](const fs::path& file) {
        return std::stoul(run("llvm-nm-14 '" + file.string() + "' | wc -l").output);
    };
    EXPECT_EQ(symbols(built), undefinedOrExported);
    EXPECT_GT(symbols(built.parent_path() / "names/Noctara.dylib"), undefinedOrExported + 100);
}

TEST_F(ThePhonesLibrary, keeps_its_addresses_when_it_is_stripped) {
    const auto code = [](const fs::path& file) {
        return run("llvm-objdump-14 -s -j __text '" + file.string() + "' | tail -n +4").output;
    };
    ASSERT_THAT(code(built), HasSubstr(" 4000 "));
    EXPECT_EQ(code(built), code(built.parent_path() / "names/Noctara.dylib"));
}

TEST_F(ThePhonesLibrary, multiplies_and_adds_in_two_instructions) {
    const auto code = run("llvm-objdump-14 -d '" + built.string() + "'").output;
    EXPECT_THAT(code, ContainsRegex("\\sfmul\\s"));
    EXPECT_THAT(code, Not(ContainsRegex("\\sfn?m(add|sub|la|ls)\\s")));
}

TEST_F(ThePhonesLibrary, contains_no_path_of_the_machine_that_built_it) {
    for (const auto& path : {built.parent_path(), sources})
        EXPECT_EQ(library.bytes().find(path.string()), std::string::npos) << path;
    EXPECT_EQ(library.bytes().find("/usr/lib/llvm"), std::string::npos);
}

/// A folder in the layout of Apple's SDKs, with the content of ours: all headers in frameworks, and
/// neither the loader's library nor private frameworks. Foundation and UIKit export again what
/// others export, as in a real SDK, and CoreTelephony lacks a weak import.
void makeSdk(const fs::path& folder) {
    const auto shared = sources / "phones/springboard/sdk";
    const auto frameworks = folder / "System/Library/Frameworks";
    const auto all = fs::copy_options::recursive | fs::copy_options::overwrite_existing;
    fs::copy(sources / "phones/springboard/ios/sdk", folder, all);
    for (const auto& header : fs::directory_iterator(shared)) {
        const auto framework = frameworks / (header.path().filename().string() + ".framework");
        fs::copy(header,
                 fs::exists(framework) ? framework / "Headers"
                                       : folder / "usr/include" / header.path().filename(),
                 all);
    }
    fs::remove(folder / "usr/lib/libsubstrate.tbd");
    fs::remove_all(folder / "System/Library/PrivateFrameworks");

    const auto edit = [&](const std::string& framework, const std::string& from,
                          const std::string& to) {
        const auto stub = frameworks / (framework + ".framework") / (framework + ".tbd");
        std::ifstream in(stub);
        std::string text{std::istreambuf_iterator<char>(in), {}};
        replace(text, from, to);
        std::ofstream(stub) << text;
    };
    const std::string again = "reexported-libraries:\n  - targets: [ arm64-ios ]\n    libraries: ";
    edit("Foundation", "exports:",
         again +
             "[ /System/Library/Frameworks/CoreFoundation.framework/CoreFoundation ]\nexports:");
    edit("UIKit", "exports:",
         again + "[ /System/Library/Frameworks/Foundation.framework/Foundation ]\nexports:");
    edit("CoreTelephony", "      - _CTCellularDataPlanGetIsEnabled\n", "");
}

/// Copies what the library is built from.
void copySources(const fs::path& folder) {
    for (const char* part : {"platform", "radios", "monitor", "host", "phones/springboard"}) {
        fs::create_directories(folder / part);
        fs::copy(sources / part, folder / part, fs::copy_options::recursive);
    }
}

TEST_F(ThePhonesLibrary,
       has_the_same_bytes_from_another_folder_and_with_an_sdk_of_the_same_content) {
    const TemporaryFolder folder;
    copySources(folder.path / "a copy");
    makeSdk(folder.path / "sdk");
    const auto build = run("cd '" + folder.path.string() +
                           "' && cmake -S 'a copy/phones/springboard/ios' -B build -G Ninja "
                           "-DNOCTARA_IOS_SDK=$PWD/sdk 2>&1 && cmake --build build 2>&1");
    ASSERT_EQ(build.exitCode, 0) << build.output;
    EXPECT_TRUE(MachO(folder.path / "build/Noctara.dylib").bytes() == library.bytes());
}

TEST(AnSdkForThePhonesLibrary, is_refused_if_it_is_none) {
    const TemporaryFolder folder;
    const auto refused = run("cmake -S '" + (sources / "phones/springboard/ios").string() +
                             "' -B '" + (folder.path / "build").string() +
                             "' -G Ninja '-DNOCTARA_IOS_SDK=" + folder.path.string() + "' 2>&1");
    EXPECT_NE(refused.exitCode, 0);
    EXPECT_THAT(refused.output,
                ContainsRegex("is no SDK for iOS, because it has no\\s+usr/include/objc/objc.h"));
}

} // namespace
} // namespace noctara
