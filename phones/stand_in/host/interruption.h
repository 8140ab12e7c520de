/// SIGINT, SIGTERM and SIGHUP. A night that one of them interrupts prints its summary and removes
/// its temporary files.
#pragma once

namespace noctara {

/// Installs handlers that note the signals. A second signal has no effect, because some senders,
/// such as `timeout`, send two.
void watchForInterruption();

/// Whether one of the signals has arrived.
bool interrupted();

} // namespace noctara
