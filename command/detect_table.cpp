#include "command/detect_table.h"

#include "monitor/posture.h"

#include <fmt/ostream.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace noctara {

namespace {

std::string describeTolerance(std::int32_t sensitivity) {
    const double degrees = postureTolerance(sensitivity) * degreesPerRadian;
    if (std::isinf(degrees))
        return "any tilt passes";
    if (degrees < 0)
        return "no tilt passes";
    return fmt::format("less than {:.2f}° off passes", degrees);
}

/// Both values, or one if they are shown alike.
std::string shownRange(const std::string& least, const std::string& most) {
    return least == most ? most : least + " to " + most;
}

} // namespace

SecondTable::SecondTable(std::int32_t chosenSensitivity, bool isWhole, double longest) :
    sensitivity(chosenSensitivity), whole(isWhole), longestGap(longest) {}

void SecondTable::Range::include(double value) {
    least = std::min(least, value);
    most = std::max(most, value);
}

void SecondTable::add(const Recording::Sample& sample) {
    while (latest && second < sample.seconds) {
        addSecond();
        if (sample.seconds - second > longestGap) {
            runs.push_back({Verdict::noReading, {second, sample.seconds}, {}, {}});
            second = std::ceil(sample.seconds);
        } else {
            ++second;
        }
    }
    latest = sample;
}

void SecondTable::finish() {
    if (latest && second <= latest->seconds)
        addSecond();
    latest.reset();
}

void SecondTable::addSecond() {
    const PostureReading reading(latest->acceleration);
    const bool screenDown = reading.nearerToScreenDown();
    const double degrees = reading.degreesOffVertical();
    Verdict verdict = Verdict::otherLength;
    if (reading.lies(sensitivity, screenDown))
        verdict = screenDown ? Verdict::screenDown : Verdict::screenUp;
    else if (reading.hasLengthAtRest())
        verdict = Verdict::tilted;
    if (whole || runs.empty() || runs.back().verdict != verdict)
        runs.push_back(
            {verdict, {second, second}, {degrees, degrees}, {reading.length, reading.length}});
    runs.back().seconds.most = second;
    runs.back().degreesOff.include(degrees);
    runs.back().length.include(reading.length);
}

const char* SecondTable::nameOf(Verdict verdict, bool stillOffLength) {
    switch (verdict) {
    case Verdict::screenUp:
        return "screen up";
    case Verdict::screenDown:
        return "screen down";
    case Verdict::tilted:
        return "tilted";
    case Verdict::otherLength:
        return stillOffLength ? "still, but not 1 g long" : "moving";
    case Verdict::noReading:
        break;
    }
    return "";
}

void SecondTable::printHeading(std::ostream& out) const {
    const std::string tolerance = describeTolerance(sensitivity);
    if (whole)
        fmt::print(out, "\n second  off vertical   length  at Sensitivity {}: {}\n", sensitivity,
                   tolerance);
    else
        fmt::print(out,
                   "\n         seconds      off vertical              length  at Sensitivity {}: "
                   "{}\n",
                   sensitivity, tolerance);
}

void SecondTable::print(bool stillOffLength, std::ostream& out) const {
    printHeading(out);
    for (const Run& run : runs) {
        const char* verdict = nameOf(run.verdict, stillOffLength);
        if (run.verdict == Verdict::noReading)
            fmt::print(out, "{:>{}}  no reading until {:.2f} s\n", "-", whole ? 7 : 16,
                       run.seconds.most);
        else if (whole)
            fmt::print(out, "{:7.0f}  {:11.2f}°  {:5.3f} g  {}\n", run.seconds.least,
                       run.degreesOff.least, run.length.least, verdict);
        else
            fmt::print(out, "{:>16}  {:>16}  {:>16} g  {}\n",
                       shownRange(fmt::format("{:.0f}", run.seconds.least),
                                  fmt::format("{:.0f}", run.seconds.most)),
                       shownRange(fmt::format("{:.2f}°", run.degreesOff.least),
                                  fmt::format("{:.2f}°", run.degreesOff.most)),
                       shownRange(fmt::format("{:.3f}", run.length.least),
                                  fmt::format("{:.3f}", run.length.most)),
                       verdict);
    }
}

} // namespace noctara
