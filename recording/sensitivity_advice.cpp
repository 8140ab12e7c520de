#include "recording/sensitivity_advice.h"

#include "monitor/posture.h"
#include "recording/posture_statistics.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace noctara {

namespace {

using Outcome = SensitivityAdvice::Outcome;

/// More than is needed, because the phone is touched at the start and at the end.
constexpr double usualSeconds = 30;

double toleranceDegrees(std::int32_t sensitivity) {
    return postureTolerance(sensitivity) * degreesPerRadian;
}

bool isEnough(const StillPart& part) {
    return part.seconds >= SensitivityAdvice::neededSeconds &&
           part.readings >= SensitivityAdvice::neededReadings;
}

const StillPart& of(const StillParts& parts, Rest rest) {
    return parts[static_cast<std::size_t>(rest)];
}

const StillPart& longer(const StillPart& a, const StillPart& b) {
    return b.seconds > a.seconds ? b : a;
}

/// The Sensitivity must leave room of a tenth of its tolerance. Above the default there is always
/// less tolerance, and nothing to gain.
std::int32_t strictestFor(double worstDegrees) {
    std::int32_t sensitivity = defaultSensitivity;
    while (sensitivity > 0 && worstDegrees > 0.9 * toleranceDegrees(sensitivity))
        --sensitivity;
    return sensitivity;
}

/// The part of the recording that the advice rests on, and what it allows to say.
std::pair<const StillPart*, Outcome> judge(const StillParts& parts, double recordedSeconds) {
    const StillPart& lying = longer(of(parts, Rest::screenDown), of(parts, Rest::screenUp));
    if (isEnough(lying)) {
        const bool mostlyOneG = lying.withLengthAtRest * 2 > lying.readings;
        if (!mostlyOneG)
            return {&lying, Outcome::notOneG};
        if (lying.worstDegreesOff >= toleranceDegrees(0))
            return {&lying, Outcome::tooTilted};
        return {&lying, Outcome::found};
    }
    const StillPart& tilted = of(parts, Rest::tilted);
    const StillPart& notOneG = of(parts, Rest::notOneG);
    if (isEnough(tilted) && tilted.seconds >= notOneG.seconds)
        return {&tilted, Outcome::tooTilted};
    if (isEnough(notOneG))
        return {&notOneG, Outcome::notOneG};
    const StillPart& any = longer(lying, longer(tilted, notOneG));
    const bool movesMostly =
        recordedSeconds >= SensitivityAdvice::neededSeconds && any.seconds < recordedSeconds / 2;
    return {&any, movesMostly ? Outcome::moving : Outcome::tooFew};
}

/// A few more than the readings that are needed, in whole minutes if they come slowly.
double secondsToRecord(double medianStep) {
    const double slow = static_cast<double>(SensitivityAdvice::neededReadings + 2) * medianStep;
    return slow <= usualSeconds ? usualSeconds : std::ceil(slow / 60) * 60;
}

} // namespace

SensitivityAdviceSearch::SensitivityAdviceSearch(double medianStep) :
    step(medianStep), parts(medianStep) {}

void SensitivityAdviceSearch::add(const Recording::Sample& sample) {
    latest = sample.seconds;
    parts.add(sample);
}

SensitivityAdvice SensitivityAdviceSearch::finish(bool axesAreAssumed) {
    const StillParts found = parts.finish();
    SensitivityAdvice advice;
    advice.recordedSeconds = latest;
    advice.postureIsAssumed = axesAreAssumed;
    const auto [part, outcome] = judge(found, latest);
    const PostureReading average(part->average());
    advice.outcome = outcome;
    advice.screenDown = average.nearerToScreenDown();
    advice.worstDegreesOff = part->worstDegreesOff;
    advice.averageDegreesOff = average.degreesOffVertical();
    advice.averageLength = average.length;
    advice.stillSeconds = part->seconds;
    advice.stillReadings = part->readings;
    if (part->seconds > 0)
        advice.passingAtDefault = part->passingSeconds / part->seconds;
    if (part->countdowns > 0)
        advice.detectedAtDefault =
            static_cast<double>(part->completed) / static_cast<double>(part->countdowns);
    advice.secondsToRecord = secondsToRecord(step);
    if (outcome == Outcome::found) {
        advice.sensitivity = strictestFor(part->worstDegreesOff);
        advice.roomDegrees = toleranceDegrees(advice.sensitivity) - part->worstDegreesOff;
    }
    return advice;
}

SensitivityAdvice adviceFrom(const Recording& recording) {
    SensitivityAdviceSearch search(recording.medianStep);
    for (const auto& sample : recording.samples)
        search.add(sample);
    return search.finish(recording.axesAreAssumed);
}

} // namespace noctara
