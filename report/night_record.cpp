#include "report/night_record.h"

#include "monitor/posture.h"
#include "phones/model/local_time.h"
#include "platform/system_power.h"
#include "platform/system_sounds.h"
#include "report/json_numbers.h"
#include "report/local_times.h"

#include <algorithm>

namespace noctara {

namespace {

std::string_view text(const Call& call) {
    return std::get<std::string_view>(call.arguments[0]);
}

Json seconds(double since) {
    return rounded(since, 3);
}

const char* stateWithout(NoReading::Reason reason) {
    switch (reason) {
    case NoReading::Reason::outsideWindow:
        return "outside the window";
    case NoReading::Reason::notOnCharger:
        return "not on the charger";
    default:
        return "off";
    }
}

Json jsonOf(const Settings& settings) {
    return {{"enabled", settings.enabled},         {"interval", settings.sleepTime},
            {"sensitivity", settings.sensitivity}, {"screenDown", settings.screenDown},
            {"timeLimit", settings.timeLimit},     {"startHour", settings.startTime},
            {"stopHour", settings.stopTime},       {"onChargerOnly", settings.enabledOnChargeOnly}};
}

/// The kind of a line that a decision adds to the story.
struct LineKind {
    const char* operator()(const SettingsFileMade&) const { return "settings"; }
    const char* operator()(const SettingsFileUnreadable&) const { return "settings"; }
    const char* operator()(const SettingFilledIn&) const { return "settings"; }
    const char* operator()(const SettingsLoaded&) const { return "settings"; }
    const char* operator()(const MonitoringBegins&) const { return "monitor"; }
    const char* operator()(const AirplaneModeCompared&) const { return "monitor"; }
    const char* operator()(const NoReading&) const { return "monitor"; }
    const char* operator()(const Reading&) const { return "monitor"; }
    const char* operator()(const ReadingCounted&) const { return "reading"; }
    const char* operator()(const StateChanged&) const { return "state"; }
};

} // namespace

NightRecord::NightRecord(const Scenario& scenario, std::function<Date()> wallClock) :
    night(scenario),
    now(std::move(wallClock)),
    story(scenario, nowhere, false),
    radios(scenario),
    wakeUps(scenario) {
    story.onLine = [this](Date at, const std::string& line) {
        // Only lines about idle sleeps are told after their time.
        const bool isLate = !clockIsSet && at < now();
        lines.push_back(Json::array(
            {seconds(since(clockIsSet ? now() : at)), isLate ? "idle sleep" : kindOfLine, line}));
    };
    enterState("off", night.start);
    enterRadios(night.start);
    enter("call", wordOf(callStateWords, night.radios.call), night.start);
    enter("charger", night.phone.charger, night.start);
}

double NightRecord::since(Date wall) const {
    return elapsed.at(wall) - night.start.secondsSince1970;
}

void NightRecord::enter(const char* lane, const Json& value, Date at) {
    Json& steps = lanes.try_emplace(lane, Json::array()).first->second;
    if (steps.empty() || steps.back()[1] != value)
        steps.push_back(Json::array({seconds(since(at)), value}));
}

void NightRecord::enterRadios(Date at) {
    const RadioStates states = radios.states();
    enter("airplane", states.airplane, at);
    enter("wifi", states.wifi, at);
    enter("bluetooth",
          states.bluetoothConnected ? "connected"
          : states.bluetooth        ? "on"
                                    : "off",
          at);
    enter("cellularData", states.cellularData, at);
    enter("maxRate", wordOf(dataRateWords, states.maxRate), at);
    enter("location", states.location, at);
}

void NightRecord::enterState(const char* state, Date at) {
    enter("state", state, at);
}

void NightRecord::followsRecording(const std::string& name, Date from,
                                   const std::vector<std::string>& recordingRemarks) {
    story.tellOfRecording(name, from, recordingRemarks);
    remarks.push_back("The accelerometer follows the recording " + name + ".");
    remarks.insert(remarks.end(), recordingRemarks.begin(), recordingRemarks.end());
}

void NightRecord::isInert() {
    story.tellOfInertness();
}

void NightRecord::called(const Call& call) {
    kindOfLine = call.operation == Operation::IOCancelPowerChange ? "idle sleep" : "monitor";
    story.called(call);
    radios.called(call);
    wakeUps.called(call);
    follow(call);
}

void NightRecord::follow(const Call& call) {
    switch (call.operation) {
    case Operation::NSLog:
        cycles.logged(std::string(text(call)));
        break;
    case Operation::sleep:
        cycles.waits();
        break;
    case Operation::AudioServicesCreateSystemSoundID:
    case Operation::AudioServicesPlaySystemSound:
        followSound(call);
        break;
    case Operation::AudioServicesDisposeSystemSoundID:
        enterState("off", call.at);
        break;
    case Operation::IOCancelPowerChange:
        if (std::exchange(askedToSleep, false))
            refusals.push_back(seconds(since(call.at)));
        break;
    case Operation::launch:
        applications.push_back(applicationDeed("launched", call));
        break;
    case Operation::activate:
        applications.push_back(applicationDeed("brought to the front", call));
        break;
    case Operation::kill:
        applications.push_back(applicationDeed("quit", call));
        break;
    case Operation::updateAirplaneMode:
    case Operation::setWiFiEnabled:
    case Operation::setPowered:
    case Operation::setEnabled:
    case Operation::CTCellularDataPlanSetIsEnabled:
    case Operation::CTRegistrationSetMaxAllowedDataRate:
    case Operation::setLocationServicesEnabled:
        enterRadios(call.at);
        break;
    default:
        break;
    }
}

Json NightRecord::applicationDeed(const char* verb, const Call& call) const {
    const auto identifier = text(call);
    const auto found =
        std::find_if(night.applications.begin(), night.applications.end(),
                     [&](const auto& application) { return application.identifier == identifier; });
    const bool hasName = found != night.applications.end() && !found->name.empty();
    return Json::array(
        {seconds(since(call.at)), verb, hasName ? std::string_view(found->name) : identifier});
}

void NightRecord::followSound(const Call& call) {
    if (call.operation == Operation::AudioServicesCreateSystemSoundID) {
        const bool isAirplaneMode = text(call).find("airplanemode") != std::string_view::npos;
        (isAirplaneMode ? airplaneModeSound : returnSound) = std::get<std::int64_t>(*call.result);
        return;
    }
    const auto sound = std::get<std::int64_t>(call.arguments[0]);
    if (sound == 0)
        return;
    cues.push_back(
        Json::array({seconds(since(call.at)), sound == vibrationSound      ? "vibration"
                                              : sound == airplaneModeSound ? "warning sound"
                                                                           : "return sound"}));
}

void NightRecord::happens(const Happening& happening) {
    const auto* message = std::get_if<PowerMessage>(&happening.event);
    kindOfLine = message ? "idle sleep" : "event";
    if (std::holds_alternative<ClockChange>(happening.event)) {
        story.finish();
        clockIsSet = true;
    }
    story.happens(happening);
    clockIsSet = false;
    radios.happens(happening);
    if (message)
        followPowerMessage(happening.at, message->type);
    else if (const auto* charger = std::get_if<ChargerChange>(&happening.event))
        enter("charger", charger->plugged, happening.at);
    else if (const auto* call = std::get_if<CallChange>(&happening.event))
        enter("call", wordOf(callStateWords, call->state), happening.at);
    else if (const auto* clock = std::get_if<ClockChange>(&happening.event))
        clockChanges.emplace_back(since(happening.at),
                                  clock->to.secondsSince1970 - happening.at.secondsSince1970);
    enterRadios(happening.at);
    elapsed.happens(happening);
}

void NightRecord::followPowerMessage(Date at, std::uint32_t type) {
    askedToSleep = type == kIOMessageCanSystemSleep;
    if (type == kIOMessageSystemWillSleep) {
        wakeUps.takeDue(at);
        idleSleepBegan = since(at);
    } else if (type == kIOMessageSystemHasPoweredOn && idleSleepBegan) {
        idleSleeps.push_back(Json::array({seconds(*idleSleepBegan), seconds(since(at))}));
        idleSleepBegan.reset();
        for (const auto& wake : wakeUps.takeDue(at))
            wakings.push_back(Json::array({seconds(since(at)), wake.scheduledBy}));
    }
}

void NightRecord::decided(const Decision& decision) {
    const Date at = now();
    kindOfLine = std::visit(LineKind(), decision);
    story.decided(at, decision);
    radios.decided(at, decision);

    if (const auto* loaded = std::get_if<SettingsLoaded>(&decision)) {
        settings.push_back(Json::array({seconds(since(at)), jsonOf(loaded->settings)}));
    } else if (const auto* begins = std::get_if<MonitoringBegins>(&decision)) {
        inSleepState = begins->inSleepState;
        enter("quiet", inSleepState, at);
    } else if (const auto* compared = std::get_if<AirplaneModeCompared>(&decision)) {
        suspended = compared->changedByHand;
    } else if (const auto* skipped = std::get_if<NoReading>(&decision)) {
        cycles.skipped(since(at), skipped->reason);
        enterState(suspended ? "suspended" : stateWithout(skipped->reason), at);
    } else if (const auto* taken = std::get_if<Reading>(&decision)) {
        cycles.took(since(at), *taken);
        const Json degrees = rounded(taken->tolerance * degreesPerRadian, 3);
        if (tolerances.empty() || tolerances.back()[1] != degrees ||
            tolerances.back()[2] != taken->screenDown)
            tolerances.push_back(Json::array({seconds(since(at)), degrees, taken->screenDown}));
        enterState(inSleepState ? "quiet" : "watching", at);
    } else if (const auto* counted = std::get_if<ReadingCounted>(&decision)) {
        cycles.counted(counted->inARow);
    } else if (const auto* changed = std::get_if<StateChanged>(&decision)) {
        inSleepState = changed->inSleepState;
        enter("quiet", inSleepState, at);
        enterState(inSleepState ? "quiet" : "watching", at);
    }
}

/// The local time at a time of the night is that time plus a number of seconds. The number changes
/// when the clock is set and when daylight-saving time begins or ends.
Json NightRecord::localTimes() const {
    const TimeZone zone(night.timezone);
    Json found = Json::array();
    double ahead = 0; // The wall clock before the monotonic clock.
    double from = 0;
    const auto addUntil = [&](double to) {
        const double base = night.start.secondsSince1970 + ahead;
        for (auto& span : localTimesForPage(zone, base, from, to))
            found.push_back(std::move(span));
        from = to;
    };
    for (const auto& [at, jump] : clockChanges) {
        addUntil(at);
        ahead += jump;
    }
    addUntil(end);
    return found;
}

void NightRecord::endNight() {
    kindOfLine = "idle sleep";
    story.finish();
    end = since(now());
    if (idleSleepBegan)
        idleSleeps.push_back(Json::array({seconds(*idleSleepBegan), seconds(end)}));
}

Json NightRecord::finish(const NightSummary& summary) {
    Json allLanes = Json::object();
    for (auto& [name, steps] : lanes)
        allLanes[name] = std::move(steps);
    return {{"kind", "night"},
            {"zone", night.timezone},
            {"end", seconds(end)},
            {"localTimes", localTimes()},
            {"outcome", nameOf(summary.verdict.kind)},
            {"verdict", Json::array({summary.verdict.text})},
            {"wrong", summary.faults},
            {"figures", figuresInWords(summary.figures, TimeZone(night.timezone))},
            {"remarks", remarks},
            {"settings", std::move(settings)},
            {"cycles", cycles.finish()},
            {"tolerances", std::move(tolerances)},
            {"lanes", std::move(allLanes)},
            {"idleSleeps", std::move(idleSleeps)},
            {"refusals", std::move(refusals)},
            {"wakeUps", std::move(wakings)},
            {"cues", std::move(cues)},
            {"applications", std::move(applications)},
            {"story", std::move(lines)}};
}

} // namespace noctara
