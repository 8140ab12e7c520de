#include "night/story.h"

#include "input/printable.h"
#include "monitor/posture.h"
#include "night/deed_words.h"
#include "night/event_words.h"
#include "night/local_clock_text.h"
#include "night/reading_words.h"
#include "night/settings_words.h"
#include "output/terminal_text.h"
#include "phones/model/phone_model.h"
#include "platform/system_power.h"
#include "platform/system_sounds.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <utility>

namespace noctara {

namespace {

std::string_view text(const Call& call) {
    return std::get<std::string_view>(call.arguments[0]);
}

/// What a call has read from a file. Null if it is not a dictionary.
const Dictionary* dictionaryRead(const Call& call) {
    if (!call.result)
        return nullptr;
    if (const auto* list = std::get_if<const PropertyList*>(call.result))
        return (*list)->as<Dictionary>();
    const auto* dictionary = std::get_if<const Dictionary*>(call.result);
    return dictionary ? *dictionary : nullptr;
}

} // namespace

Story::Story(const Scenario& scenario, std::ostream& lines, bool systemLog) :
    night(scenario),
    zone(scenario.timezone),
    out(lines),
    withLog(systemLog),
    lastReading(scenario.start.secondsSince1970),
    wakeUps(scenario) {
    for (const auto& application : scenario.applications)
        applications.push_back(application.identifier);
}

void Story::tell(Date at, const std::string& line) {
    if (onLine)
        onLine(at, line);
    const std::string day = dayText(zone, at);
    if (day != lastDay) {
        out << (lastDay.empty() ? "" : "\n") << heading << day << plain << "\n\n";
        lastDay = day;
        lastTime.clear();
    }
    // Consecutive lines with the same time show it once.
    const std::string time = timeText(zone, at);
    out << (time == lastTime ? std::string(time.size(), ' ') : time) << "  " << printable(line)
        << '\n';
    lastTime = time;
}

void Story::tellOfRecording(const std::string& name, Date from,
                            const std::vector<std::string>& remarks) {
    recordingBegins = from;
    out << "From " << timeText(zone, from) << " on the accelerometer follows " << printable(name)
        << ":\n";
    for (const auto& remark : remarks)
        out << "  " << printable(remark) << '\n';
    out << '\n';
}

void Story::tellOfInertness() {
    tell(night.start,
         fmt::format("The library is loaded into {} and does nothing there.", night.phone.bundle));
}

void Story::tellLog(Date at, const std::string& logged) {
    std::istringstream lines(logged);
    for (std::string line; std::getline(lines, line);)
        tell(at, "| " + line);
}

void Story::happens(const Happening& happening) {
    if (const auto* message = std::get_if<PowerMessage>(&happening.event)) {
        followPowerMessage(happening.at, message->type);
        return;
    }
    // From the beginning of the recording on, postures of the scenario have no effect.
    if (std::holds_alternative<PostureChange>(happening.event) && recordingBegins &&
        elapsed.at(happening.at) >= recordingBegins->secondsSince1970)
        return;
    finishNaps();
    tell(happening.at, eventInWords(happening.event));
    elapsed.happens(happening);
    if (const auto* change = std::get_if<ClockChange>(&happening.event))
        tell(change->to, "That is the time now; a wait that is under way ends by the new time.");
}

void Story::called(const Call& call) {
    wakeUps.called(call);
    switch (call.operation) {
    case Operation::NSLog:
        if (withLog)
            tellLog(call.at, std::string(text(call)));
        break;
    case Operation::NSThreadStart:
        tell(call.at, "SpringBoard has launched; the monitor starts.");
        break;
    case Operation::IOCancelPowerChange:
        if (!askedToSleep)
            break;
        finishNaps();
        if (!toldOfRefusal)
            tell(call.at,
                 "The phone asks for idle sleep: refused, also when it asks again, while a "
                 "countdown counts as under way.");
        toldOfRefusal = true;
        askedToSleep = false;
        break;
    case Operation::initWithContentsOfFile:
        // In a load the first call counts. The monitor reads the file again to fill in keys.
        if (const auto* read = dictionaryRead(call);
            read && !file && text(call) == settingsFilePath)
            file = *read;
        break;
    case Operation::AudioServicesCreateSystemSoundID:
    case Operation::AudioServicesPlaySystemSound:
        followSound(call);
        break;
    case Operation::sleep:
        if (!deeds.empty() && !switching) {
            tell(call.at, fmt::format("It {}.", fmt::join(deeds, ", ")));
            deeds.clear();
        }
        tellPause(call.at);
        break;
    default:
        followSwitch(call);
        break;
    }
}

/// What a decision adds to the story. One overload for each kind of decision. A missing overload is
/// a compile error.
struct Story::Telling {
    void operator()(const SettingsFileMade& made) const { story.fileMade = made; }

