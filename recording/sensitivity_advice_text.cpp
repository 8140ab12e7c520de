/// The words of the advice.
#include "recording/sensitivity_advice.h"

#include "monitor/posture.h"
#include "recording/posture_statistics.h"

#include <fmt/format.h>

#include <cmath>

namespace noctara {

namespace {

using Lines = std::vector<std::string>;

/// With one decimal, as degrees are shown, but rounded down: room that is not there is not
/// promised.
std::string shownRoom(double degrees) {
    return degrees < 0.1 ? fmt::format("{:.2f}°", std::floor(degrees * 100) / 100)
                         : fmt::format("{:.1f}°", std::floor(degrees * 10) / 10);
}

std::string shownTime(double seconds) {
    if (seconds < 1)
        return "less than a second";
    if (seconds < 120)
        return fmt::format("{:.0f} seconds", std::floor(seconds));
    if (seconds < 7200)
        return fmt::format("{:.0f} minutes", std::floor(seconds / 60));
    return fmt::format("{:.1f} hours", std::floor(seconds / 360) / 10);
}

/// In percent. 100 is shown only for all readings, and 0 only for none.
std::string shownShare(double share) {
    const double percent = std::round(share * 1000) / 10;
    if (share > 0 && percent < 0.1)
        return "less than 0.1 %";
    if (share < 1 && percent > 99.9)
        return "more than 99.9 %";
    return fmt::format("{:.{}f} %", percent, percent == std::round(percent) ? 0 : 1);
}

const char* screen(bool down) {
    return down ? "down" : "up";
}

double toleranceDegrees(std::int32_t sensitivity) {
    return postureTolerance(sensitivity) * degreesPerRadian;
}

/// What the default would do.
std::string atDefault(const SensitivityAdvice& advice) {
    constexpr double almostNever = 0.05;
    constexpr double almostAlways = 0.99;
    const std::string with = fmt::format("With {}, the default, ", defaultSensitivity);
    if (advice.passingAtDefault <= 0)
        return with + "this phone would never be detected.";
    if (advice.detectedAtDefault >= almostAlways)
        return with + "this phone would be detected, but with too little room.";
    const bool never = advice.detectedAtDefault < almostNever;
    return fmt::format(
        "{}this phone would {} detected ({} of readings{}).", with,
        never ? "almost never be" : "not always be", shownShare(advice.passingAtDefault),
        never && advice.passingAtDefault < almostNever ? ""
                                                       : " pass, and three in a row are needed");
}

Lines linesOfFound(const SensitivityAdvice& advice) {
    Lines lines;
    if (advice.sensitivity == defaultSensitivity)
        lines.push_back(fmt::format(
            "Keep Sensitivity {}, the default: the phone lies at most {:.1f}° off, and {:.1f}° are "
            "allowed ({} of room).",
            defaultSensitivity, advice.worstDegreesOff, toleranceDegrees(advice.sensitivity),
            shownRoom(advice.roomDegrees)));
    else {
        lines.push_back(
            fmt::format("Use Sensitivity {}. {}", advice.sensitivity, atDefault(advice)));
        lines.push_back(fmt::format("The phone lies at most {:.1f}° off, and Sensitivity {} allows "
                                    "{:.1f}° ({} of room).",
                                    advice.worstDegreesOff, advice.sensitivity,
                                    toleranceDegrees(advice.sensitivity),
                                    shownRoom(advice.roomDegrees)));
    }
    lines.push_back(fmt::format("Set ScreenDown {}, because the phone lies with the screen {}.",
                                advice.screenDown ? "on" : "off", screen(advice.screenDown)));
    if (advice.postureIsAssumed)
        lines.push_back(fmt::format("That it is {}, and not {}, rests on the assumed axes (--axes "
                                    "says otherwise).",
                                    screen(advice.screenDown), screen(!advice.screenDown)));
    return lines;
}

Lines linesOfTooTilted(const SensitivityAdvice& advice) {
    const bool inPart = advice.averageDegreesOff < toleranceDegrees(0);
    return {fmt::format("No Sensitivity detects this phone: it keeps still, but {}{:.1f}° off the "
                        "vertical; Sensitivity 0, the widest, allows {:.1f}°.",
                        inPart ? "at times " : "",
                        inPart ? advice.worstDegreesOff : advice.averageDegreesOff,
                        toleranceDegrees(0)),
            "Lay the phone flatter, and record again."};
}

std::string advisedRecording(const SensitivityAdvice& advice) {
    return fmt::format("Lay the phone where it lies at night and record at least {} without "
                       "touching it.",
                       shownTime(advice.secondsToRecord));
}

Lines linesOfOutcome(const SensitivityAdvice& advice) {
    using Outcome = SensitivityAdvice::Outcome;
    const std::string still = shownTime(advice.stillSeconds);
    switch (advice.outcome) {
    case Outcome::found:
        return linesOfFound(advice);
    case Outcome::tooTilted:
        return linesOfTooTilted(advice);
    case Outcome::notOneG:
        return {fmt::format("No Sensitivity detects this phone: it keeps still, but reads {:.3g} g "
                            "instead of 1 g; 0.9 to 1.1 g pass.",
                            advice.averageLength),
                "The sensor is badly calibrated, or the unit is wrong (--unit says otherwise)."};
    case Outcome::moving:
        return {advice.stillSeconds > 0
                    ? fmt::format("No advice: the phone moves; it keeps still for {} of {}.", still,
                                  shownTime(advice.recordedSeconds))
                    : "No advice: the phone moves all the time.",
                advisedRecording(advice)};
    case Outcome::tooFew:
        return {advice.stillSeconds >= advice.neededSeconds
                    ? fmt::format("No advice: there are only {} readings of the phone at rest; {} "
                                  "are needed.",
                                  advice.stillReadings, advice.neededReadings)
                    : fmt::format("No advice: the phone is seen at rest for {}; {} are needed.",
                                  still, shownTime(advice.neededSeconds)),
                advisedRecording(advice)};
    }
    return {};
}

} // namespace

std::vector<std::string> linesOf(const SensitivityAdvice& advice) {
    Lines lines = linesOfOutcome(advice);
    constexpr double mostOfIt = 0.9;
    if (advice.restsOnStillPart() && advice.stillSeconds < mostOfIt * advice.recordedSeconds)
        lines.push_back(fmt::format(
            "This rests on {} of {}; the rest is left out, because the phone moves or lies "
            "otherwise, or because readings are missing.",
            shownTime(advice.stillSeconds), shownTime(advice.recordedSeconds)));
    return lines;
}

} // namespace noctara
