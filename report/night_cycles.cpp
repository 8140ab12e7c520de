#include "report/night_cycles.h"

#include "monitor/posture.h"
#include "report/json_numbers.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace noctara {

namespace {

CycleOutcome outcomeOf(const Reading& reading) {
    switch (reading.source) {
    case Reading::Source::nothing:
        return CycleOutcome::noSample;
    case Reading::Source::deviceMotion:
        return CycleOutcome::deviceMotion;
    default:
        return reading.lies ? CycleOutcome::lies : CycleOutcome::notLying;
    }
}

CycleOutcome outcomeOf(NoReading::Reason reason) {
    switch (reason) {
    case NoReading::Reason::outsideWindow:
        return CycleOutcome::outsideWindow;
    case NoReading::Reason::notOnCharger:
        return CycleOutcome::notOnCharger;
    default:
        return CycleOutcome::off;
    }
}

bool hasReading(CycleOutcome outcome) {
    return outcome < CycleOutcome::off;
}

bool isMeasured(CycleOutcome outcome) {
    return outcome == CycleOutcome::lies || outcome == CycleOutcome::notLying;
}

} // namespace

void NightCycles::logged(const std::string& line) {
    const auto [found, isNew] = indices.emplace(line, texts.size());
    if (isNew)
        texts.push_back(line);
    log.push_back(found->second);
    ++linesOfCycle;
}

void NightCycles::begin(double at, CycleOutcome outcome) {
    if (underWay)
        waits();
    cycles.push_back({.at = at, .outcome = outcome});
    underWay = true;
}

void NightCycles::took(double at, const Reading& reading) {
    begin(at, outcomeOf(reading));
    cycles.back().tilt =
        (reading.screenDown ? reading.angle : std::abs(pi - reading.angle)) * degreesPerRadian;
    cycles.back().length = reading.length;
}

void NightCycles::skipped(double at, NoReading::Reason reason) {
    begin(at, outcomeOf(reason));
}

void NightCycles::counted(int inARow) {
    cycles.back().inARow = inARow;
}

void NightCycles::waits() {
    if (!underWay)
        return;
    underWay = false;
    Cycle& last = cycles.back();
    last.lines = std::exchange(linesOfCycle, 0);
    // Of equal cycles without a reading, only the first is stored.
    const bool isRepeated = cycles.size() > 1 &&
                            last.outcome == cycles[cycles.size() - 2].outcome &&
                            !hasReading(last.outcome) && last.lines == 0;
    if (isRepeated)
        cycles.pop_back();
}

Json NightCycles::finish() {
    waits();
    Json times = Json::array();
    Json outcomes = Json::array();
    Json tilts = Json::array();
    Json lengths = Json::array();
    Json counts = Json::array();
    Json lines = Json::array();
    std::int64_t before = 0;
    for (const Cycle& cycle : cycles) {
        const std::int64_t now = std::llround(cycle.at * 1000);
        times.push_back(now - before);
        before = now;
        outcomes.push_back(static_cast<int>(cycle.outcome));
        tilts.push_back(isMeasured(cycle.outcome) ? rounded(cycle.tilt, 2) : Json());
        lengths.push_back(isMeasured(cycle.outcome) ? rounded(cycle.length, 3) : Json());
        counts.push_back(cycle.inARow);
        lines.push_back(cycle.lines);
    }
    return {{"times", std::move(times)},   {"outcomes", std::move(outcomes)},
            {"tilts", std::move(tilts)},   {"lengths", std::move(lengths)},
            {"counts", std::move(counts)}, {"logged", std::move(lines)},
            {"texts", std::move(texts)},   {"log", std::move(log)}};
}

} // namespace noctara
