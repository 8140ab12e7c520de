/// Ctrl-C, or a polite kill: a night that takes hours ends like any other then, with its summary
/// and with nothing left behind.
#pragma once

namespace noctara {

/// From here on an interruption is noted. More of them change nothing: some senders send two.
void watchForInterruption();

/// Whether there was one.
bool interrupted();

} // namespace noctara
