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

    /// In the order of time. Several may share an instant, as loggers write them in batches.
    std::vector<Sample> samples;

    /// What was assumed to read the file, and which option changes it; one line each.
    std::vector<std::string> remarks;

    /// The axis convention was not given, so that screen up and screen down may be exchanged.
    bool axesAreAssumed = false;

    /// In seconds, above 0. The last sample counts for one average step; a single sample lasts one
    /// second.
    double duration() const;

    /// The latest sample at or before `seconds`, which is 0 or more. The recording repeats when it
    /// ends. There must be a sample.
    const Acceleration& at(double seconds) const;
};

/// The middle one of the values (the upper one of two); there must be one.
double median(std::vector<double> values);

} // namespace noctara
