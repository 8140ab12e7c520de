/// The command is built with the hardening options. A build with sanitizers does not use them.
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

TEST_F(TheBuiltCommand, is_loaded_at_a_random_address) {
    EXPECT_THAT(headersOfTheCommand("--file-header"), HasSubstr("DYN (Position-Independent"));
}

TEST_F(TheBuiltCommand, resolves_its_functions_at_the_start_and_makes_their_table_read_only) {
    EXPECT_THAT(segments, HasSubstr("GNU_RELRO"));
    EXPECT_THAT(dynamic, HasSubstr("BIND_NOW"));
}

TEST_F(TheBuiltCommand, has_a_stack_that_is_not_executable) {
    EXPECT_THAT(segments, ContainsRegex("GNU_STACK .* RW "));
}

TEST_F(TheBuiltCommand, has_no_memory_that_is_both_writable_and_executable) {
    EXPECT_THAT(segments, HasSubstr("LOAD"));
    EXPECT_THAT(segments, Not(HasSubstr(" RWE ")));
}

TEST_F(TheBuiltCommand, checks_its_stack) {
    EXPECT_THAT(symbols, HasSubstr("__stack_chk_fail@"));
}

TEST_F(TheBuiltCommand, calls_the_functions_that_check_the_size_of_their_buffer) {
    EXPECT_THAT(symbols, ContainsRegex("__[a-z]+_chk@"));
}

} // namespace
