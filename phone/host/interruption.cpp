#include "phone/host/interruption.h"

#include <csignal>

namespace noctara {

namespace {

volatile std::sig_atomic_t interrupted = 0;

} // namespace

void watchForInterruption() {
    struct sigaction note = {};
    note.sa_handler = [](int) { interrupted = 1; };
    note.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &note, nullptr);
}

void endIfInterrupted() {
    if (interrupted)
        throw Interrupted();
}

} // namespace noctara
