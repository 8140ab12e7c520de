#include "phones/stand_in/host/usage.h"

#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

namespace noctara {

namespace {

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

/// A value from the file `status` of a thread. Empty if there is none.
std::string statusValue(const std::filesystem::path& thread, const std::string& name) {
    std::ifstream lines(thread / "status");
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(name + ":"))
            return line.substr(line.find_first_not_of(" \t", name.size() + 1));
    return {};
}

/// User and system time of a thread, in seconds.
double processorTime(const std::filesystem::path& thread) {
    std::ifstream file(thread / "schedstat");
    double nanoseconds = 0;
    file >> nanoseconds;
    return nanoseconds * 1e-9;
}

} // namespace

std::string usageOfThisProcess() {
    std::string text;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task"))
        text +=
            fmt::format("thread {}: {:.2f} s of processor time, {} voluntary context switches\n",
                        statusValue(thread, "Name"), processorTime(thread),
                        statusValue(thread, "voluntary_ctxt_switches"));
    rusage used = {};
    getrusage(RUSAGE_SELF, &used);
    text += fmt::format("process: {:.2f} s user, {:.2f} s system; peak memory {} KiB, heap in use "
                        "{} KiB\n",
                        seconds(used.ru_utime), seconds(used.ru_stime), used.ru_maxrss,
                        mallinfo2().uordblks / 1024);
    return text;
}

} // namespace noctara
