#include "night/story_process.h"

#include "input/command_line.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace noctara {

namespace {

/// While it lives, the interrupting signals are ignored, also by processes that are started: a
/// story ends when its trace does.
class IgnoredInterruptions {
public:
    IgnoredInterruptions() {
        for (std::size_t i = 0; i < signals.size(); ++i)
            before[i] = std::signal(signals[i], SIG_IGN);
    }
    ~IgnoredInterruptions() {
        for (std::size_t i = 0; i < signals.size(); ++i)
            std::signal(signals[i], before[i]);
    }
    IgnoredInterruptions(const IgnoredInterruptions&) = delete;
    IgnoredInterruptions& operator=(const IgnoredInterruptions&) = delete;

private:
    static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP};
    std::array<void (*)(int), signals.size()> before{};
};

} // namespace

std::vector<std::string> storyArguments(const std::optional<std::filesystem::path>& scenario,
                                        const ScenarioOverrides& overrides, bool log) {
    std::vector<std::string> arguments{"replay", "-"};
    const auto add = [&](const char* name, const auto& value) {
        if (value) {
            arguments.emplace_back(name);
            arguments.push_back(*value);
        }
    };
    add("--scenario", scenario);
    add("--start", overrides.start);
    add("--end", overrides.end);
    if (log)
        arguments.emplace_back("--log");
    return arguments;
}

StoryProcess::StoryProcess(const std::filesystem::path& command, std::vector<std::string> arguments,
                           bool live) {
    arguments.insert(arguments.begin(), command.filename());
    std::vector<char*> words;
    for (auto& argument : arguments)
        words.push_back(argument.data());
    words.push_back(nullptr);

    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "a pipe");
    // Standard input is the pipe; a trace that nobody reads any more is no reason to end.
    std::signal(SIGPIPE, SIG_IGN);
    posix_spawn_file_actions_t redirection;
    posix_spawn_file_actions_init(&redirection);
    posix_spawn_file_actions_adddup2(&redirection, ends[0], STDIN_FILENO);
    const IgnoredInterruptions ignored;
    const int error =
        posix_spawn(&process, command.c_str(), &redirection, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&redirection);
    close(ends[0]);
    if (error != 0) {
        close(ends[1]);
        throw std::system_error(error, std::generic_category(), command.string());
    }
    lines.open("/dev/fd/" + std::to_string(ends[1]));
    close(ends[1]);
    if (live)
        lines << std::unitbuf;
    writer.emplace(lines, live);
}

StoryProcess::~StoryProcess() {
    if (process == 0)
        return;
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

int StoryProcess::finish(Date at, const std::optional<std::string>& endedEarly) {
    writer->end(at, endedEarly);
    lines.close();
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    process = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : foundWrong;
}

} // namespace noctara
