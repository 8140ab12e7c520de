#include "phone/host/interruption.h"

#include <csignal>

namespace noctara {

namespace {

volatile std::sig_atomic_t interrupted = 0;

} // namespace

void watchForInterruption() {
    struct sigaction once = {};
    once.sa_handler = [](int) { interrupted = 1; };
    once.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &once, nullptr);
}

void endIfInterrupted() {
    if (interrupted)
        throw Interrupted();
}

} // namespace noctara
