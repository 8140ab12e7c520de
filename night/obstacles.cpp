#include "night/obstacles.h"

#include "monitor/countdown.h"
#include "monitor/posture.h"
#include "platform/system_power.h"

#include <algorithm>
#include <cmath>

namespace noctara {

namespace {

/// The Sensitivity of the settings page that allows the largest tilt.
constexpr std::int32_t widestSensitivity = 0;

/// Degrees off the wanted posture.
double tiltOf(const Reading& reading) {
    return (reading.screenDown ? reading.angle : std::abs(pi - reading.angle)) * degreesPerRadian;
}

Obstacle obstacleIn(const Reading& reading) {
    switch (reading.source) {
    case Reading::Source::nothing:
        return Obstacle::noSample;
    case Reading::Source::deviceMotion:
        return Obstacle::deviceMotion;
    case Reading::Source::accelerometer:
        break;
    }
    if (reading.lies)
        return Obstacle::none;
    const double widest = postureTolerance(widestSensitivity);
    const auto liesOn = [&](bool screenDown) {
        return liesInPosture(reading.angle, reading.length, widest, screenDown);
    };
    if (liesOn(reading.screenDown))
        return Obstacle::tooTilted;
    if (liesOn(!reading.screenDown))
        return Obstacle::wrongSide;
    constexpr double restingAngle = 0;
    const bool isAtRest = liesInPosture(restingAngle, reading.length, widest, true);
    return isAtRest ? Obstacle::notLaidDown : Obstacle::moving;
}

} // namespace

void Obstacles::Histogram::add(double value) {
    if (std::isnan(value))
        return;
    lowest = total ? std::min(lowest, value) : value;
    highest = total ? std::max(highest, value) : value;
    ++total;
    // Lengths have no upper bound. All above the last step count as one.
    constexpr double mostSteps = 2000;
    const auto bin = static_cast<std::size_t>(std::clamp(value / step, 0.0, mostSteps));
    if (bin >= counts.size())
        counts.resize(bin + 1);
    ++counts[bin];
}

std::optional<Spread> Obstacles::Histogram::spread() const {
    if (total == 0)
        return std::nullopt;
    std::size_t bin = 0;
    for (int below = counts[0]; below <= total / 2 && bin + 1 < counts.size();)
        below += counts[++bin];
    const double middle = (static_cast<double>(bin) + 0.5) * step;
    return Spread{lowest, highest, std::clamp(middle, lowest, highest)};
}

Obstacles::Obstacles(const Scenario& scenario) :
    since(scenario.start), currentBegan(scenario.start.secondsSince1970) {
    ofEach[index(current)].firstMet = since;
}

std::optional<Spread> Obstacles::tilt(Obstacle obstacle) const {
    return ofEach[index(obstacle)].tilts.spread();
}

void Obstacles::meet(Obstacle obstacle, Date at) {
    const double now = elapsed.at(at);
    if (!quiet)
        ofEach[index(current)].seconds += now - currentBegan;
    currentBegan = now;
    if (obstacle == current)
        return;
    current = obstacle;
    since = at;
    auto& first = ofEach[index(obstacle)].firstMet;
    first = first.value_or(at);
}

void Obstacles::happens(const Happening& happening) {
    elapsed.happens(happening);
    if (const auto* message = std::get_if<PowerMessage>(&happening.event)) {
        if (message->type == kIOMessageSystemWillSleep && takesReadings()) {
            beforeIdleSleep = current;
            meet(Obstacle::idleSleep, happening.at);
        } else if (message->type == kIOMessageSystemHasPoweredOn &&
                   current == Obstacle::idleSleep) {
            meet(beforeIdleSleep, happening.at);
        }
    } else if (std::holds_alternative<MonitorStop>(happening.event)) {
        meet(Obstacle::ended, happening.at);
    } else if (const auto* change = std::get_if<PostureChange>(&happening.event)) {
        const bool isRecorded =
            recordingBegins && elapsed.at(happening.at) >= recordingBegins->secondsSince1970;
        if (!quiet || isRecorded || liesIn(change->posture))
            pickedUpAt.reset();
        else if (!pickedUpAt)
            pickedUpAt = happening.at;
    }
}

/// Whether the monitor takes readings, so that idle sleep would keep it from that.
bool Obstacles::takesReadings() const {
    switch (current) {
    case Obstacle::notStarted:
    case Obstacle::ended:
    case Obstacle::switchedOff:
    case Obstacle::suspended:
    case Obstacle::outsideWindow:
    case Obstacle::notOnCharger:
    case Obstacle::idleSleep:
        return false;
    default:
        return true;
    }
}

/// Whether the phone lies on the wanted side.
bool Obstacles::liesIn(const Posture& posture) const {
    const bool screenDown = !loaded || loaded->screenDown;
    if (const auto* named = std::get_if<NamedPosture>(&posture))
        return *named == (screenDown ? NamedPosture::ScreenDown : NamedPosture::ScreenUp);
    const auto& sample = std::get<Acceleration>(posture);
    double length = 0;
    const double angle = computeTiltAngle(&length, sample.x, sample.y, sample.z);
    return liesInPosture(angle, length, postureTolerance(loaded ? loaded->sensitivity : 0),
                         screenDown);
}

void Obstacles::decided(Date at, const Decision& decision) {
    if (const auto* settings = std::get_if<SettingsLoaded>(&decision)) {
        loaded = settings->settings;
    } else if (const auto* begins = std::get_if<MonitoringBegins>(&decision)) {
        meet(Obstacle::none, at);
        quiet = begins->inSleepState;
    } else if (const auto* compared = std::get_if<AirplaneModeCompared>(&decision)) {
        changedByHand = compared->changedByHand;
    } else if (const auto* skipped = std::get_if<NoReading>(&decision)) {
        switch (skipped->reason) {
        case NoReading::Reason::monitoringIsOff:
            meet(changedByHand ? Obstacle::suspended : Obstacle::switchedOff, at);
            break;
        case NoReading::Reason::outsideWindow:
            meet(Obstacle::outsideWindow, at);
            break;
        case NoReading::Reason::notOnCharger:
            meet(Obstacle::notOnCharger, at);
            break;
        }
    } else if (const auto* taken = std::get_if<Reading>(&decision)) {
        reading = {obstacleIn(*taken), tiltOf(*taken)};
        if (reading.obstacle == Obstacle::moving)
            lengths.add(taken->length);
        meet(reading.obstacle, at);
    } else if (const auto* counted = std::get_if<ReadingCounted>(&decision)) {
        count(*counted);
    } else if (const auto* changed = std::get_if<StateChanged>(&decision)) {
        changeState(changed->inSleepState, at);
    }
}

void Obstacles::count(const ReadingCounted& counted) {
    if (counted.inSleepState) {
        const bool slips =
            reading.obstacle == Obstacle::tooTilted || reading.obstacle == Obstacle::moving;
        slippingInARow = counted.inARow > 0 && slips ? slippingInARow + 1 : 0;
        if (slippingInARow > 0 && reading.obstacle == Obstacle::tooTilted)
            slipTilts.add(reading.tilt);
    } else {
        if (inARow > 0 && counted.inARow == 0)
            ++broken;
        const double tilt = reading.tilt;
        ofEach[index(reading.obstacle)].tilts.add(reading.obstacle == Obstacle::wrongSide
                                                      ? std::abs(pi * degreesPerRadian - tilt)
                                                      : tilt);
    }
    inARow = counted.inARow;
}

void Obstacles::changeState(bool nowQuiet, Date at) {
    constexpr double longestSlip = 1800.0;
    meet(current, at);
    quiet = nowQuiet;
    pickedUpAt.reset();
    if (!quiet && slippingInARow == Countdown::readingsForChange)
        mayHaveSlipped = elapsed.at(at);
    if (quiet && mayHaveSlipped) {
        if (elapsed.at(at) - *mayHaveSlipped <= longestSlip)
            ++slipped;
        mayHaveSlipped.reset();
    }
    inARow = slippingInARow = 0;
}

void Obstacles::finish(Date at) {
    meet(current, at);
}

} // namespace noctara
