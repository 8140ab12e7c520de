/// The start of the command beside that of a program that does nothing.
#include <benchmark/benchmark.h>

#include <array>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace noctara {

namespace {

void run(benchmark::State& state, std::string program, std::string argument) {
    std::array<char*, 3> arguments{program.data(), argument.data(), nullptr};
    posix_spawn_file_actions_t silent;
    posix_spawn_file_actions_init(&silent);
    posix_spawn_file_actions_addopen(&silent, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    for (auto _ : state) {
        pid_t process = 0;
        int status = -1;
        if (posix_spawn(&process, program.c_str(), &silent, nullptr, arguments.data(), environ) ==
            0)
            waitpid(process, &status, 0);
        if (status != 0)
            state.SkipWithError((program + " fails").c_str());
    }
    posix_spawn_file_actions_destroy(&silent);
}

BENCHMARK_CAPTURE(run, noctara, NOCTARA_COMMAND, "--version")
    ->Name("start/noctara")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(run, nothing, "/bin/true", "")
    ->Name("start/nothing")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace

} // namespace noctara
