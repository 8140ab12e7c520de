/// A recording of a phone's accelerometer, as the monitor would get it.
#pragma once

#include "platform/motion.h"

#include <cstddef>
#include <string>
#include <vector>

namespace noctara {

/// What is known of a recording without its samples.
struct RecordingSummary {
    std::size_t samples = 0;
    double lastSeconds = 0; ///< From the first sample to the last.

    /// Between two samples, in seconds. 0 for a single sample.
    double medianStep = 0;

    /// The assumptions made about the file, and the option that changes each. One line each.
    std::vector<std::string> remarks;

    /// The axis convention was not given, so screen up and screen down may be swapped.
    bool axesAreAssumed = false;

    /// In seconds, above 0. The last sample lasts one average step. A single sample lasts one
    /// second.
    double duration() const;
};

struct Recording {
    struct Sample {
        /// Since the first sample.
        double seconds = 0;
        Acceleration acceleration;
    };

    /// In the order of time. Several samples may have the same time, because loggers write them in
    /// batches.
    std::vector<Sample> samples;

    // As in the summary.
    std::vector<std::string> remarks;
    bool axesAreAssumed = false;
    double medianStep = 0;

    RecordingSummary summary() const;

    double duration() const;

    /// The latest sample at or before `seconds`, which must be 0 or more. The recording repeats
    /// when it ends. There must be a sample.
    const Acceleration& at(double seconds) const;
};

} // namespace noctara
