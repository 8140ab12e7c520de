/// What the emulated phone reports of libraries that break a rule of the platform.
#include "night/scenario_file.h"
#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/process.h"
#include "tests/call_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace noctara::emulated {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Three minutes, in which the settings change once.
const std::string shortNight = R"(
start = 2014-03-01T22:30:00
hours = 0.05
[phone]
posture = [0.6, 0.7, 0.6]
device_motion = true
[radios]
cellular_data = false
[[event]]
at = 22:31:00
settings = {}
)";

struct Night {
    std::set<std::string> findings;
    std::vector<std::string> log;
    bool survived = false;
};

Night playOn(const std::string& library, const std::set<std::string>& without = {}) {
    const std::filesystem::path file = NOCTARA_SMALL_LIBRARIES "/" + library + ".dylib";
    EmulatedPhone phone(parseScenario(shortNight, "night.toml"), makeMemoryFileStore(),
                        {file, 0x8000, without});
    CallLog calls;
    phone.observe(calls);
    Night night;
    night.survived = phone.playNight();
    night.findings = phone.emulatedProcess().findings;
    night.log = calls.logged();
    return night;
}

std::string refusalOf(const std::string& library, const std::set<std::string>& without = {}) {
    try {
        playOn(library, without);
    } catch (const BadLibrary& error) {
        return error.what();
    }
    return "it is loaded";
}

/// The one finding.
std::string found(const std::string& library) {
    const Night night = playOn(library);
    EXPECT_EQ(night.findings.size(), 1U);
    return night.findings.empty() ? "nothing" : *night.findings.begin();
}

TEST(ALibraryThatKeepsAllRules, plays_to_the_end) {
    const Night night = playOn("keeps_all_rules");
    EXPECT_TRUE(night.survived);
    EXPECT_THAT(night.findings, IsEmpty());
    EXPECT_THAT(night.log, ElementsAre("iPhone4,1", "waits", "waits", "waits", "3 changed"));
}

TEST(ALibraryThatKeepsAllRules, plays_on_where_the_system_lacks_what_is_a_weak_import) {
    const Night night =
        playOn("keeps_all_rules", {"BluetoothManager", "_CTCellularDataPlanGetIsEnabled",
                                   "_CTCellularDataPlanSetIsEnabled"});
    EXPECT_TRUE(night.survived);
    EXPECT_THAT(night.findings, IsEmpty());
    EXPECT_EQ(night.log.size(), 5U);
}

TEST(ALibrary, is_refused_where_the_system_lacks_a_class_that_it_needs) {
    EXPECT_EQ(refusalOf("needed_class"), "it is loaded");
    EXPECT_THAT(refusalOf("needed_class", {"BluetoothManager"}),
                HasSubstr("the symbol _OBJC_CLASS_$_BluetoothManager is not in "));
}

TEST(ALibrary, is_refused_where_the_system_lacks_a_library_that_it_needs) {
    const std::string motion = "/System/Library/Frameworks/CoreMotion.framework/CoreMotion";
    EXPECT_EQ(refusalOf("keeps_all_rules", {motion}), "the phone has no library " + motion);
}

TEST(ALibrary, is_refused_if_a_symbol_is_bound_to_the_wrong_library) {
    EXPECT_EQ(refusalOf("symbol_of_another_library"),
              "the symbol _uname is not in /usr/lib/libobjc.A.dylib");
}

TEST(ALibrary, may_take_a_symbol_from_a_library_that_exports_it_again) {
    const Night night = playOn("symbol_exported_again");
    EXPECT_THAT(night.findings, IsEmpty());
    EXPECT_THAT(night.log, ElementsAre("made"));
}

TEST(ASystem, cannot_lack_what_no_phone_has) {
    EXPECT_EQ(refusalOf("keeps_all_rules", {"NoSuchClass"}),
              "no phone has NoSuchClass, so it cannot be left out");
}

TEST(AStructure, that_is_smaller_than_the_phones_is_written_over) {
    EXPECT_THAT(found("short_names"),
                AllOf(HasSubstr("1280 bytes"), HasSubstr("beyond the frame of the function"),
                      HasSubstr("askForTheMachine()")));
}

TEST(AStructure, of_doubles_is_not_returned_as_one_of_floats) {
    EXPECT_THAT(playOn("structure_of_floats").log, ElementsAre("0.6 0.7 0.6", "0.0"));
}

TEST(AResult, is_defined_up_to_32_bits) {
    EXPECT_THAT(playOn("wide_results").log, ElementsAre("BOOL 0, int 0, long 1", "no result 1"));
}

TEST(AFlag, is_passed_as_0_or_1) {
    EXPECT_THAT(found("wide_flag"),
                AllOf(HasSubstr("a BOOL argument is 4294967040"), HasSubstr("passAllBits()")));
}

