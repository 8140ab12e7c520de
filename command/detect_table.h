/// The table of `noctara detect`: what the monitor would see in each second of a recording.
#pragma once

#include "recording/posture_statistics.h"
#include "recording/recording.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <vector>

namespace noctara {

/// Collects a recording that need not be in memory.
class SecondTable {
public:
    /// `whole`: one line for each second, instead of one for each run of the same verdict. During a
    /// gap that is longer than `longestGap` seconds there are no lines.
    SecondTable(std::int32_t sensitivity, bool whole, double longestGap);

    /// The samples must come in the order of time.
    void add(const Recording::Sample& sample);

    /// After the last sample.
    void finish();

    /// `stillOffLength`: the phone keeps still while its readings are not 1 g long.
    void print(bool stillOffLength, std::ostream& out) const;

private:
    enum class Verdict : char { screenUp, screenDown, tilted, otherLength, noReading };

    struct Range {
        double least = 0;
        double most = 0;

        void include(double value);
    };

    struct Run {
        Verdict verdict;
        Range seconds;
        Range degreesOff;
        Range length;
    };

    void addSecond();
    void printHeading(std::ostream& out) const;
    static const char* nameOf(Verdict verdict, bool stillOffLength);

    const std::int32_t sensitivity;
    const bool whole;
    const double longestGap;
    std::optional<Recording::Sample> latest;
    double second = 0;
    std::vector<Run> runs;
};

} // namespace noctara
