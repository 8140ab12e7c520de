/// Accelerometer recordings: what a phone's logger wrote, as the readings the monitor would get.
#pragma once

#include "platform/motion.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace noctara {

enum class AccelerationUnit { g, milliG, metresPerSecondSquared };

/// Which way a logger counts: a phone lying screen up reads z = -1 g on iOS, and +1 g on Android,
/// which reports the reaction to gravity.
enum class AxisConvention { ios, android };

struct Recording {
    struct Sample {
        /// Since the first sample.
        double seconds = 0;
        Acceleration acceleration;
    };

    /// In the order of time; several may share an instant, as loggers write them in batches.
    std::vector<Sample> samples;

    /// What was assumed to read the file, and which option says otherwise; one line each.
    std::vector<std::string> remarks;

    /// Neither an option nor the headings told whose axes these are: up may be down.
    bool axesAreAssumed = false;

    /// In seconds, above 0: the last sample counts for one average step. A single sample lasts one
    /// second.
    double duration() const;

    /// The latest sample at or before `seconds`, which is 0 or more; the recording repeats when it
    /// ends. There must be a sample.
    const Acceleration& at(double seconds) const;
};

/// What the user says about a file; what is absent is told from the headings or the numbers.
struct RecordingOptions {
    std::optional<AccelerationUnit> unit;
    std::optional<AxisConvention> axes;

    /// Samples a second, evenly spaced, above 0; the file's own times are then not looked at.
    std::optional<double> rate;
};

/// Reads a CSV file: comma, semicolon or tab; decimal point or comma; columns found by their
/// headings, or time, x, y, z without any. A line that holds no reading is skipped and reported to
/// `complaints` as "FILE:LINE: ..."; after ten of them the rest is only counted. At least one
/// sample is returned. Throws BadInput when the file cannot be used.
Recording readRecording(const std::filesystem::path& path, const RecordingOptions& options,
                        std::ostream& complaints);

/// The middle one of the values (the upper one of two); there must be one.
double median(std::vector<double> values);

} // namespace noctara