    void operator()(const SettingsFileUnreadable&) const { story.fileWasUnreadable = true; }

    void operator()(const SettingFilledIn& setting) const {
        story.filledIn.push_back(setting.key);
        story.fillingInFailed = story.fillingInFailed || !setting.written;
    }

    void operator()(const SettingsLoaded& loaded) const {
        story.settings = loaded.settings;
        story.tellSettings(at);
    }

    void operator()(const MonitoringBegins&) const {}

    void operator()(const AirplaneModeCompared& compared) const {
        if (compared.changedByHand != story.suspended) {
            story.finishNaps();
            story.tell(at, compared.changedByHand
                               ? "Airplane mode was changed by hand: monitoring is suspended."
                               : "Airplane mode is as the monitor left it: monitoring resumes.");
        }
        if (compared.changedByHand || story.suspended)
            story.lastReading = story.elapsed.at(at);
        story.suspended = compared.changedByHand;
    }

    void operator()(const NoReading& skipped) const { story.noReading = skipped.reason; }

    void operator()(const Reading& taken) const {
        story.reading = taken;
        story.lastReading = story.elapsed.at(at);
        story.noReading.reset();
        if (story.pause) {
            story.finishNaps();
            story.tell(at, "Readings are taken again.");
            story.pause.reset();
        }
    }

    void operator()(const ReadingCounted& counted) const { story.tellReading(at, counted); }

    void operator()(const StateChanged& changed) const {
        story.tellSwitch(at, changed.inSleepState);
    }

