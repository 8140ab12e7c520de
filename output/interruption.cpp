#include "output/interruption.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <poll.h>
#include <unistd.h>

namespace noctara {

namespace {

constexpr std::array watchedSignals{SIGINT, SIGTERM, SIGHUP};

std::atomic<int> noted = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler writes it");

int watches = 0;
std::array<struct sigaction, watchedSignals.size()> before{};
/// Signals of failed writes. The write then returns an error.
constexpr std::array ignoredSignals{SIGPIPE, SIGXFSZ};
std::array<struct sigaction, ignoredSignals.size()> ignoredBefore{};

void note(int signal) {
    noted = signal;
}

/// Without SA_RESTART, so that a read of a pipe or a terminal ends.
void install(int signal, void (*handler)(int), struct sigaction& previous) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    sigaction(signal, nullptr, &previous);
    if (previous.sa_handler != SIG_IGN)
        sigaction(signal, &action, nullptr);
}

} // namespace

InterruptionWatch::InterruptionWatch() {
    if (watches++ > 0)
        return;
    noted = 0;
    for (std::size_t i = 0; i < watchedSignals.size(); ++i)
        install(watchedSignals[i], note, before[i]);
    for (std::size_t i = 0; i < ignoredSignals.size(); ++i)
        install(ignoredSignals[i], SIG_IGN, ignoredBefore[i]);
}

InterruptionWatch::~InterruptionWatch() {
    if (--watches > 0)
        return;
    for (std::size_t i = 0; i < watchedSignals.size(); ++i)
        sigaction(watchedSignals[i], &before[i], nullptr);
    for (std::size_t i = 0; i < ignoredSignals.size(); ++i)
        sigaction(ignoredSignals[i], &ignoredBefore[i], nullptr);
    if (const int signal = noted.exchange(0))
        raise(signal);
}

int untilInterrupted(std::ostream& out, const std::function<int()>& work) {
    const InterruptionWatch watch;
    int result = 1;
    try {
        result = work();
        if (!out.flush())
            stopIfNobodyReads();
    } catch (const Interruption&) {
        out.flush();
    }
    return result;
}

bool wasInterrupted() {
    return noted != 0;
}

void stopIfInterrupted() {
    if (wasInterrupted())
        throw Interruption{};
}

void stopIfNobodyReads() {
    pollfd output{STDOUT_FILENO, 0, 0};
    if (watches == 0 || poll(&output, 1, 0) != 1 || (output.revents & POLLERR) == 0)
        return;
    noted = SIGPIPE;
    throw Interruption{};
}

} // namespace noctara
