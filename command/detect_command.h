/// `noctara detect`: prints the results of the monitor's posture check on a recording.
#pragma once

#include "recording/recording.h"

#include <cstdint>
#include <ostream>

namespace noctara {

struct DetectOptions {
    /// The setting of this name. The higher it is, the flatter the phone must lie.
    std::int32_t sensitivity = 5;
};

/// Prints the assumptions about the file, the verdict for each second, the share of readings that
/// pass at each Sensitivity, and the suitable Sensitivity. There must be a sample.
void detect(const Recording& recording, const DetectOptions& options, std::ostream& out);

} // namespace noctara
