/// SIGINT, SIGTERM, SIGHUP and failed writes while a command has begun something that it has to
/// clean up.
#pragma once

#include <functional>
#include <ostream>

namespace noctara {

/// Thrown to end a command early. It is no std::exception, so that no handler of errors takes it
/// for one.
struct Interruption {};

/// While it lives, the signals do not end the process but are noted, and a write to a closed pipe
/// or beyond the limit of a file fails instead of ending the process. If a signal was noted, the
/// destructor of the outermost watch ends the process with it, as the signal would have done.
/// Declare it before the objects that clean up. A signal that the process ignored before stays
/// ignored. Use it on one thread only.
class InterruptionWatch {
public:
    InterruptionWatch();
    ~InterruptionWatch();

    InterruptionWatch(const InterruptionWatch&) = delete;
    InterruptionWatch& operator=(const InterruptionWatch&) = delete;
};

/// Does the work of a command under a watch and flushes its output. The result is that of `work`;
/// it does not matter after an interruption, because the process then ends.
int untilInterrupted(std::ostream& out, const std::function<int()>& work);

/// Whether a signal has been noted.
bool wasInterrupted();

/// Throws Interruption if a signal has been noted. Any thread may call it.
void stopIfInterrupted();

/// Notes SIGPIPE and throws Interruption if standard output is a pipe that nobody reads any more.
/// Call it when a write to standard output has failed.
void stopIfNobodyReads();

} // namespace noctara