    Story& story;
    Date at;
};

void Story::decided(Date at, const Decision& decision) {
    std::visit(Telling{*this, at}, decision);
}

void Story::tellSettings(Date at) {
    const auto keys = fmt::format("{}", fmt::join(filledIn, ", "));
    if (fileMade)
        tell(at, fileMade->written ? "There is no settings file: one with the defaults is written."
                                   : "There is no settings file, and none can be written.");
    else if (fileWasUnreadable)
        tell(at, "The settings file cannot be read: it is left as it is, and the settings stay.");
    else if (fillingInFailed)
        tell(at,
             fmt::format("The settings lack {}, which cannot be filled in: a write fails.", keys));
    else if (!filledIn.empty())
        tell(at, fmt::format("The settings lack {}: filled in, to count from the next change on.",
                             keys));
    tell(at, settingsInWords(settings, file));
    for (const auto& oddity : oddSettingsInWords(settings, file, applications))
        tell(at, oddity);
    file.reset();
    fileMade.reset();
    filledIn.clear();
    fileWasUnreadable = fillingInFailed = false;
}

void Story::tellReading(Date at, const ReadingCounted& counted) {
    const int before = std::exchange(inARow, counted.inARow);
    if (inARow == 0 && before == 0)
        return;
    finishNaps();
    if (inARow > 0)
        tell(at, fmt::format("Reading {} of 3: {}.", inARow, readingInWords(*reading)));
    else if (counted.inSleepState)
        tell(at, fmt::format("A reading: lying screen {} again. It stays quiet.",
                             reading->screenDown ? "down" : "up"));
    else
        tell(at, "A reading: not lying any more. The countdown is dropped.");
}

void Story::followSound(const Call& call) {
    if (call.operation == Operation::AudioServicesCreateSystemSoundID) {
        if (text(call).find("airplanemode") != std::string_view::npos)
            airplaneModeSound = std::get<std::int64_t>(*call.result);
        return;
    }
    const auto sound = std::get<std::int64_t>(call.arguments[0]);
    deeds.push_back(sound == vibrationSound      ? "vibrates"
                    : sound == 0                 ? "has no sound to play"
                    : sound == airplaneModeSound ? "plays the warning sound"
                                                 : "plays the return sound");
}

void Story::followSwitch(const Call& call) {
    if (call.operation == Operation::performSelectorOnMainThread)
        switching = switching || text(call) == "setStateAirplaneMode";
    if (!switching)
        return;
    switch (call.operation) {
    case Operation::inCall:
    case Operation::outgoingCallExists:
    case Operation::incomingCallExists:
    case Operation::activeCallExists:
        if (std::get<bool>(*call.result))
            deeds.push_back(fmt::format("leaves {} as it is, because of a call",
                                        settings.edgeSwitch ? "cellular data" : "the data rate"));
        break;
    default:
        if (auto deed = deedInWords(call); !deed.empty())
            deeds.push_back(std::move(deed));
        break;
    }
}

void Story::tellSwitch(Date at, bool inSleepState) {
    if (deeds.empty())
        deeds.push_back("finds nothing to switch");
    tell(at, fmt::format("It {}.", fmt::join(deeds, ", ")));
    tell(at, inSleepState ? "The phone is quiet." : "The phone is back.");
    deeds.clear();
    switching = false;
    inARow = 0;
}

/// A pause is a whole cycle without a reading. It is told when the time of a cycle has passed.
void Story::tellPause(Date at) {
    const double cycle = std::max(1, settings.sleepTime) + 1;
    if (suspended || !noReading || noReading == pause || elapsed.at(at) - lastReading <= cycle)
        return;
    pause = noReading;
    finishNaps();
    switch (*pause) {
    case NoReading::Reason::monitoringIsOff:
        tell(at, "No readings: monitoring is off.");
        break;
    case NoReading::Reason::notOnCharger:
        tell(at, "No readings: the phone is not on the charger.");
        break;
    case NoReading::Reason::outsideWindow:
        tell(at, fmt::format("No readings: it is not between {}:00 and {}:00.", settings.startTime,
                             settings.stopTime));
        break;
    }
}

void Story::followPowerMessage(Date at, std::uint32_t type) {
    askedToSleep = type == kIOMessageCanSystemSleep;
    if (type == kIOMessageSystemWillSleep) {
        wakeUps.takeDue(at);
        toldOfRefusal = false;
        naps.push_back({at, at, false});
        napping = true;
    } else if (type == kIOMessageSystemHasPoweredOn && napping) {
        const bool byWakeUp = !wakeUps.takeDue(at).empty();
        if (naps.empty()) {
            tell(at,
                 byWakeUp ? "The scheduled wake-up ends the idle sleep." : "The idle sleep ends.");
        } else {
            naps.back().ended = at;
            naps.back().byWakeUp = byWakeUp;
        }
        napping = false;
        lastReading = elapsed.at(at);
    }
}

void Story::finishNaps() {
    if (naps.empty())
        return;
    std::size_t byWakeUp = 0;
    for (const auto& nap : naps)
        byWakeUp += nap.byWakeUp;
    std::string line = naps.size() == 1
                           ? std::string("The phone goes into idle sleep")
                           : fmt::format("The phone goes into idle sleep {} times", naps.size());
    if (!napping)
        line += fmt::format(", until {}", timeText(zone, naps.back().ended));
    if (byWakeUp == 1)
        line += ", woken once by a scheduled wake-up";
    else if (byWakeUp > 1)
        line += fmt::format(", woken {} times by a scheduled wake-up", byWakeUp);
    tell(naps.front().began, line + ".");
    naps.clear();
}

void Story::finish() {
    finishNaps();
}

} // namespace noctara
