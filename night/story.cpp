#include "night/story.h"

#include "monitor/noctara_thread.h"
#include "monitor/posture.h"
#include "night/event_words.h"
#include "night/local_clock_text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cmath>
#include <sstream>

namespace noctara {

namespace {

const char* onOff(bool on) {
    return on ? "on" : "off";
}

std::string_view text(const Call& call, std::size_t argument) {
    return std::get<std::string_view>(call.arguments[argument]);
}

bool truth(const Call& call, std::size_t argument) {
    return std::get<bool>(call.arguments[argument]);
}

bool answeredYes(const Call& call) {
    return call.result && std::get<bool>(*call.result);
}

} // namespace

Story::Story(const PhoneModel& watched, std::ostream& lines, bool systemLog) :
    phone(watched), out(lines), withLog(systemLog), lastReading(watched.clock.elapsedClock) {}

void Story::tell(Date at, const std::string& line) {
    const std::string day = dayText(phone.timeZone(), at);
    if (day != lastDay) {
        out << (lastDay.empty() ? "" : "\n") << day << "\n\n";
        lastDay = day;
        lastTime.clear();
    }
    // A time that several lines share is given once.
    const std::string time = timeText(phone.timeZone(), at);
    out << (time == lastTime ? std::string(time.size(), ' ') : time) << "  " << line << '\n';
    lastTime = time;
}

void Story::tellOfRecording(const std::string& name, Date from,
                            const std::vector<std::string>& remarks) {
    recordingBegins = from;
    out << "From " << timeText(phone.timeZone(), from) << " on the accelerometer follows " << name
        << ":\n";
    for (const auto& remark : remarks)
        out << "  " << remark << '\n';
    out << '\n';
}

void Story::tellOfInertness(const std::string& bundle) {
    tell(phone.clock.wall(),
         fmt::format("The library is loaded into {} and does nothing there.", bundle));
}

void Story::tellLog(Date at, const std::string& logged) {
    std::istringstream lines(logged);
    for (std::string line; std::getline(lines, line);)
        tell(at, "| " + line);
}

void Story::happens(const Happening& happening) {
    finishSettings();
    if (happening.action == "power_message") {
        followPowerMessage(happening);
        return;
    }
    // Once a recording moves the phone, a posture of the scenario's changes nothing.
    if (happening.action == "posture" && recordingBegins &&
        phone.clock.elapsedClock >= recordingBegins->secondsSince1970)
        return;
    finishNaps();
    tell(happening.at, happeningInWords(happening));
    if (happening.action == "clock")
        tell(*happening.value.as<Date>(),
             "That is the time now; a wait that is under way ends by the new time.");
}

void Story::called(const Call& call) {
    const auto operation = call.operation;
    if (operation == "NSLog") {
        if (withLog)
            tellLog(call.at, std::string(text(call, 0)));
        return;
    }
    if (operation == "NSThread start")
        tell(call.at, "SpringBoard has launched; the monitor starts.");
    else if (operation == "AudioServicesPlaySystemSound") {
        const SoundID sound = phone.monitor()->currentSoundId;
        deeds.push_back(sound == vibrationSound ? "vibrates"
                        : sound == 0            ? "has no sound to play"
                        : sound == phone.monitor()->airplaneModeMP3
                            ? "plays the airplane-mode sound"
                            : "plays the off sound");
    } else if (operation == "IOCancelPowerChange" && askedToSleep) {
        finishNaps();
        if (!toldOfRefusal)
            tell(call.at, "The phone asks to sleep: refused, also when it asks again, while a "
                          "countdown counts as under way.");
        toldOfRefusal = true;
        askedToSleep = false;
    }
    followSettings(call);
    followReading(call);
    followSwitch(call);
    if (call.onMainThread)
        return;
    followManualChange(call);
    if (operation == "sleep")
        followPauses(call.at);
}

void Story::followSettings(const Call& call) {
    const auto operation = call.operation;
    const bool onFile = !call.arguments.empty() &&
                        std::holds_alternative<std::string_view>(call.arguments[0]) &&
                        text(call, 0) == settingsFilePath;
    if (!onFile) {
        if (operation != "fileExistsAtPath:")
            finishSettings();
        return;
    }
    if (!reloadBegan)
        reloadBegan = call.at;
    if (operation == "fileExistsAtPath:") {
        fileWasMissing = fileWasMissing || !answeredYes(call);
    } else if (operation == "initWithContentsOfFile:") {
        fileWasUnreadable = std::holds_alternative<std::monostate>(*call.result);
    } else if (operation == "writeToFile:atomically:") {
        writeFailed = writeFailed || !answeredYes(call);
        const auto& written = *std::get<const Dictionary*>(call.arguments[1]);
        const DictionaryEntry* last = nullptr;
        for (const auto& entry : written)
            last = &entry;
        // A key that is filled in goes to the end; a file made anew ends with "Stop".
        if (last && last->key != "Stop")
            filledIn.push_back(last->key);
    }
}

void Story::finishSettings() {
    if (!reloadBegan)
        return;
    const Date at = *reloadBegan;
    reloadBegan.reset();
    if (fileWasMissing)
        tell(at, writeFailed ? "There is no settings file, and none can be written."
                             : "There is no settings file: one with the defaults is written.");
    else if (fileWasUnreadable)
        tell(at, "The settings file cannot be read: it is left as it is, and the settings stay.");
    else if (writeFailed)
        tell(at, fmt::format("The settings lack {}, which cannot be filled in: a write fails.",
                             fmt::join(filledIn, ", ")));
    else if (!filledIn.empty())
        tell(at, fmt::format("The settings lack {}: filled in, to count from the next change on.",
                             fmt::join(filledIn, ", ")));
    tell(at, settingsInWords());
    filledIn.clear();
    fileWasMissing = fileWasUnreadable = writeFailed = false;
}

std::string Story::settingsInWords() const {
    const NoctaraThread& monitor = *phone.monitor();
    if (!monitor.enabled)
        return "Settings: monitoring is off.";
    std::vector<std::string> parts{fmt::format("a reading every {} s", monitor.sleepTime + 0),
                                   fmt::format("lying screen {} (sensitivity {})",
                                               monitor.screenDown ? "down" : "up",
                                               monitor.sensitivity + 0)};
    if (monitor.timeLimit)
        parts.push_back(
            fmt::format("from {}:00 to {}:00", monitor.startTime + 0, monitor.stopTime + 0));
    if (monitor.enabledOnChargeOnly)
        parts.push_back("on the charger only");

    std::vector<std::string> off;
    if (monitor.airplaneSwitch) {
        off.push_back("airplane mode");
    } else {
        if (monitor.phoneSwitch)
            off.push_back("phone off");
        if (monitor.wifiSwitch)
            off.push_back("Wi-Fi off");
        if (monitor.bluetoothSwitch)
            off.push_back("Bluetooth off");
        if (monitor.edgeSwitch)
            off.push_back("cellular data off");
        if (monitor._3GSwitch)
            off.push_back("3G off");
        if (monitor.locationSwitch)
            off.push_back("location off");
        if (off.empty())
            off.push_back("no radio touched");
    }
    parts.push_back("asleep: " + fmt::format("{}", fmt::join(off, ", ")));
    return fmt::format("Settings: {}.", fmt::join(parts, "; "));
}

void Story::followReading(const Call& call) {
    const auto operation = call.operation;
    if (operation == "deviceMotion") {
        sampleIsDeviceMotion = std::holds_alternative<Acceleration>(*call.result);
        sample.reset();
    } else if (operation == "accelerometerData") {
        if (const auto* measured = std::get_if<Acceleration>(call.result))
            sample = *measured;
    } else if (operation == "stopAccelerometerUpdates") {
        concludeReading(call.at);
    }
}

void Story::concludeReading(Date at) {
    const NoctaraThread& monitor = *phone.monitor();
    lastReading = phone.clock.elapsedClock;
    if (pause != Pause::none) {
        finishNaps();
        tell(at, "Readings are taken again.");
        pause = Pause::none;
    }

    double length = 0;
    const Acceleration measured = sample.value_or(Acceleration{});
    const double angle = computeTiltAngle(&length, measured.x, measured.y, measured.z);
    const bool lies =
        !sampleIsDeviceMotion &&
        liesInPosture(angle, length, postureTolerance(monitor.sensitivity), monitor.screenDown);
    const char* posture = monitor.screenDown ? "screen down" : "screen up";
    if (lies == monitor.lastStateWasPlane) {
        if (agreeing > 0) {
            finishNaps();
            tell(at, lies ? fmt::format("A reading: lying {} again. It goes on sleeping.", posture)
                          : "A reading: not lying any more. The countdown is dropped.");
        }
        agreeing = 0;
        return;
    }

    ++agreeing;
    finishNaps();
    std::string found;
    if (lies) {
        const double tilt = monitor.screenDown ? angle : std::abs(pi - angle);
        found = fmt::format("lying {}, {:.1f}° off", posture, tilt * degreesPerRadian);
    } else if (sampleIsDeviceMotion) {
        found = "device motion is delivered, which never counts as lying";
    } else if (!sample) {
        found = "the accelerometer delivered nothing";
    } else {
        const double tilt = monitor.screenDown ? angle : std::abs(pi - angle);
        found = fmt::format("not lying {} ({:.1f}° off, {:.2f} g)", posture,
                            tilt * degreesPerRadian, length);
    }
    tell(at, fmt::format("Reading {} of 3: {}.", agreeing, found));
}

void Story::followSwitch(const Call& call) {
    const auto operation = call.operation;
    if (operation == "performSelectorOnMainThread:withObject:waitUntilDone:")
        switching = switching || text(call, 0) == "setStateAirplaneMode";
    else if (operation == "sleep" && !deeds.empty() && !switching) {
        tell(call.at, fmt::format("It {}.", fmt::join(deeds, ", ")));
        deeds.clear();
    }
    if (!switching)
        return;

    if (operation == "setIsInAirplaneMode:")
        deeds.push_back(fmt::format("switches airplane mode {}", onOff(truth(call, 0))));
    else if (operation == "setWiFiEnabled:")
        deeds.push_back(fmt::format("switches Wi-Fi {}", onOff(truth(call, 0))));
    else if (operation == "setPowered:" || operation == "setEnabled:")
        deeds.push_back(fmt::format("switches Bluetooth {}", onOff(truth(call, 0))));
    else if (operation == "connected" && answeredYes(call))
        deeds.push_back("leaves Bluetooth on, as a device is connected");
    else if (operation == "CTCellularDataPlanSetIsEnabled")
        deeds.push_back(fmt::format("switches cellular data {}", onOff(truth(call, 0))));
    else if (operation == "CTRegistrationSetMaxAllowedDataRate")
        deeds.push_back(fmt::format("allows data rates up to {}", text(call, 0)));
    else if (operation == "setLocationServicesEnabled:")
        deeds.push_back(fmt::format("switches location services {}", onOff(truth(call, 0))));
    else if (operation == "launch" || operation == "activate")
        deeds.push_back(
            fmt::format("{} {}", operation == "launch" ? "launches" : "brings up", text(call, 0)));
    else if (operation == "leafIconForIdentifier:" && !answeredYes(call))
        deeds.push_back(fmt::format("cannot launch {}, which has no icon", text(call, 0)));
    else if (operation == "kill")
        deeds.push_back(fmt::format("quits {}", text(call, 0)));
    else if (operation == "sharedTelephonyManager" && !answeredYes(call))
        deeds.push_back("finds no telephony manager and touches no radio");
    else if ((operation == "inCall" || operation == "outgoingCallExists" ||
              operation == "incomingCallExists" || operation == "activeCallExists") &&
             answeredYes(call))
        deeds.push_back(
            fmt::format("leaves {} as it is, because of a call",
                        phone.monitor()->edgeSwitch ? "cellular data" : "the data rate"));
    else if (operation == "notify_post" && !call.onMainThread)
        finishSwitch(call.at);
}

void Story::finishSwitch(Date at) {
    if (deeds.empty())
        deeds.push_back("finds nothing to switch");
    tell(at, fmt::format("It {}.", fmt::join(deeds, ", ")));
    tell(at, phone.monitor()->currentState ? "The phone is in the sleep state."
                                           : "The phone is awake again.");
    deeds.clear();
    switching = false;
    agreeing = 0;
}

void Story::followManualChange(const Call& call) {
    if (call.operation != "isInAirplaneMode")
        return;
    const bool disagrees = answeredYes(call) != phone.monitor()->lastStateWasPlane;
    if (disagrees != suspended) {
        finishNaps();
        tell(call.at, disagrees ? "Airplane mode was changed by hand: monitoring is suspended."
                                : "Airplane mode is as the monitor left it: monitoring resumes.");
    }
    suspended = disagrees;
    lastReading = phone.clock.elapsedClock;
}

/// A whole cycle without a reading is a pause; the moment when it is noticed is told.
void Story::followPauses(Date at) {
    const NoctaraThread& monitor = *phone.monitor();
    const double cycle = std::max(1, monitor.sleepTime + 0) + 1;
    if (suspended || phone.clock.elapsedClock - lastReading <= cycle)
        return;
    const Pause reason = reasonForPause();
    if (reason == pause || reason == Pause::none)
        return;
    pause = reason;
    finishNaps();
    if (pause == Pause::off)
        tell(at, "No readings: monitoring is off.");
    else if (pause == Pause::charger)
        tell(at, "No readings: the phone is not on the charger.");
    else
        tell(at, fmt::format("No readings: it is not between {}:00 and {}:00.",
                             monitor.startTime + 0, monitor.stopTime + 0));
}

Story::Pause Story::reasonForPause() const {
    const NoctaraThread& monitor = *phone.monitor();
    if (!monitor.enabled)
        return Pause::off;
    const bool waitsForCharger =
        monitor.enabledOnChargeOnly && !monitor.ACState && !monitor.continueToMonitorAfterAC;
    if (waitsForCharger)
        return Pause::charger;
    return monitor.timeLimit ? Pause::window : Pause::none;
}

void Story::followPowerMessage(const Happening& happening) {
    const auto& message = *happening.value.as<Dictionary>();
    const std::size_t listed = phone.power.scheduledWakes().size();
    askedToSleep = false;
    switch (static_cast<std::uint32_t>(*message.find("type")->as<std::int64_t>())) {
    case kIOMessageCanSystemSleep:
        askedToSleep = true;
        break;
    case kIOMessageSystemWillSleep:
        toldOfRefusal = false;
        naps.push_back({happening.at, happening.at, false});
        napping = true;
        wakesListed = listed;
        break;
    case kIOMessageSystemHasPoweredOn:
        if (!napping)
            break;
        if (naps.empty()) {
            tell(happening.at, listed < wakesListed ? "The scheduled wake-up wakes the phone."
                                                    : "The phone wakes up.");
        } else {
            naps.back().ended = happening.at;
            naps.back().byWakeUp = listed < wakesListed;
        }
        napping = false;
        lastReading = phone.clock.elapsedClock;
        break;
    default:
        break;
    }
}

void Story::finishNaps() {
    if (naps.empty())
        return;
    const auto clockText = [this](Date at) { return timeText(phone.timeZone(), at); };
    std::size_t wakeUps = 0;
    for (const auto& nap : naps)
        wakeUps += nap.byWakeUp;
    std::string line = naps.size() == 1 ? std::string("The phone falls asleep")
                                        : fmt::format("The phone sleeps {} times", naps.size());
    if (!napping)
        line += fmt::format(", until {}", clockText(naps.back().ended));
    if (wakeUps == 1)
        line += ", woken once by a scheduled wake-up";
    else if (wakeUps > 1)
        line += fmt::format(", woken {} times by a scheduled wake-up", wakeUps);
    tell(naps.front().began, line + ".");
    naps.clear();
}

void Story::finish() {
    finishSettings();
    finishNaps();
}

} // namespace noctara
