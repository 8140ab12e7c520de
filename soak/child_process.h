/// Work in a process of its own, so that a crash ends only that process.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>

namespace noctara {

/// Does the work in a copy of this process, which must have one thread. The copy ends with it: with
/// exit code 0, or with 1 if it throws. It is killed if this process ends before. Throws
/// std::runtime_error if there can be no more processes.
pid_t startChild(const std::function<void()>& work);

/// A clause that says how a process ended, from the status of waitpid. Absent for exit code 0.
std::optional<std::string> endOf(int status);

struct ChildAnswer {
    std::string text;
    std::optional<std::string> end; ///< As `endOf`.
};

/// Does the work in a child and waits for its result.
ChildAnswer answerOfChild(const std::function<std::string()>& work);

} // namespace noctara
