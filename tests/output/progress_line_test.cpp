/// The progress bar of `noctara soak`. It is shown on a terminal and not written to a file.
#include "tests/a_terminal.h"

#include <gmock/gmock.h>

namespace noctara {

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

class AProgressBar : public ATerminal {};

// A run of about a second.
#ifdef NOCTARA_SANITIZED
const std::string nights = "20";
#else
const std::string nights = "200";
#endif

TEST_F(AProgressBar, shows_how_far_a_run_is_and_leaves_nothing_behind) {
    open(80, 100);
    enter("clear; noctara soak --jobs 1 --nights " + nights);
    EXPECT_THAT(waitFor(" left"), ContainsRegex("\\[#* *\\] [0-9]+ of " + nights +
                                                ", [0-9]+ a second, 00:[0-9]{2}:[0-9]{2} left"));
    EXPECT_THAT(waitFor("every invariant holds"), Not(HasSubstr(" of " + nights + ", ")));
}

TEST_F(AProgressBar, is_not_printed_into_a_file) {
    const Played played = run("'" NOCTARA_COMMAND "' soak --nights 20 2>&1 >/dev/null");
    EXPECT_EQ(played.exitCode, 0);
    EXPECT_EQ(played.output, "");
}

} // namespace

} // namespace noctara
