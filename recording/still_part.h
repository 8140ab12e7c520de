/// Finds the parts of a recording in which the phone keeps still, as the monitor would see them.
#pragma once

#include "recording/recording.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <optional>
#include <vector>

namespace noctara {

/// How a phone that keeps still lies. Only the first two pass at some Sensitivity.
enum class Rest {
    screenDown,
    screenUp,
    tilted,  ///< Further off the vertical than Sensitivity 0 allows.
    notOneG, ///< The readings are not as long as those of a phone at rest.
};

inline constexpr std::size_t restCount = 4;

/// What the monitor would see while the phone keeps still in one way. Of several samples with the
/// same time, it sees only the last.
struct StillPart {
    double seconds = 0;
    std::size_t readings = 0;

    /// The sum of the readings, in g.
    Acceleration sum;
    double worstDegreesOff = 0;

    /// The readings whose length is that of a phone at rest.
    std::size_t withLengthAtRest = 0;

    /// Of `seconds`, those in which a reading passes at the default Sensitivity.
    double passingSeconds = 0;

    /// Moments at which a countdown may begin, and those from which all its readings pass at the
    /// default Sensitivity.
    std::size_t countdowns = 0;
    std::size_t completed = 0;

    StillPart& operator+=(const StillPart& other);
    Acceleration average() const;
};

using StillParts = std::array<StillPart, restCount>;

/// In seconds. In a longer gap between two samples nothing is known of the phone.
double longestGapBetween(double medianStep);

/// Divides a recording into seconds, and joins those in which the phone keeps still. A part that is
/// shorter than a countdown is not counted. Needs memory for one second.
class StillPartFinder {
public:
    /// `medianStep` between two samples, in seconds.
    explicit StillPartFinder(double medianStep);

    /// The samples must come in the order of time.
    void add(const Recording::Sample& sample);

    /// The parts by Rest, after the last sample.
    StillParts finish();

private:
    /// Seconds between two moments at which a countdown may begin: the interval at which the
    /// accelerometer delivers samples to the monitor.
    static constexpr double tick = 0.2;
    static constexpr std::size_t ticksPerReading = 10;
    static constexpr std::size_t countdownTicks = 2 * ticksPerReading;

    void closeSecond();
    void closePart();
    void addToPart(const Recording::Sample& sample);

    const double longestGap;
    std::vector<Recording::Sample> second;
    StillParts found;

    /// The part that goes on.
    StillPart part;
    double partBegins = 0;
    double nextTick = 0;
    /// Whether the readings of the latest ticks pass. The newest is at 0.
    std::bitset<countdownTicks + 1> passes;
    std::size_t ticks = 0;
    std::optional<Recording::Sample> latest;
    bool latestPasses = false;
};

} // namespace noctara
