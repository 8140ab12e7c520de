#include "live/phone_lanes.h"

#include "monitor/posture.h"
#include "night/local_clock_text.h"
#include "platform/system_power.h"
#include "platform/system_sounds.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace noctara {

namespace {

/// The largest tilt, in degrees, at which a phone is drawn as lying on its screen or its back.
constexpr double lyingTilt = 20;

double degreesFromScreenDown(const Acceleration& sample) {
    return computeTiltAngle(nullptr, sample.x, sample.y, sample.z) * degreesPerRadian;
}

Mark markOf(const std::optional<Acceleration>& sample) {
    if (!sample)
        return Mark::noSample;
    const double tilt = degreesFromScreenDown(*sample);
    return tilt <= lyingTilt         ? Mark::screenDown
           : tilt >= 180 - lyingTilt ? Mark::screenUp
                                     : Mark::otherPosture;
}

const char* postureName(NamedPosture posture) {
    switch (posture) {
    case NamedPosture::ScreenDown:
        return "screen down";
    case NamedPosture::ScreenUp:
        return "screen up";
    case NamedPosture::InHand:
        return "in the hand";
    case NamedPosture::InPocket:
        return "in a pocket";
    case NamedPosture::Moving:
        return "moving";
    case NamedPosture::None:
        break;
    }
    return "no sample";
}

const char* postureName(Mark posture) {
    return posture == Mark::screenDown ? "screen down"
           : posture == Mark::screenUp ? "screen up"
                                       : "tilted";
}

const char* inWords(CallState call) {
    switch (call) {
    case CallState::none:
        return "none";
    case CallState::incoming:
        return "coming in";
    case CallState::outgoing:
        return "placed";
    default:
        break;
    }
    return "under way";
}

Mark onOff(bool on) {
    return on ? Mark::on : Mark::off;
}

Mark markOf(DataRate rate) {
    return rate == DataRate::kCTRegistrationDataRate2G   ? Mark::rate2G
           : rate == DataRate::kCTRegistrationDataRate3G ? Mark::rate3G
                                                         : Mark::rate4G;
}

std::optional<NamedPosture> named(const Posture& posture) {
    const auto* name = std::get_if<NamedPosture>(&posture);
    return name ? std::optional(*name) : std::nullopt;
}

std::string_view text(const Call& call) {
    return std::get<std::string_view>(call.arguments[0]);
}

} // namespace

PhoneLanes::PhoneLanes(const Scenario& scenario, const SimulatedPhone& phone) :
    night(scenario),
    onPhone(phone),
    posture(named(scenario.phone.posture)),
    onCharger(scenario.phone.charger),
    wakeUps(scenario) {
    lane(LaneName::cues).value = lane(LaneName::countdown).value = "none";
    look();
    lookAtPosture();
}

void PhoneLanes::note(LaneName name, Mark mark) {
    Lane& noted = lane(name);
    if (lasts(name) && noted.mark == mark)
        return;
    noted.mark = mark;
    noted.past.push_back({onPhone.clock.monotonic, mark});
}

/// An observer is told of a call or an event before it has its effect. Each look therefore shows
/// the effects of the one before.
void PhoneLanes::look() {
    const RadioStates radios = onPhone.radios.states();
    note(LaneName::airplane, onOff(radios.airplane));
    note(LaneName::wifi, onOff(radios.wifi));
    note(LaneName::bluetooth, onOff(radios.bluetooth));
    note(LaneName::cellularData, onOff(radios.cellularData));
    note(LaneName::dataRate, markOf(radios.maxRate));
    note(LaneName::location, onOff(radios.location));
    note(LaneName::call, onOff(onPhone.radios.call != CallState::none));
    note(LaneName::charger, onOff(onCharger));
    note(LaneName::idleSleep, onOff(onPhone.power.isAsleep()));
    note(LaneName::state, stateMark());
    if (!onPhone.motion.source)
        lookAtPosture();
}

void PhoneLanes::lookAtPosture() {
    note(LaneName::posture, markOf(onPhone.motion.measured()));
}

void PhoneLanes::called(const Call& call) {
    look();
    wakeUps.called(call);
    switch (call.operation) {
    case Operation::AudioServicesCreateSystemSoundID:
        if (text(call).find("airplanemode") != std::string_view::npos)
            warningSound = std::get<std::int64_t>(*call.result);
        break;
    case Operation::AudioServicesPlaySystemSound:
        followCue(call);
        break;
    case Operation::launch:
    case Operation::activate:
        note(LaneName::applications, Mark::launchedApplication);
        break;
    case Operation::kill:
        note(LaneName::applications, Mark::quitApplication);
        break;
    case Operation::IOCancelPowerChange:
        refusedSleep = true;
        break;
    default:
        break;
    }
}

void PhoneLanes::happens(const Happening& happening) {
    look();
    if (const auto* change = std::get_if<PostureChange>(&happening.event))
        posture = named(change->posture);
    else if (const auto* plug = std::get_if<ChargerChange>(&happening.event))
        onCharger = plug->plugged;
    else if (const auto* message = std::get_if<PowerMessage>(&happening.event))
        followPowerMessage(happening.at, message->type);
}

void PhoneLanes::followPowerMessage(Date at, std::uint32_t type) {
    powerMessageAt = onPhone.clock.monotonic;
    refusedSleep = false;
    if (type == kIOMessageSystemWillSleep)
        wakeUps.takeDue(at);
    else if (type == kIOMessageSystemHasPoweredOn && !wakeUps.takeDue(at).empty())
        note(LaneName::wakeUp, Mark::wakeUp);
}

