/// `noctara detect`: prints what the monitor's posture check makes of a recording.
#pragma once

#include "recording/recording.h"

#include <cstdint>
#include <ostream>

namespace noctara {

struct DetectOptions {
    /// As the setting of this name: the higher, the flatter the phone must lie.
    std::int32_t sensitivity = 5;
};

/// Prints what was assumed of the file, the verdict for each second, the share of readings that
/// pass at each Sensitivity, and which Sensitivity suits. There must be a sample.
void detect(const Recording& recording, const DetectOptions& options, std::ostream& out);

} // namespace noctara
