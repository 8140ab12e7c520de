/// `noctara detect`: what the monitor's posture check makes of a recording.
#pragma once

#include "recording/recording.h"

#include <cstdint>
#include <ostream>

namespace noctara {

struct DetectOptions {
    /// As the setting of this name: the higher, the flatter the phone must lie.
    std::int32_t sensitivity = 5;
};

/// The share of the recording's single samples, 0 to 1, that the monitor takes for a phone lying
/// still with the screen facing down, or up.
double shareLying(const Recording& recording, std::int32_t sensitivity, bool screenDown);

/// Writes what was assumed of the file, the monitor's verdict at each second, the share of readings
/// that pass at each sensitivity, and in words which sensitivity suits.
void detect(const Recording& recording, const DetectOptions& options, std::ostream& out);

} // namespace noctara
