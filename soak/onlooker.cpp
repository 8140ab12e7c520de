#include "soak/onlooker.h"

#include <algorithm>
#include <cmath>

namespace noctara {

namespace {

constexpr std::uint32_t secondsPerScanInterval = 5;
constexpr std::int32_t leastAtTheStart = 5;
constexpr int readingsForChange = 3;

/// The phone's integers have 32 bits, and their sums and products wrap.
std::int32_t wrapped(std::uint32_t bits) {
    return static_cast<std::int32_t>(bits);
}

void take(const Dictionary& file, const char* key, bool& setting) {
    if (const auto* value = file.find(key))
        setting = value->boolValue();
}

void take(const Dictionary& file, const char* key, std::int32_t& setting) {
    if (const auto* value = file.find(key))
        setting = value->intValue();
}

} // namespace

void Onlooker::loads(const Dictionary* file) {
    applications.clear();
    if (!file)
        return;
    const std::string prefix = "launch-app-";
    for (const auto& [key, value] : *file)
        if (key.compare(0, prefix.size(), prefix) == 0 && value.boolValue())
            applications.push_back(key.substr(prefix.size()));

    take(*file, "Enabled", settings.Enabled);
    if (const auto* value = file->find("ScanInterval"))
        settings.ScanInterval =
            wrapped(static_cast<std::uint32_t>(value->intValue()) * secondsPerScanInterval);
    take(*file, "ScreenDown", settings.ScreenDown);
    take(*file, "ActiveOnSleep", settings.ActiveOnSleep);
    take(*file, "DetectManual", settings.DetectManual);
    take(*file, "TimeLimit", settings.TimeLimit);
    take(*file, "StartHour", settings.StartHour);
    take(*file, "StopHour", settings.StopHour);
    take(*file, "PlaySound", settings.PlaySound);
    take(*file, "Vibrate", settings.Vibrate);
    take(*file, "EnableOnAC", settings.EnableOnAC);
    take(*file, "Sensitivity", settings.Sensitivity);
    take(*file, "AirplaneSwitch", settings.AirplaneSwitch);
    take(*file, "WifiSwitch", settings.WifiSwitch);
    take(*file, "BTSwitch", settings.BTSwitch);
    take(*file, "PhoneSwitch", settings.PhoneSwitch);
    take(*file, "EdgeSwitch", settings.EdgeSwitch);
    take(*file, "3GSwitch", settings._3GSwitch);
    take(*file, "LocationSwitch", settings.LocationSwitch);
}

void Onlooker::begins(bool inAirplaneMode) {
    settings.ScanInterval = std::max(settings.ScanInterval, leastAtTheStart);
    startedInAirplaneMode = inAirplaneMode;
    quiet = inAirplaneMode;
}

void Onlooker::charger(bool plugged) {
    charging = plugged;
    unpluggedWhileQuiet = hasMonitor && !plugged && quiet;
    hasMonitor = true;
}

/// Only on a phone that was in airplane mode at the start the monitor compares airplane mode with
/// its own state.
bool Onlooker::manualChangeIsSeen(bool airplaneMode) const {
    return startedInAirplaneMode && airplaneMode != quiet;
}

void Onlooker::cycleBegins(bool airplaneMode) {
    if (settings.Enabled && settings.DetectManual && manualChangeIsSeen(airplaneMode)) {
        settings.Enabled = false;
        suspendedByHand = true;
    }
}

void Onlooker::offCycleEnds(bool airplaneMode) {
    const bool active = startedInAirplaneMode ? airplaneMode : quiet;
    if (suspendedByHand && settings.DetectManual && !active) {
        suspendedByHand = false;
        settings.Enabled = true;
    }
}

/// The window begins and ends on full hours of the current day.
bool Onlooker::windowIsOpen(Date now, const TimeZone& zone) const {
    DateComponents hour = zone.components(now);
    hour.minute = hour.second = 0;
    hour.hour = settings.StartHour;
    const Date start = zone.date(hour);
    hour.hour = settings.StopHour;
    const Date stop = zone.date(hour);
    if (settings.StopHour < settings.StartHour)
        return now > start || now <= stop;
    return now >= start && now <= stop;
}

bool Onlooker::lies(const std::optional<Acceleration>& sample) const {
    if (!sample)
        return false;
    const double length =
        std::sqrt(sample->x * sample->x + sample->y * sample->y + sample->z * sample->z);
    if (!(length > 0.9 && length < 1.1))
        return false;
    const double angle = std::acos(sample->z / length);
    const double tolerance = 0.22 / wrapped(static_cast<std::uint32_t>(settings.Sensitivity) + 1);
    const double pi = 3.1415927;
    return settings.ScreenDown ? angle < tolerance
                               : angle > pi - tolerance && angle < pi + tolerance;
}

Outcome Onlooker::reads(bool lies) {
    Outcome outcome;
    inARow = lies == quiet ? 0 : inARow + 1;
    if (inARow == 1 && lies && settings.PlaySound) {
        idleSleepIsRefused = true;
        outcome.cues = {Cue::warningSound};
    }
    if (inARow < readingsForChange)
        return outcome;
    inARow = 0;
    if (settings.PlaySound && !lies)
        outcome.cues.push_back(Cue::returnSound);
    if (settings.Vibrate)
        outcome.cues.push_back(Cue::vibration);
    outcome.becomesQuiet = lies;
    return outcome;
}

void Onlooker::changed(bool nowQuiet) {
    quiet = nowQuiet;
    idleSleepIsRefused = false;
    if (!quiet)
        unpluggedWhileQuiet = false;
}

} // namespace noctara
