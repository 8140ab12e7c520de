/// Shows a night on the terminal while it is played.
#pragma once

#include "live/live_night.h"

#include <optional>
#include <string>

namespace noctara {

struct WatchedNight {
    std::optional<std::string> wrong; ///< A clause that says why the night ended early, if it did.
    std::optional<int> signal;        ///< The signal that asked the program to end, if one did.
};

/// Launches the phone and plays the night at this many times real time, with the keys that the user
/// presses, until it ends or the user leaves. Then it has ended, and the terminal is as it was
/// before. Throws BadInput if the terminal cannot be used.
WatchedNight watchNight(LiveNight& night, double speed);

} // namespace noctara
