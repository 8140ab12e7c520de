/// Runs programs for tests: their output and exit code.
#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace noctara {

struct Played {
    std::string output; ///< Standard output, and standard error where the command joins it.
    int exitCode = 0;   ///< -1 when a signal ended the program.
};

/// Runs a shell command.
inline Played run(const std::string& command) {
    Played result;
    FILE* const pipe = popen(command.c_str(), "r");
    std::array<char, 4096> chunk;
    while (const auto size = std::fread(chunk.data(), 1, chunk.size(), pipe))
        result.output.append(chunk.data(), size);
    const int status = pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

} // namespace noctara
