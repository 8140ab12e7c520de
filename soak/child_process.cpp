#include "soak/child_process.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace noctara {

namespace {

[[noreturn]] void refuse(const char* call) {
    throw std::runtime_error(fmt::format("{}: {}", call, std::strerror(errno)));
}

std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 4096> part;
    for (;;) {
        const auto size = read(descriptor, part.data(), part.size());
        if (size > 0)
            text.append(part.data(), static_cast<std::size_t>(size));
        else if (size == 0 || errno != EINTR)
            return text;
    }
}

void writeAll(int descriptor, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const auto size = write(descriptor, text.data() + done, text.size() - done);
        if (size > 0)
            done += static_cast<std::size_t>(size);
        else if (errno != EINTR)
            refuse("write");
    }
}

} // namespace

pid_t startChild(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child < 0)
        refuse("fork");
    if (child > 0)
        return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    try {
        work();
    } catch (...) {
        _exit(EXIT_FAILURE);
    }
    _exit(EXIT_SUCCESS);
}

std::optional<std::string> endOf(int status) {
    if (WIFSIGNALED(status))
        return fmt::format("the program ends with signal {} ({})", WTERMSIG(status),
                           strsignal(WTERMSIG(status)));
    if (WEXITSTATUS(status) != 0)
        return fmt::format("the program ends with exit code {}", WEXITSTATUS(status));
    return std::nullopt;
}

ChildAnswer answerOfChild(const std::function<std::string()>& work) {
    std::array<int, 2> ends;
    if (pipe(ends.data()) != 0)
        refuse("pipe");
    const pid_t child = startChild([&] { writeAll(ends[1], work()); });
    close(ends[1]);
    ChildAnswer answer{readAll(ends[0]), {}};
    close(ends[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            refuse("waitpid");
    answer.end = endOf(status);
    return answer;
}

} // namespace noctara
