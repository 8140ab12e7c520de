/// Converts the numbers of a file to seconds, and to g in the phone's axes.
#pragma once

#include "recording/recording.h"
#include "recording/recording_parser.h"

#include <cstddef>
#include <string>
#include <vector>

namespace noctara {

/// What must be known of all readings of a file before one of them can be converted.
class RecordingSurvey {
public:
    void add(const RawReading& reading);

    std::size_t count() const { return readings; }
    double firstTime() const { return first; }

    /// In the unit of the file. Each time that the clock is set back counts as one step.
    double span() const;

    /// The median of the steps above 0. 0 if there is none.
    double medianStep() const;

    /// Whether the steps above 0 hardly differ, as those of a slow logger.
    bool isRegular() const;

    double medianLength() const;

private:
    std::size_t readings = 0;
    double first = 0;
    double latest = 0;
    // A part of the recording begins at the first reading and after each set-back of the clock.
    double partBegins = 0;                 ///< The time of the first reading of the latest part.
    std::vector<double> finishedDurations; ///< Of the parts before the latest one.
    // Floats, because a recording has millions of readings and these only tell the units.
    std::vector<float> steps;
    std::vector<float> lengths;
};

/// Converts the readings, which must be given in order.
class RecordingConversion {
public:
    /// Adds the assumptions to `remarks`. Throws BadInput, with a text that begins with `file`, for
    /// numbers that are not plausible.
    RecordingConversion(const RecordingSurvey& survey, const RecordingParser& parser,
                        const RecordingOptions& options, const std::string& file,
                        std::vector<std::string>& remarks);

    Recording::Sample convert(const RawReading& reading);

    /// In seconds.
    double medianStep() const { return step * secondsPerUnit; }
    double lastSeconds() const { return span; }

private:
    void chooseTimes(const RecordingSurvey& survey, const RecordingParser& parser,
                     const std::string& file, std::vector<std::string>& remarks);
    void chooseAccelerations(const RecordingSurvey& survey, const RecordingParser& parser,
                             const std::string& file, std::vector<std::string>& remarks);

    const RecordingOptions& options;
    double secondsPerUnit = 1;
    double step = 0;
    double span = 0;
    double divisor = 1;

    std::size_t converted = 0;
    double latest = 0;

    // Since the clock was last set back. Differences of large times are exact, sums are not.
    double first = 0;  ///< The time of the first reading, in the unit of the file.
    double before = 0; ///< What had passed by then.
};

} // namespace noctara
