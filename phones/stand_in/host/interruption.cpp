#include "phones/stand_in/host/interruption.h"

#include <csignal>
#include <initializer_list>

namespace noctara {

namespace {

volatile std::sig_atomic_t noted = 0;

} // namespace

void watchForInterruption() {
    struct sigaction note = {};
    note.sa_handler = [](int) { noted = 1; };
    note.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &note, nullptr);
}

bool interrupted() {
    return noted != 0;
}

} // namespace noctara
