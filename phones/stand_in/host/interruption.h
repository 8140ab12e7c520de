/// SIGINT, SIGTERM and SIGHUP. A night that they interrupt ends with its summary and without its
/// temporary files.
#pragma once

namespace noctara {

/// Installs handlers that note the signals. A second signal has no further effect: `timeout`, for
/// one, sends two.
void watchForInterruption();

/// Whether one of the signals has arrived.
bool interrupted();

} // namespace noctara
