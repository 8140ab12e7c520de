/// The Sensitivity that suits a phone, judged from a recording of its accelerometer as the monitor
/// judges it: the monitor sees only the latest sample, and three readings in a row must pass.
#pragma once

#include "recording/recording.h"
#include "recording/still_part.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace noctara {

struct SensitivityAdvice {
    enum class Outcome {
        found,     ///< There is a Sensitivity that suits the phone.
        tooTilted, ///< The phone keeps still, but no Sensitivity allows its tilt.
        notOneG,   ///< The phone keeps still, but its readings are not 0.9 to 1.1 g long.
        moving,    ///< The phone does not keep still long enough.
        tooFew,    ///< The recording is too short, or has too few readings.
    };

    Outcome outcome = Outcome::tooFew;

    /// The posture that the advice is for, which is that of the setting ScreenDown. For other
    /// outcomes than `found`, the nearer one.
    bool screenDown = false;

    /// The axis convention was not given, so screen up and screen down may be swapped.
    bool postureIsAssumed = false;

    /// The strictest Sensitivity whose tolerance exceeds the worst tilt by a tenth, but not above
    /// the default. Meaningful if the outcome is `found`.
    std::int32_t sensitivity = 0;

    /// The tolerance of `sensitivity` less the worst tilt. Above 0 if the outcome is `found`.
    double roomDegrees = 0;

    /// Of the readings while the phone keeps still.
    double worstDegreesOff = 0;
    double averageDegreesOff = 0;
    double averageLength = 0; ///< In g.

    /// While the phone keeps still, at the default Sensitivity: the share of readings that pass,
    /// and the share of countdowns in which all three readings pass. 0 to 1.
    double passingAtDefault = 0;
    double detectedAtDefault = 0;

    /// The part of the recording that the advice rests on, in which the phone keeps still.
    double stillSeconds = 0;
    std::size_t stillReadings = 0;
    double recordedSeconds = 0; ///< The whole recording.

    /// How long a recording should be if there is no advice.
    double secondsToRecord = 0;

    /// The least that an advice can rest on.
    static constexpr double neededSeconds = 10;
    static constexpr std::size_t neededReadings = 10;

    /// False if there was too little of the phone at rest to say anything.
    bool restsOnStillPart() const {
        return outcome != Outcome::moving && outcome != Outcome::tooFew;
    }
};

/// Collects a recording that need not be in memory.
class SensitivityAdviceSearch {
public:
    /// `medianStep` between two samples, in seconds.
    explicit SensitivityAdviceSearch(double medianStep);

    /// The samples must come in the order of time.
    void add(const Recording::Sample& sample);

    SensitivityAdvice finish(bool axesAreAssumed);

private:
    const double step;
    double latest = 0;
    StillPartFinder parts;
};

SensitivityAdvice adviceFrom(const Recording& recording);

/// The advice for the owner of the phone, in sentences. The first line is the most important one.
std::vector<std::string> linesOf(const SensitivityAdvice& advice);

} // namespace noctara
