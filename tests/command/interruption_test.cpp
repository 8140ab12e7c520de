/// A command that is interrupted leaves nothing half-written.
#include "input/temporary_folder.h"
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

using testing::AnyOf;
using testing::Eq;
using testing::HasSubstr;

/// A night of a week, which takes about a second, with a trace and with real files.
class ALongNight : public testing::Test {
protected:
    ALongNight() { std::ofstream(trace) << "an older trace\n"; }

    /// Starts the command; its output goes to a file.
    void start() {
        process = fork();
        if (process != 0)
            return;
        const int output = open(story.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(output, STDOUT_FILENO);
        for (const int number : {SIGINT, SIGTERM, SIGHUP})
            std::signal(number, SIG_DFL);
        execl(NOCTARA_COMMAND, "noctara", "night", "--end", "2014-03-08T22:00", "--trace",
              trace.c_str(), "--root", root.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }

    /// The signal that ended it, or 0 if it ended by itself.
    int end() const {
        int status = 0;
        waitpid(process, &status, 0);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

    std::string textOf(const fs::path& file) const {
        std::stringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }

    /// Files whose names begin with a dot, in the folder and below the root.
    std::set<std::string> temporaryFiles() const {
        std::set<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(folder.path))
            if (entry.path().filename().string().starts_with('.'))
                found.insert(entry.path().filename());
        return found;
    }

    const noctara::TemporaryFolder folder;
    const fs::path trace = folder.path / "night.jsonl";
    const fs::path root = folder.path / "root";
    const fs::path story = folder.path / "story";
    pid_t process = 0;
};

TEST_F(ALongNight, that_a_signal_ends_at_any_instant_leaves_the_older_trace_and_no_temporary_file) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> microseconds(0, 60'000);
    int interrupted = 0;
    for (int i = 0; i < 30; ++i) {
        const int signal = std::array{SIGINT, SIGTERM, SIGHUP}[static_cast<std::size_t>(i % 3)];
        start();
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        kill(process, signal);
        EXPECT_EQ(end(), signal);
        EXPECT_EQ(textOf(trace), "an older trace\n");
        EXPECT_EQ(temporaryFiles(), std::set<std::string>());
        interrupted += textOf(story).find("the night was interrupted at") != std::string::npos;
    }
    EXPECT_GT(interrupted, 5) << "summaries up to the interruption";
}

TEST_F(ALongNight, that_a_signal_ends_has_a_summary_up_to_there) {
    start();
    while (textOf(root / "private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist") == "")
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    kill(process, SIGTERM);
    EXPECT_EQ(end(), SIGTERM);
    EXPECT_THAT(textOf(story), HasSubstr("\nFigures of "));
    EXPECT_THAT(textOf(story), HasSubstr("\nSomething is wrong: the night was interrupted at "));
}

TEST_F(ALongNight, whose_reader_goes_away_ends_quietly_and_leaves_the_older_trace) {
    const fs::path scenario = folder.path / "talkative.toml";
    std::ofstream(scenario) << "[settings]\nEnabled = true\nScanInterval = 1\nDebug = true\n";
    const auto outcome =
        noctara::run("exec 3>&1; { '" NOCTARA_COMMAND "' night '" + scenario.string() +
                     "' --log --end 2014-03-08T22:00 --trace '" + trace.string() +
                     "' 2>&3; echo \"exit $?\" >&3; } | head -1");
    EXPECT_THAT(outcome.output, AnyOf(Eq("Saturday, 1 March 2014\nexit 141\n"),
                                      Eq("exit 141\nSaturday, 1 March 2014\n")));
    EXPECT_EQ(textOf(trace), "an older trace\n");
    EXPECT_EQ(temporaryFiles(), std::set<std::string>());
}

TEST_F(ALongNight, whose_trace_exceeds_the_limit_of_a_file_leaves_the_older_trace) {
    const auto outcome =
        noctara::run("ulimit -f 100; '" NOCTARA_COMMAND "' night --trace '" + trace.string() + "'");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.output, HasSubstr("could not be written whole"));
    EXPECT_EQ(textOf(trace), "an older trace\n");
    EXPECT_EQ(temporaryFiles(), std::set<std::string>());
}

TEST(AReplay, of_standard_input_that_a_signal_ends_has_a_summary_up_to_there) {
    const auto outcome = noctara::run("{ '" NOCTARA_COMMAND
                                      "' night --trace - 2>/dev/null | head -500; sleep 2; } | "
                                      "timeout -s TERM 0.7 '" NOCTARA_COMMAND "' replay -");
    EXPECT_THAT(outcome.output, HasSubstr("the night was interrupted at 22:3"));
}

} // namespace
