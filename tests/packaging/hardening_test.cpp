/// The command is built so that a fault in it ends it rather than lets a file take it over. A build
/// with a sanitizer has the sanitizer's checks in the place of these.
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

std::string headersOfTheCommand(const std::string& options) {
    return noctara::run("LC_ALL=C readelf --wide " + options + " '" NOCTARA_COMMAND "'").output;
}

class TheBuiltCommand : public testing::Test {
protected:
    const std::string dynamic = headersOfTheCommand("--dynamic");
    const std::string segments = headersOfTheCommand("--program-headers");
    const std::string symbols = headersOfTheCommand("--dyn-syms");
};

TEST_F(TheBuiltCommand, is_loaded_at_an_address_that_nobody_can_foresee) {
    EXPECT_THAT(headersOfTheCommand("--file-header"), HasSubstr("DYN (Position-Independent"));
}

TEST_F(TheBuiltCommand, has_its_table_of_functions_filled_at_the_start_and_read_only_then) {
    EXPECT_THAT(segments, HasSubstr("GNU_RELRO"));
    EXPECT_THAT(dynamic, HasSubstr("BIND_NOW"));
}

TEST_F(TheBuiltCommand, cannot_run_what_is_on_its_stack) {
    EXPECT_THAT(segments, ContainsRegex("GNU_STACK .* RW "));
}

TEST_F(TheBuiltCommand, has_no_memory_that_it_can_both_write_and_run) {
    EXPECT_THAT(segments, HasSubstr("LOAD"));
    EXPECT_THAT(segments, Not(HasSubstr(" RWE ")));
}

TEST_F(TheBuiltCommand, notices_a_stack_that_is_overwritten) {
    EXPECT_THAT(symbols, HasSubstr("__stack_chk_fail@"));
}

TEST_F(TheBuiltCommand, calls_the_functions_that_check_the_size_of_their_buffer) {
    EXPECT_THAT(symbols, ContainsRegex("__[a-z]+_chk@"));
}

} // namespace
