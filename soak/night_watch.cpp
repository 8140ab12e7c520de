#include "soak/night_watch.h"

#include "soak/invariants.h"

namespace noctara {

namespace {

/// Operations that no invariant looks at one by one.
bool isFrequent(Operation operation) {
    return operation == Operation::NSLog || operation == Operation::deviceMotion ||
           operation == Operation::accelerometerData ||
           operation == Operation::setAccelerometerUpdateInterval;
}

} // namespace

NightWatch::NightWatch(SimulatedPhone& phone, const Scenario& scenario) :
    night{phone, scenario, {}, 0, {}},
    all(makeInvariants(night)),
    isInert(scenario.phone.bundle != springBoardBundle) {
    phone.observe(*this);
}

void NightWatch::called(const Call& call) {
    if (isWait(call)) {
        night.secondsWaited += std::get<std::int64_t>(call.arguments[0]);
        return;
    }
    if (!isFrequent(call.operation) || isInert)
        tell([&](Invariant& invariant) { invariant.called(call); });
    followCall(call);
}

void NightWatch::happens(const Happening& happening) {
    tell([&](Invariant& invariant) { invariant.happens(happening.event); });
}

void NightWatch::decided(const Decision& decision) {
    if (std::holds_alternative<MonitoringBegins>(decision)) {
        night.onlooker.begins(night.phone.radios.states().airplane);
        phase = Phase::waiting;
        tell([](Invariant& invariant) { invariant.loopBegins(); });
    } else if (std::holds_alternative<NoReading>(decision)) {
        beginCycle(false);
    }
}

void NightWatch::endNight() {
    tell([](Invariant& invariant) { invariant.nightEnds(); });
}

/// A pause between two cycles, from the second one on.
bool NightWatch::isWait(const Call& call) const {
    return call.operation == Operation::sleep && phase == Phase::waiting && !call.onMainThread;
}

void NightWatch::followCall(const Call& call) {
    const auto text = [&] { return std::get<std::string_view>(call.arguments[0]); };
    switch (call.operation) {
    case Operation::isOnAC:
        night.onlooker.charger(std::get<bool>(*call.result));
        break;
    case Operation::fileExistsAtPath:
        settingsFileIsAsked = settingsFileIsAsked || text() == settingsFilePath;
        break;
    case Operation::initWithContentsOfFile:
        if (settingsFileIsAsked && text() == settingsFilePath) {
            const auto* file = std::get_if<const Dictionary*>(call.result);
            night.onlooker.loads(file ? *file : nullptr);
            settingsFileIsAsked = false;
        }
        break;
    case Operation::startAccelerometerUpdates:
        beginCycle(true);
        break;
    case Operation::deviceMotion:
        fromDeviceMotion = std::holds_alternative<Acceleration>(*call.result);
        break;
    case Operation::accelerometerData:
        if (const auto* measured = std::get_if<Acceleration>(call.result))
            sample = *measured;
        break;
    case Operation::stopAccelerometerUpdates:
        endReading();
        break;
    case Operation::performSelectorOnMainThread:
        if (text() == "setStateAirplaneMode") {
            changing = true;
            tell([](Invariant& invariant) { invariant.changeBegins(); });
        }
        break;
    case Operation::notify_post:
        if (changing && text() == "com.apple.radios") {
            changing = false;
            night.onlooker.changed(!night.onlooker.quiet);
            quietTimes += night.onlooker.quiet;
            tell([](Invariant& invariant) { invariant.changeEnds(); });
        }
        break;
    case Operation::sleep:
        beginWait(std::get<std::int64_t>(call.arguments[0]));
        break;
    default:
        break;
    }
}

void NightWatch::beginCycle(bool takesReading) {
    night.onlooker.cycleBegins(airplaneModeAsReported());
    const bool isOff = !night.onlooker.isOn();
    sample.reset();
    fromDeviceMotion = false;
    phase = takesReading ? Phase::reading : Phase::working;
    tell([&](Invariant& invariant) { invariant.cycleBegins(takesReading); });
    if (isOff)
        night.onlooker.offCycleEnds(airplaneModeAsReported());
}

void NightWatch::endReading() {
    phase = Phase::working;
    const bool lies = !fromDeviceMotion && night.onlooker.lies(sample);
    const Outcome outcome = night.onlooker.reads(lies);
    tell([&](Invariant& invariant) { invariant.readingEnds(outcome); });
}

void NightWatch::beginWait(std::int64_t seconds) {
    if (phase != Phase::working)
        return;
    phase = Phase::waiting;
    night.secondsWaited = seconds;
    tell([](Invariant& invariant) { invariant.cycleEnds(); });
}

bool NightWatch::airplaneModeAsReported() const {
    return night.phone.radios.hasTelephonyManager && night.phone.radios.states().airplane;
}

} // namespace noctara
