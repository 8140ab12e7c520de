/// The signals that ask a program to end.
#pragma once

#include <csignal>
#include <optional>
#include <vector>

namespace noctara {

/// While it lives, the thread gets no signals. The threads that it starts meanwhile never get any.
class NoSignals {
public:
    NoSignals();
    ~NoSignals();
    NoSignals(const NoSignals&) = delete;
    NoSignals& operator=(const NoSignals&) = delete;

private:
    sigset_t before;
};

/// While it lives, these signals do not end the program: SIGINT, SIGTERM, SIGHUP and SIGQUIT. They
/// arrive during `waitForInput` only. One that was ignored stays ignored. Only one object can exist
/// at a time, and the other threads must get no signals.
class LeavingSignals {
public:
    LeavingSignals();
    ~LeavingSignals();
    LeavingSignals(const LeavingSignals&) = delete;
    LeavingSignals& operator=(const LeavingSignals&) = delete;

    /// The number of a signal that has arrived.
    std::optional<int> arrived() const;

    enum class Woken { byInput, otherwise, byHangUp };

    /// Waits until there is input, any signal arrives or the time is over. A negative time has no
    /// end.
    Woken waitForInput(int descriptor, double seconds);

private:
    struct Caught {
        int signal;
        struct sigaction before;
    };

    std::vector<Caught> caught;
    sigset_t maskBefore;
};

} // namespace noctara
