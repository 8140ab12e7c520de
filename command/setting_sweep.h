/// Plays a night with each of several values of one setting.
#pragma once

#include "command/night_input.h"

#include <ostream>
#include <string>

namespace noctara {

struct SweepOptions {
    NightInputOptions night;
    std::string values; ///< "KEY=A..B".
    bool json = false;
};

/// Prints one line for each value. Returns the exit code of the command. Throws BadInput.
int sweepSetting(const SweepOptions& options, std::ostream& out, std::ostream& complaints);

} // namespace noctara