void PhoneLanes::followCue(const Call& call) {
    const auto sound = std::get<std::int64_t>(call.arguments[0]);
    if (sound == 0)
        return;
    note(LaneName::cues, sound == vibrationSound ? Mark::vibration : Mark::sound);
    lane(LaneName::cues).value = fmt::format("{} {}",
                                             sound == vibrationSound ? "vibration"
                                             : sound == warningSound ? "warning"
                                                                     : "return",
                                             timeNow());
}

/// One overload for each kind of decision. A missing overload is a compile error.
struct PhoneLanes::Following {
    void operator()(const SettingsFileMade&) const {}
    void operator()(const SettingsFileUnreadable&) const {}
    void operator()(const SettingFilledIn&) const {}
    void operator()(const SettingsLoaded& loaded) const {
        lanes.wantsScreenDown = loaded.settings.screenDown;
    }
    void operator()(const MonitoringBegins& begins) const {
        lanes.monitors = true;
        lanes.inSleepState = begins.inSleepState;
    }
    void operator()(const AirplaneModeCompared& compared) const {
        lanes.suspended = compared.changedByHand;
    }
    void operator()(const NoReading& skipped) const { lanes.noReading = skipped.reason; }
    void operator()(const Reading&) const {
        lanes.noReading.reset();
        lanes.lookAtPosture();
    }
    void operator()(const ReadingCounted& counted) const {
        lanes.inARow = counted.inARow;
        if (counted.inARow > 0)
            lanes.note(LaneName::countdown, counted.inARow == 1   ? Mark::firstReading
                                            : counted.inARow == 2 ? Mark::secondReading
                                                                  : Mark::thirdReading);
    }
    void operator()(const StateChanged& changed) const {
        lanes.inSleepState = changed.inSleepState;
        lanes.inARow = 0;
    }

    PhoneLanes& lanes;
};

void PhoneLanes::decided(const Decision& decision) {
    std::visit(Following{*this}, decision);
    look();
}

const Lanes& PhoneLanes::lanes() {
    look();
    const RadioStates radios = onPhone.radios.states();
    const auto word = [](bool on) { return on ? "on" : "off"; };
    lane(LaneName::posture).value = postureInWords();
    lane(LaneName::countdown).value = inARow == 0 ? "none" : fmt::format("reading {} of 3", inARow);
    lane(LaneName::countdown).mark = inARow == 0 ? Mark::nothing : Mark::firstReading;
    lane(LaneName::state).value = stateInWords();
    lane(LaneName::airplane).value = word(radios.airplane);
    lane(LaneName::wifi).value = word(radios.wifi);
    lane(LaneName::bluetooth).value =
        radios.bluetooth && radios.bluetoothConnected ? "on, connected" : word(radios.bluetooth);
    lane(LaneName::cellularData).value = word(radios.cellularData);
    lane(LaneName::dataRate).value = fmt::format("up to {}", wordOf(dataRateWords, radios.maxRate));
    lane(LaneName::location).value = word(radios.location);
    lane(LaneName::call).value = inWords(onPhone.radios.call);
    lane(LaneName::charger).value = onCharger ? "plugged in" : "unplugged";
    lane(LaneName::idleSleep).value = onPhone.power.isAsleep()     ? "in idle sleep"
                                      : night.phone.idleSleep == 0 ? "never"
                                      : refusedSleep               ? "refused"
                                                                   : "no";
    lane(LaneName::wakeUp).value = wakeUpInWords();
    lane(LaneName::applications).value = applicationsInWords();
    return all;
}

std::string PhoneLanes::timeNow() const {
    return timeText(onPhone.timeZone(), onPhone.clock.wall());
}

std::string PhoneLanes::postureInWords() const {
    const auto sample = onPhone.motion.measured();
    if (!sample)
        return "no sample";
    const bool isPosed = sample == onPhone.motion.posedSample();
    const double tilt = degreesFromScreenDown(*sample);
    return fmt::format("{} {:.1f}°",
                       posture && isPosed ? postureName(*posture) : postureName(markOf(sample)),
                       wantsScreenDown ? tilt : std::abs(180 - tilt));
}

std::string PhoneLanes::stateInWords() const {
    if (!monitors)
        return "no monitor";
    if (suspended)
        return inSleepState ? "quiet, suspended" : "suspended";
    if (noReading == NoReading::Reason::monitoringIsOff)
        return inSleepState ? "quiet, not watching" : "monitoring is off";
    if (inSleepState)
        return "quiet";
    if (noReading == NoReading::Reason::outsideWindow)
        return "outside the hours";
    if (noReading == NoReading::Reason::notOnCharger)
        return "not on the charger";
    return "watching";
}

Mark PhoneLanes::stateMark() const {
    if (!monitors)
        return Mark::nothing;
    if (inSleepState)
        return Mark::quiet;
    return suspended || noReading ? Mark::notWatching : Mark::off;
}

std::string PhoneLanes::wakeUpInWords() const {
    const auto& wakes = onPhone.power.scheduledWakes();
    if (wakes.empty())
        return "none";
    const auto earliest = std::min_element(
        wakes.begin(), wakes.end(), [](auto& one, auto& other) { return one.at < other.at; });
    return "at " + timeText(onPhone.timeZone(), earliest->at);
}

std::string PhoneLanes::applicationsInWords() const {
    if (night.applications.empty())
        return "none";
    const std::string front = onPhone.applications.front();
    return front.empty() ? "home screen" : nameOf(front);
}

std::string PhoneLanes::nameOf(const std::string& identifier) const {
    for (const auto& application : night.applications)
        if (application.identifier == identifier)
            return application.name;
    return identifier;
}

} // namespace noctara
