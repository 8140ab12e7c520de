/// A recording of a phone's accelerometer, as the monitor would get it.
#pragma once

#include "platform/motion.h"

#include <string>
#include <vector>

namespace noctara {

struct Recording {
    struct Sample {
        /// Since the first sample.
        double seconds = 0;
        Acceleration acceleration;
    };

    /// In the order of time. Several samples may have the same time, because loggers write them in
    /// batches.
    std::vector<Sample> samples;

    /// The assumptions made about the file, and the option that changes each. One line each.
    std::vector<std::string> remarks;

    /// The axis convention was not given, so screen up and screen down may be swapped.
    bool axesAreAssumed = false;

    /// In seconds, above 0. The last sample lasts one average step. A single sample lasts one
    /// second.
    double duration() const;

    /// The median of the steps between the samples, in seconds. 0 for a single sample.
    double medianStep() const;

    /// The latest sample at or before `seconds`, which must be 0 or more. The recording repeats
    /// when it ends. There must be a sample.
    const Acceleration& at(double seconds) const;
};

/// The median of the values; the upper one of two middle values. There must be a value.
double median(std::vector<double> values);

} // namespace noctara
