/// Ctrl-C, or a polite kill: a night that takes hours ends like any other then, with its summary
/// and with nothing left behind.
#pragma once

#include <stdexcept>

namespace noctara {

class Interrupted : public std::runtime_error {
public:
    Interrupted() : std::runtime_error("it was interrupted") {}
};

/// From here on an interruption is noted. More of them change nothing: some senders send two.
void watchForInterruption();

/// Throws Interrupted once there was one.
void endIfInterrupted();

} // namespace noctara