TEST(AFlag, is_passed_in_an_integer_register) {
    EXPECT_THAT(found("flag_in_another_register"),
                AllOf(HasSubstr("a BOOL argument is "), HasSubstr("passAReal()")));
}

TEST(AVariadicArgument, is_passed_on_the_stack) {
    EXPECT_THAT(found("variadic_in_a_register"),
                AllOf(HasSubstr("an argument after the last named one is not on the stack"),
                      HasSubstr("logInARegister()")));
}

TEST(ASelector, that_is_misspelt_is_not_recognized) {
    EXPECT_THAT(
        found("misspelt_selector"),
        AllOf(HasSubstr("unrecognized selector -[NSString lenght]"), HasSubstr("measure()")));
}

TEST(ASelector, is_no_mere_text) {
    EXPECT_THAT(found("text_as_selector"),
                AllOf(HasSubstr("is no selector"), HasSubstr("askWithText()")));
}

TEST(AnObject, is_not_released_twice) {
    EXPECT_THAT(found("released_twice"),
                AllOf(HasSubstr("of class NSThread"), HasSubstr("is used after its last release"),
                      HasSubstr("releaseTwice()")));
}

TEST(AnObject, is_not_released_while_a_pool_has_it) {
    EXPECT_THAT(found("released_in_a_pool"),
                AllOf(HasSubstr("of class NSDate"),
                      HasSubstr("is used after its last release by (anonymous namespace)::"
                                "releaseWhatThePoolHas()")));
}

TEST(AnObject, is_not_released_while_a_collection_has_it) {
    EXPECT_THAT(found("released_in_a_collection"),
                AllOf(HasSubstr("of class NSThread"),
                      HasSubstr("is used after its last release by (anonymous namespace)::"
                                "releaseWhatTheArrayHas(")));
}

TEST(AnObject, is_released_in_the_end) {
    EXPECT_THAT(playOn("forgotten_object").findings,
                ElementsAre(AllOf(HasSubstr("a block of the heap is never released"),
                                  HasSubstr("forget()")),
                            AllOf(HasSubstr("an object of class NSThread is never released"),
                                  HasSubstr("forget()"))));
}

TEST(AThread, has_an_autorelease_pool) {
    EXPECT_THAT(
        found("no_pool_on_the_thread"),
        AllOf(HasSubstr("the monitor thread has no autorelease pool"), HasSubstr("-[Waiter run]")));
}

TEST(AnAutoreleasedObject, needs_a_pool) {
    EXPECT_THAT(playOn("no_pool_for_an_object").findings,
                testing::Contains(AllOf(HasSubstr("is autoreleased without a pool"),
                                        HasSubstr("-[Waiter run]"))));
}

TEST(AnAutoreleasedObject, does_not_stay_in_the_pool_of_a_thread_that_waits) {
    EXPECT_THAT(found("pool_that_stays_open"),
                AllOf(HasSubstr("an object of class NSDate stays in the monitor thread's"),
                      HasSubstr("-[Waiter run]")));
}

TEST(APool, is_popped_before_the_one_around_it) {
    EXPECT_THAT(found("pool_popped_out_of_order"),
                AllOf(HasSubstr("not the innermost one"), HasSubstr("popTheOuterPool()")));
}

TEST(ABlockOfTheHeap, is_not_written_beyond_its_end) {
    EXPECT_THAT(found("beyond_a_block"),
                AllOf(HasSubstr("a write of 1 bytes"), HasSubstr("does not own"),
                      HasSubstr("writeBeyond()")));
}

TEST(ABlockOfTheHeap, is_not_read_after_it_is_freed) {
    EXPECT_THAT(found("freed_memory"), AllOf(HasSubstr("a read of 1 bytes"),
                                             HasSubstr("does not own"), HasSubstr("readFreed()")));
}

TEST(ABlockOfTheHeap, is_not_passed_after_it_is_freed) {
    EXPECT_THAT(found("freed_text"), AllOf(HasSubstr("are passed, which the library does not own"),
                                           HasSubstr("passFreed()")));
}

TEST(ABlockOfTheHeap, has_no_defined_content_at_first) {
    EXPECT_THAT(playOn("new_memory").log, ElementsAre("1"));
}

TEST(AClosure, does_not_outlive_the_frame_that_it_points_to) {
    EXPECT_THAT(
        found("block_with_an_old_frame"),
        AllOf(HasSubstr("0xdbdbdbdbdbdbdbdb is no object"), HasSubstr("listenFromTheFrame")));
}

TEST(AConstant, is_not_written) {
    EXPECT_THAT(found("read_only_memory"),
                AllOf(HasSubstr("which are read-only"), HasSubstr("changeAConstant()")));
}

TEST(AnException, is_reported_where_it_is_thrown) {
    EXPECT_THAT(found("thrown_exception"),
                AllOf(HasSubstr("the library throws an exception"), HasSubstr("throwIt()")));
}

} // namespace
} // namespace noctara::emulated
