/// Runs a function in a process of its own and interferes with one of its system calls.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

/// What happens instead of one system call.
struct Fault {
    std::size_t call = 0; ///< The first call is 0.
    /// The call fails with this errno, and only calls that work on files count. 0: the process is
    /// killed.
    int error = 0;
};

struct SystemCall {
    long number = 0;

    /// Whether it names a file, by path or by descriptor, and so can fail because of the file.
    bool worksOnFiles = false;
    std::string files; ///< The names.
};

struct TracedRun {
    /// From the beginning of the function to the end, without those that only ask for memory.
    std::vector<SystemCall> calls;
    int exitCode = -1;  ///< -1 if a signal ended the process, also after 20 s.
    std::string output; ///< Standard output and standard error.
};

/// The exit code is what `work` returns. Only for processes with one thread.
TracedRun traced(const std::function<int()>& work, const std::optional<Fault>& fault = {});

} // namespace noctara
