#include "live/leaving_signals.h"

#include <cmath>
#include <poll.h>

namespace noctara {

namespace {

volatile std::sig_atomic_t arrivedSignal = 0;

void noteArrival(int signal) {
    arrivedSignal = signal;
}

} // namespace

NoSignals::NoSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
}

NoSignals::~NoSignals() {
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

LeavingSignals::LeavingSignals() {
    arrivedSignal = 0;
    sigset_t blocked;
    sigemptyset(&blocked);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler == SIG_IGN)
            continue;
        sigaddset(&blocked, signal);
        caught.push_back({signal, before});
    }
    // They arrive only while the program waits, so that none is missed between a look and the wait.
    pthread_sigmask(SIG_BLOCK, &blocked, &maskBefore);
    struct sigaction action = {};
    action.sa_handler = noteArrival;
    for (const auto& each : caught)
        sigaction(each.signal, &action, nullptr);
}

LeavingSignals::~LeavingSignals() {
    pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr);
    for (const auto& each : caught)
        sigaction(each.signal, &each.before, nullptr);
}

std::optional<int> LeavingSignals::arrived() const {
    return arrivedSignal == 0 ? std::nullopt : std::optional<int>(arrivedSignal);
}

LeavingSignals::Woken LeavingSignals::waitForInput(int descriptor, double seconds) {
    pollfd input{descriptor, POLLIN, 0};
    timespec time{};
    time.tv_sec = static_cast<time_t>(seconds);
    time.tv_nsec = static_cast<long>((seconds - std::floor(seconds)) * 1e9);
    if (ppoll(&input, 1, seconds < 0 ? nullptr : &time, &maskBefore) <= 0)
        return Woken::otherwise;
    return input.revents & (POLLHUP | POLLERR | POLLNVAL) ? Woken::byHangUp : Woken::byInput;
}

} // namespace noctara
