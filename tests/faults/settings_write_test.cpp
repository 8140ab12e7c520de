/// The settings file when the write of it ends at any system call, or when any of them fails.
#include "tests/faults/a_settings_write.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>
#include <sys/syscall.h>

namespace noctara {
namespace {

INSTANTIATE_TEST_SUITE_P(, ASettingsWrite, testing::ValuesIn(writers()),
                         [](const auto& writer) { return std::string(writer.param.name); });

bool calls(const TracedRun& run, long number) {
    return std::ranges::count(run.calls, number, &SystemCall::number) > 0;
}

TEST_P(ASettingsWrite, that_nothing_disturbs_writes_the_new_file) {
    prepare();
    const TracedRun run = write();
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_TRUE(isNew(content()));
    expectWhole("nothing");
    EXPECT_EQ(leftOver(), 0);
    EXPECT_TRUE(calls(run, SYS_write) || calls(run, SYS_writev));
    EXPECT_TRUE(calls(run, SYS_rename));
}

TEST_P(ASettingsWrite, that_is_killed_at_any_call_leaves_a_whole_file_that_can_be_written_again) {
    bool wasOld = false;
    bool wasNew = false;
    std::ptrdiff_t leaves = 0;
    std::size_t kills = 0;
    for (bool isKilled = true; isKilled; ++kills) {
        prepare();
        const TracedRun run = write(Fault{kills, 0});
        isKilled = run.exitCode == -1;
        const std::string disturbed = described(run.calls.back());
        expectWhole(disturbed);
        wasOld = wasOld || isOld(content());
        wasNew = wasNew || (isKilled && isNew(content()));
        // A file that was written aside is left. The next write does not care.
        leaves = std::max(leaves, leftOver());
        const TracedRun again = write();
        EXPECT_EQ(again.exitCode, 0) << disturbed << '\n' << again.output;
        EXPECT_TRUE(isNew(content())) << disturbed;
    }
    EXPECT_TRUE(wasOld && wasNew);
    EXPECT_EQ(leaves, 1);
    EXPECT_GT(kills, 10U);
}

/// Whether the last call writes the new file, or is needed for it to be whole.
bool endsInTheWrite(const std::vector<SystemCall>& calls) {
    const SystemCall& last = calls.back();
    const auto writesIt = [&](const SystemCall& call) {
        const bool isWrite = call.number == SYS_write || call.number == SYS_writev;
        const bool isAside = call.files.find("/.") != call.files.npos;
        return isWrite && isAside && last.files.find(call.files) != last.files.npos;
    };
    const std::set<long> needed{SYS_write, SYS_writev, SYS_fsync, SYS_close, SYS_rename};
    return needed.contains(last.number) && std::ranges::any_of(calls, writesIt);
}

TEST_P(ASettingsWrite, with_a_call_that_fails_leaves_a_whole_file_and_says_so) {
    prepare();
    const TracedRun whole = write();
    const auto fileCalls =
        static_cast<std::size_t>(std::ranges::count(whole.calls, true, &SystemCall::worksOnFiles));
    std::size_t failures = 0;
    for (std::size_t i = 0; i < fileCalls; ++i)
        for (const int error : {ENOSPC, EIO, EROFS, EACCES}) {
            prepare();
            const TracedRun run = write(Fault{i, error});
            std::size_t counted = 0;
            const auto failed = std::ranges::find_if(run.calls, [&](const SystemCall& call) {
                return call.worksOnFiles && counted++ == i;
            });
            ASSERT_NE(failed, run.calls.end());
            const std::string disturbed =
                described(*failed) + ": " + std::strerror(error) + '\n' + run.output;
            expectWhole(disturbed);
            EXPECT_NE(run.exitCode, -1) << disturbed;
            EXPECT_TRUE(run.exitCode != 0 || isNew(content())) << disturbed;
            EXPECT_TRUE(!endsInTheWrite({run.calls.begin(), failed + 1}) || run.exitCode != 0)
                << disturbed;
            EXPECT_EQ(leftOver(), 0) << disturbed;
            if (run.exitCode == 0)
                continue;
            ++failures;
            if (GetParam().reports) {
                EXPECT_EQ(std::ranges::count(run.output, '\n'), 1) << disturbed;
                EXPECT_TRUE(run.output.starts_with("noctara: ")) << disturbed;
            }
        }
    EXPECT_GT(failures, 10U);
}

} // namespace
} // namespace noctara
