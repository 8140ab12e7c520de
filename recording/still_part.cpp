#include "recording/still_part.h"

#include "monitor/countdown.h"
#include "recording/posture_statistics.h"

#include <algorithm>
#include <cmath>

namespace noctara {

namespace {

/// Share of the length of a reading.
constexpr double largestSpread = 0.05;

/// Seconds from the first to the third reading of a countdown, each after the shortest pause and
/// the settle time.
constexpr double countdownLength = 2.0 * (Countdown::readingsForChange - 1);

Acceleration difference(const Acceleration& a, const Acceleration& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

double lengthOf(const Acceleration& a) {
    return std::sqrt(a.x * a.x + a.y * a.y + a.z * a.z);
}

Acceleration averageOf(const std::vector<Recording::Sample>& samples) {
    Acceleration sum;
    for (const auto& sample : samples) {
        sum.x += sample.acceleration.x;
        sum.y += sample.acceleration.y;
        sum.z += sample.acceleration.z;
    }
    const auto count = static_cast<double>(samples.size());
    return {sum.x / count, sum.y / count, sum.z / count};
}

/// A phone that is touched gives a few readings far off among many that are close together. The
/// noise of a sensor does not exceed three times its root mean square in one second.
bool isStill(const std::vector<Recording::Sample>& second, const Acceleration& average) {
    double furthest = 0;
    double squares = 0;
    for (const auto& sample : second) {
        const double off = lengthOf(difference(sample.acceleration, average));
        furthest = std::max(furthest, off);
        squares += off * off;
    }
    const double spread = std::sqrt(squares / static_cast<double>(second.size()));
    const double allowed = largestSpread * lengthOf(average);
    return spread <= allowed && furthest <= std::max(allowed, 3 * spread);
}

Rest restOf(const PostureReading& average) {
    if (!average.hasLengthAtRest())
        return Rest::notOneG;
    const bool screenDown = average.nearerToScreenDown();
    if (!average.lies(0, screenDown))
        return Rest::tilted;
    return screenDown ? Rest::screenDown : Rest::screenUp;
}

} // namespace

StillPart& StillPart::operator+=(const StillPart& other) {
    seconds += other.seconds;
    readings += other.readings;
    sum = {sum.x + other.sum.x, sum.y + other.sum.y, sum.z + other.sum.z};
    worstDegreesOff = std::max(worstDegreesOff, other.worstDegreesOff);
    withLengthAtRest += other.withLengthAtRest;
    passingSeconds += other.passingSeconds;
    countdowns += other.countdowns;
    completed += other.completed;
    return *this;
}

Acceleration StillPart::average() const {
    const auto count = static_cast<double>(std::max<std::size_t>(readings, 1));
    return {sum.x / count, sum.y / count, sum.z / count};
}

double longestGapBetween(double medianStep) {
    return std::max(10.0, 3 * medianStep);
}

StillPartFinder::StillPartFinder(double medianStep) : longestGap(longestGapBetween(medianStep)) {}

void StillPartFinder::add(const Recording::Sample& sample) {
    if (!second.empty() && sample.seconds == second.back().seconds)
        second.pop_back();
    const bool isGap = !second.empty() && sample.seconds - second.back().seconds > longestGap;
    if (isGap || (!second.empty() && sample.seconds >= second.front().seconds + 1))
        closeSecond();
    if (isGap)
        closePart();
    second.push_back(sample);
}

StillParts StillPartFinder::finish() {
    closeSecond();
    closePart();
    return found;
}

void StillPartFinder::closeSecond() {
    if (second.empty())
        return;
    const Acceleration average = averageOf(second);
    const bool still = isStill(second, average);
    if (latest && (!still || lengthOf(difference(average, part.average())) >
                                 largestSpread * lengthOf(part.average())))
        closePart();
    if (still)
        std::for_each(second.begin(), second.end(),
                      [this](const auto& sample) { addToPart(sample); });
    second.clear();
}

void StillPartFinder::addToPart(const Recording::Sample& sample) {
    if (!latest)
        partBegins = nextTick = sample.seconds;
    if (latest) {
        if (latestPasses)
            part.passingSeconds += sample.seconds - latest->seconds;
        for (; nextTick < sample.seconds;
             nextTick = partBegins + tick * static_cast<double>(ticks)) {
            passes <<= 1;
            passes[0] = latestPasses;
            if (++ticks <= countdownTicks)
                continue;
            ++part.countdowns;
            if (passes[0] && passes[ticksPerReading] && passes[countdownTicks])
                ++part.completed;
        }
    }
    const PostureReading reading(sample.acceleration);
    ++part.readings;
    part.sum = {part.sum.x + sample.acceleration.x, part.sum.y + sample.acceleration.y,
                part.sum.z + sample.acceleration.z};
    part.worstDegreesOff = std::max(part.worstDegreesOff, reading.degreesOffVertical());
    if (reading.hasLengthAtRest())
        ++part.withLengthAtRest;
    part.seconds = sample.seconds - partBegins;
    latest = sample;
    latestPasses = reading.lies(defaultSensitivity, reading.nearerToScreenDown());
}

void StillPartFinder::closePart() {
    if (latest && part.seconds >= countdownLength)
        found[static_cast<std::size_t>(restOf(PostureReading(part.average())))] += part;
    part = {};
    passes.reset();
    ticks = 0;
    latest.reset();
}

} // namespace noctara
