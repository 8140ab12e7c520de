#include "tests/faults/system_calls.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace noctara {

namespace {

namespace fs = std::filesystem;

/// How the arguments of a call name files.
struct FileCall {
    long number;
    std::array<int, 2> paths; ///< The arguments that are paths; -1: none.
    int descriptor = -1;      ///< The argument that is a descriptor.
};

constexpr std::array fileCalls{
    FileCall{SYS_open, {0, -1}},       FileCall{SYS_openat, {1, -1}},
    FileCall{SYS_read, {-1, -1}, 0},   FileCall{SYS_pread64, {-1, -1}, 0},
    FileCall{SYS_lseek, {-1, -1}, 0},  FileCall{SYS_write, {-1, -1}, 0},
    FileCall{SYS_writev, {-1, -1}, 0}, FileCall{SYS_ftruncate, {-1, -1}, 0},
    FileCall{SYS_fsync, {-1, -1}, 0},  FileCall{SYS_fdatasync, {-1, -1}, 0},
    FileCall{SYS_close, {-1, -1}, 0},  FileCall{SYS_rename, {0, 1}},
    FileCall{SYS_renameat, {1, 3}},    FileCall{SYS_unlink, {0, -1}},
    FileCall{SYS_unlinkat, {1, -1}},   FileCall{SYS_mkdir, {0, -1}},
    FileCall{SYS_mkdirat, {1, -1}},    FileCall{SYS_chmod, {0, -1}},
    FileCall{SYS_fchmod, {-1, -1}, 0}, FileCall{SYS_fchmodat, {1, -1}},
    FileCall{SYS_chown, {0, -1}},      FileCall{SYS_fchown, {-1, -1}, 0},
    FileCall{SYS_stat, {0, -1}},       FileCall{SYS_lstat, {0, -1}},
    FileCall{SYS_fstat, {-1, -1}, 0},  FileCall{SYS_newfstatat, {1, -1}, 0},
    FileCall{SYS_statx, {1, -1}, 0},   FileCall{SYS_access, {0, -1}},
    FileCall{SYS_faccessat, {1, -1}},  FileCall{SYS_faccessat2, {1, -1}},
    FileCall{SYS_readlink, {0, -1}},   FileCall{SYS_readlinkat, {1, -1}},
    FileCall{SYS_getcwd, {-1, -1}},
};

const FileCall* findFileCall(long number) {
    const auto found = std::ranges::find(fileCalls, number, &FileCall::number);
    return found == fileCalls.end() ? nullptr : &*found;
}

/// The number of such calls depends on the state of the heap, not on the work.
bool asksForMemory(const SystemCall& call) {
    constexpr std::array memoryCalls{SYS_brk,    SYS_mmap,     SYS_munmap,
                                     SYS_mremap, SYS_mprotect, SYS_madvise};
    return std::ranges::count(memoryCalls, call.number) > 0;
}

/// A process that stops at each of its system calls.
class Tracee {
public:
    explicit Tracee(pid_t child) : process(child) {
        waitForStop();
        check(::ptrace(PTRACE_SETOPTIONS, process, nullptr,
                       PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL));
    }

    /// Lets it run to the beginning or the end of a system call. False if it has ended.
    bool goOn() {
        int signal = 0;
        do {
            check(::ptrace(PTRACE_SYSCALL, process, nullptr, signal));
            waitForStop();
            signal = isStopped() ? WSTOPSIG(status) : 0;
        } while (isStopped() && signal != (SIGTRAP | 0x80));
        return isStopped();
    }

    SystemCall call() const {
        const user_regs_struct registers = readRegisters();
        SystemCall result{static_cast<long>(registers.orig_rax), false, {}};
        const std::array<std::uint64_t, 4> arguments{registers.rdi, registers.rsi, registers.rdx,
                                                     registers.r10};
        if (const FileCall* const known = findFileCall(result.number)) {
            result.worksOnFiles = true;
            for (const int path : known->paths)
                if (path >= 0)
                    result.files += textAt(arguments.at(static_cast<std::size_t>(path))) + ' ';
            if (known->descriptor >= 0)
                result.files += nameOf(static_cast<int>(arguments[0]));
        }
        return result;
    }

    /// The call at whose beginning it is stopped fails.
    void fail(int error) {
        user_regs_struct registers = readRegisters();
        registers.orig_rax = static_cast<decltype(registers.orig_rax)>(-1);
        check(::ptrace(PTRACE_SETREGS, process, nullptr, &registers));
        if (!goOn())
            return;
        registers = readRegisters();
        registers.rax = static_cast<decltype(registers.rax)>(-error);
        check(::ptrace(PTRACE_SETREGS, process, nullptr, &registers));
    }

    void kill() {
        ::kill(process, SIGKILL);
        waitForStop();
    }

    int exitCode() const { return WIFEXITED(status) ? WEXITSTATUS(status) : -1; }

private:
    static void check(long result) {
        if (result < 0)
            throw std::runtime_error("ptrace failed");
    }

    bool isStopped() const { return WIFSTOPPED(status); }

    void waitForStop() {
        if (::waitpid(process, &status, 0) != process)
            throw std::runtime_error("waitpid failed");
    }

    user_regs_struct readRegisters() const {
        user_regs_struct registers{};
        check(::ptrace(PTRACE_GETREGS, process, nullptr, &registers));
        return registers;
    }

    std::string textAt(std::uint64_t address) const {
        std::array<char, 4096> text{};
        const iovec local{text.data(), text.size() - 1};
        const iovec remote{reinterpret_cast<void*>(address), text.size() - 1};
        // Reads less where the memory ends.
        ::process_vm_readv(process, &local, 1, &remote, 1, 0);
        return text.data();
    }

    std::string nameOf(int descriptor) const {
        std::error_code error;
        const auto name = fs::read_symlink(
            "/proc/" + std::to_string(process) + "/fd/" + std::to_string(descriptor), error);
        return error ? "" : name.string();
    }

    const pid_t process;
    int status = 0;
};

} // namespace

TracedRun traced(const std::function<int()>& work, const std::optional<Fault>& fault) {
    const int output = ::memfd_create("output", MFD_CLOEXEC);
    std::fflush(nullptr); // The child would write what is buffered again.
    const pid_t child = ::fork();
    if (output < 0 || child < 0)
        throw std::runtime_error("no process can be created");
    if (child == 0) {
        ::dup2(output, STDOUT_FILENO);
        ::dup2(output, STDERR_FILENO);
        ::alarm(20);
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        ::_exit(work());
    }
    Tracee tracee(child);
    TracedRun run;
    std::size_t counted = 0;
    while (tracee.goOn()) {
        const SystemCall call = tracee.call();
        const bool isRecorded = !asksForMemory(call);
        if (isRecorded)
            run.calls.push_back(call);
        const bool counts = fault && isRecorded && (fault->error == 0 || call.worksOnFiles);
        const bool isMeant = counts && counted++ == fault->call;
        if (isMeant && fault->error == 0) {
            tracee.kill();
            break;
        }
        if (isMeant)
            tracee.fail(fault->error);
        else if (!tracee.goOn())
            break;
    }
    run.exitCode = tracee.exitCode();
    std::ifstream text("/proc/self/fd/" + std::to_string(output));
    run.output.assign(std::istreambuf_iterator<char>(text), {});
    ::close(output);
    return run;
}

} // namespace noctara
