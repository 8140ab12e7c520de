#include "soak/invariants.h"

#include "platform/system_power.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

namespace noctara {

namespace {

using Text = std::string_view;

bool flag(const Call& call) {
    return std::get<bool>(call.arguments[0]);
}

Text text(const Call& call, std::size_t index = 0) {
    return std::get<Text>(call.arguments[index]);
}

const char* onOff(bool on) {
    return on ? "on" : "off";
}

// The state and its changes.

class ThreeReadings final : public Invariant {
public:
    static constexpr Text rule =
        "The state changes after three readings in a row that disagree with it, and only then.";
    using Invariant::Invariant;

    void readingEnds(const Outcome& outcome) override { due = outcome.becomesQuiet.has_value(); }

    void changeBegins() override {
        check(due, "the state changes without three such readings");
        due = false;
    }

    void cycleEnds() override {
        check(!due, "the state does not change after three such readings");
        due = false;
    }

private:
    bool due = false;
};

class ReadingInEachCycle final : public Invariant {
public:
    static constexpr Text rule =
        "A cycle takes one reading, unless monitoring is off, the window is closed or the charger "
        "is missing. A quiet phone can always come back.";
    using Invariant::Invariant;

    void cycleBegins(bool takesReading) override {
        const Onlooker& known = night.onlooker;
        const bool open = known.quiet || !known.settings.TimeLimit ||
                          known.windowIsOpen(night.phone.clock.wall(), night.phone.timeZone());
        const bool allowed = known.isOn() && open && known.chargerAllows();
        check(takesReading == allowed,
              "the cycle {} a reading; monitoring is {}, the window is {}, and the charger {} it",
              takesReading ? "takes" : "does not take", onOff(known.isOn()),
              open ? "open" : "closed", known.chargerAllows() ? "allows" : "forbids");
    }
};

class Pace final : public Invariant {
public:
    static constexpr Text rule = "Between two cycles the monitor waits the scan interval, twice "
                                 "that while it is off, and one second in a countdown.";
    using Invariant::Invariant;

    void cycleBegins(bool takesReading) override {
        if (isKnown)
            check(night.secondsWaited == wanted, "the monitor waited {} s, not {} s",
                  night.secondsWaited, wanted);
        countdownCounts = takesReading || !night.onlooker.isOn();
    }

    void cycleEnds() override {
        const Onlooker& known = night.onlooker;
        const bool countsDown = known.inARow > 0 && countdownCounts;
        wanted = countsDown ? 1 : known.settings.ScanInterval;
        if (!known.isOn())
            wanted += known.settings.ScanInterval;
        isKnown = true;
    }

    void called(const Call& call) override {
        if (call.operation == Operation::initWithContentsOfFile)
            isKnown = false; // The settings change during the wait.
    }

    void happens(const Event& event) override {
        // The wait is measured by the wall clock, which goes on while the phone is asleep.
        if (std::holds_alternative<ClockChange>(event) ||
            std::holds_alternative<PowerMessage>(event))
            isKnown = false;
    }

private:
    std::int64_t wanted = 0;
    bool countdownCounts = false;
    bool isKnown = false;
};

class MonitorGoesOn final : public Invariant {
public:
    static constexpr Text rule = "The monitor goes on until it is told to stop.";
    using Invariant::Invariant;

    void called(const Call& call) override {
        if (call.operation == Operation::AudioServicesDisposeSystemSoundID)
            check(wasTold, "the monitor ends by itself");
    }

    void happens(const Event& event) override {
        wasTold = wasTold || std::holds_alternative<MonitorStop>(event);
    }

    void loopBegins() override { hasBegun = true; }

    void nightEnds() override {
        check(hasBegun || night.scenario.phone.bundle != springBoardBundle,
              "the monitor does not begin");
    }

private:
    bool wasTold = false;
    bool hasBegun = false;
};

class Cues final : public Invariant {
public:
    static constexpr Text rule =
        "Sounds and vibrations come when the settings ask for them, in their order, before the "
        "radios are switched, and at no other time.";
    using Invariant::Invariant;

    void called(const Call& call) override {
        if (call.operation == Operation::AudioServicesCreateSystemSoundID)
            sounds[text(call).ends_with("-off.mp3") ? Cue::returnSound : Cue::warningSound] =
                std::get<std::int64_t>(*call.result);
        else if (call.operation == Operation::AudioServicesPlaySystemSound)
            played.push_back(std::get<std::int64_t>(call.arguments[0]));
    }

    void cycleBegins(bool) override {
        check(played.empty(), "a sound is played between two cycles");
        wanted.clear();
    }

    void readingEnds(const Outcome& outcome) override {
        for (const Cue cue : outcome.cues)
            wanted.push_back(sounds[cue]);
    }

    void changeBegins() override { compare(); }
    void cycleEnds() override { compare(); }

private:
    void compare() {
        check(played == wanted, "the sounds [{}] are played, not [{}]", fmt::join(played, ", "),
              fmt::join(wanted, ", "));
        played.clear();
        wanted.clear();
    }

    std::map<Cue, std::int64_t> sounds{{Cue::vibration, 4095}};
    std::vector<std::int64_t> played;
    std::vector<std::int64_t> wanted;
};

// Radios and applications.

class GoesQuiet final : public Invariant {
public:
    static constexpr Text rule = "Going quiet switches off the chosen radios and no others.";
    using Invariant::Invariant;

    void changeBegins() override { before = night.phone.radios.states(); }

    void changeEnds() override {
        const RadioStates now = night.phone.radios.states();
        if (!night.phone.radios.hasTelephonyManager) {
            check(now == before, "a radio is switched on a phone without a telephony manager");
            return;
        }
        if (!night.onlooker.quiet)
            return;
        const auto& chosen = night.onlooker.settings;
        const bool single = !chosen.AirplaneSwitch;
        const bool phone = single && chosen.PhoneSwitch;
        const bool cellular = single && !phone;
        const bool inCall = night.phone.radios.call != CallState::none;

        expect("airplane mode", now.airplane, before.airplane || !single || phone);
        expect("location services", now.location,
               before.location && !(single && chosen.LocationSwitch));
        if (single) {
            expect("Wi-Fi", now.wifi, before.wifi && !chosen.WifiSwitch);
            // A connection keeps Bluetooth on, unless airplane mode has ended it.
            const bool keeps = before.bluetoothConnected && (!phone || before.airplane);
            expect("Bluetooth", now.bluetooth, before.bluetooth && !(chosen.BTSwitch && !keeps));
        }
        expect("cellular data", now.cellularData,
               before.cellularData && (!(cellular && chosen.EdgeSwitch) || inCall));
        if (!(cellular && chosen._3GSwitch && !chosen.EdgeSwitch) || inCall)
            check(now.maxRate == before.maxRate, "the data rate is changed");
        else
            check(now.maxRate == before.maxRate || now.maxRate == slowest,
                  "the data rate is changed, but not to 2G");
    }

private:
    static constexpr DataRate slowest = DataRate::kCTRegistrationDataRate2G;

    void expect(const char* radio, bool is, bool wanted) {
        check(is == wanted, "{} is {} in the quiet state", radio, onOff(is));
    }

    RadioStates before{};
};

class ComesBack final : public Invariant {
public:
    static constexpr Text rule =
        "After coming back every radio is as it was before the phone went quiet.";

    ComesBack(WatchedNight& watched, Text text) : Invariant(watched, text) {
        excuses = {
            {"It was switched by hand while the phone was quiet."},
            {"The settings that choose the radios were changed while the phone was quiet."},
            {"Airplane mode was on before; coming back ends it, and Wi-Fi and Bluetooth return."},
            {"With EdgeSwitch, cellular data gets the state that was stored last: of the start, or "
             "of the last night with 3GSwitch."},
            {"Cellular data and the data rate are not switched during a call."},
        };
    }

    void loopBegins() override { storedData = night.phone.radios.states().cellularData; }

    void happens(const Event& event) override {
        const bool airplane = std::holds_alternative<AirplaneModeSwitch>(event);
        byHand.airplane |= airplane;
        byHand.wifi |= airplane || std::holds_alternative<WifiSwitch>(event);
        byHand.bluetooth |= airplane || std::holds_alternative<BluetoothSwitch>(event);
        byHand.cellularData |= std::holds_alternative<CellularDataSwitch>(event);
        byHand.maxRate |= std::holds_alternative<MaxRateChange>(event);
        byHand.location |= std::holds_alternative<LocationSwitch>(event);
    }

    void changeBegins() override {
        if (night.onlooker.quiet)
            return;
        before = night.phone.radios.states();
        byHand = {};
        switches = switchesNow();
        const auto& chosen = night.onlooker.settings;
        if (night.phone.radios.hasTelephonyManager && !chosen.AirplaneSwitch &&
            !chosen.PhoneSwitch && !chosen.EdgeSwitch && chosen._3GSwitch)
            storedData = before->cellularData;
    }

    void changeEnds() override {
        if (night.onlooker.quiet || !before)
            return;
        const RadioStates now = night.phone.radios.states();
        compare("airplane mode", before->airplane, now.airplane, byHand.airplane, Radio::airplane);
        compare("Wi-Fi", before->wifi, now.wifi, byHand.wifi, Radio::airplane);
        compare("Bluetooth", before->bluetooth, now.bluetooth, byHand.bluetooth, Radio::airplane);
        compare("cellular data", before->cellularData, now.cellularData, byHand.cellularData,
                Radio::data);
        compare("the data rate", before->maxRate, now.maxRate, byHand.maxRate, Radio::rate);
        compare("location services", before->location, now.location, byHand.location,
                Radio::location);
        before.reset();
    }

private:
    enum class Radio { airplane, data, rate, location };
    enum Reason { switchedByHand, settingsChanged, airplaneBefore, dataOfStart, call };

    struct ByHand {
        bool airplane, wifi, bluetooth, cellularData, maxRate, location;
    };

    template <typename State>
    void compare(const char* name, State was, State is, bool switchedHere, Radio radio) {
        const auto reason = was == is ? std::nullopt : reasonFor(switchedHere, radio);
        if (reason)
            ++excuses[*reason].times;
        check(was == is || reason, "{} is not as it was before", name);
    }

    std::optional<Reason> reasonFor(bool switchedHere, Radio radio) const {
        const auto& chosen = night.onlooker.settings;
        const RadioStates now = night.phone.radios.states();
        if (switchedHere)
            return switchedByHand;
        if (switches != switchesNow())
            return settingsChanged;
        if (radio == Radio::airplane && before->airplane && !now.airplane &&
            (chosen.AirplaneSwitch || chosen.PhoneSwitch))
            return airplaneBefore;
        if (radio == Radio::data && chosen.EdgeSwitch && now.cellularData == storedData)
            return dataOfStart;
        if ((radio == Radio::data || radio == Radio::rate) &&
            night.phone.radios.call != CallState::none)
            return call;
        return std::nullopt;
    }

    std::array<bool, 7> switchesNow() const {
        const auto& chosen = night.onlooker.settings;
        return {chosen.AirplaneSwitch, chosen.PhoneSwitch, chosen.WifiSwitch,    chosen.BTSwitch,
                chosen.EdgeSwitch,     chosen._3GSwitch,   chosen.LocationSwitch};
    }

    std::optional<RadioStates> before;
    ByHand byHand{};
    std::array<bool, 7> switches{};
    bool storedData = false;
};

class ChangesAreAnnounced final : public Invariant {
public:
    static constexpr Text rule = "A radio is switched only if that changes it and only when the "
                                 "state changes, and each switch is announced once.";
    using Invariant::Invariant;

    void called(const Call& call) override {
        const auto before = [&] { return night.phone.radios.states(); };
        switch (call.operation) {
        case Operation::setWiFiEnabled:
            switches(before().wifi != flag(call), refresh);
            break;
        case Operation::setPowered:
            switches(flag(call) && !before().bluetooth, refresh);
            break;
        case Operation::setEnabled:
            switches(!flag(call) && before().bluetooth, refresh);
            break;
        case Operation::CTCellularDataPlanSetIsEnabled:
            switches(before().cellularData != flag(call), refresh);
            ++unannounced[dataChanged];
            break;
        case Operation::setLocationServicesEnabled:
            switches(before().location != flag(call), locationChanged);
            break;
        case Operation::CTRegistrationSetMaxAllowedDataRate:
        case Operation::updateAirplaneMode:
            check(changing, "a radio is switched although the state does not change");
            break;
        case Operation::notify_post:
        case Operation::postNotification:
            --unannounced[std::string(text(call))];
            break;
        default:
            break;
        }
    }

    void changeBegins() override {
        changing = true;
        unannounced.clear();
        ++unannounced[refresh];
        ++unannounced[allRadios];
    }

    void changeEnds() override {
        changing = false;
        for (const auto& [notification, times] : unannounced)
            check(times == 0, "{} is posted too {}", notification, times < 0 ? "often" : "rarely");
        unannounced.clear();
    }

    void cycleEnds() override { check(unannounced.empty(), "a change is announced that was none"); }

private:
    static constexpr const char* refresh = "com.sbsettings.refreshalltoggles";
    static constexpr const char* allRadios = "com.apple.radios";
    static constexpr const char* locationChanged = "com.apple.locationd/Prefs";
    static constexpr const char* dataChanged = "PSCellDataChangedNotification";

    void switches(bool changes, const char* notification) {
        check(changing, "a radio is switched although the state does not change");
        check(changes, "a radio is switched to the state that it has");
        ++unannounced[notification];
    }

    bool changing = false;
    std::map<std::string, int> unannounced;
};

class ChosenApplications final : public Invariant {
public:
    static constexpr Text rule = "The chosen applications are launched when the phone goes quiet "
                                 "and quit when it comes back, and no others are.";
    using Invariant::Invariant;

    void called(const Call& call) override {
        switch (call.operation) {
        case Operation::activate:
        case Operation::launch:
            use(text(call), true);
            break;
        case Operation::resumeToQuit:
            use(text(call), false);
            asked = text(call);
            break;
        case Operation::kill:
            check(asked == text(call), "{} is killed without being asked to quit", text(call));
            asked.clear();
            used.emplace_back(text(call));
            break;
        default:
            break;
        }
    }

    void changeBegins() override {
        changing = true;
        used.clear();
        for (const auto& application : night.scenario.applications)
            if (isChosen(application.identifier))
                due.push_back(application.identifier);
        if (!night.onlooker.quiet)
            std::erase_if(due, [&](const auto& id) { return !canBeLaunched(id); });
    }

    void changeEnds() override {
        changing = false;
        std::sort(used.begin(), used.end());
        std::sort(due.begin(), due.end());
        check(used == due, "[{}] are {}, not [{}]", fmt::join(used, ", "),
              night.onlooker.quiet ? "launched" : "quit", fmt::join(due, ", "));
        check(asked.empty(), "{} is asked to quit, but not killed", asked);
        due.clear();
    }

private:
    void use(Text identifier, bool launches) {
        check(changing, "{} is used although the state does not change", identifier);
        check(launches != night.onlooker.quiet, "{} is {}", identifier,
              launches ? "launched in the morning" : "quit for the night");
        if (launches)
            used.emplace_back(identifier);
    }

    bool isChosen(const std::string& identifier) const {
        const auto& chosen = night.onlooker.applications;
        return std::find(chosen.begin(), chosen.end(), identifier) != chosen.end();
    }

    /// An application without an icon can be brought to the front only if it runs.
    bool canBeLaunched(const std::string& identifier) const {
        const auto found = std::find_if(
            night.scenario.applications.begin(), night.scenario.applications.end(),
            [&](const auto& application) { return application.identifier == identifier; });
        return found->icon || night.phone.applications.isRunning(identifier);
    }

    bool changing = false;
    std::vector<std::string> due;
    std::vector<std::string> used;
    std::string asked;
};

// Wake-ups and idle sleep.

const std::string ownIdentifier = "com.quorbit.Noctara";

class OthersKeepTheirWakeUps final : public Invariant {
public:
    static constexpr Text rule = "Only wake-ups of the monitor are scheduled and cancelled.";
    OthersKeepTheirWakeUps(WatchedNight& watched, std::string_view text) :
        Invariant(watched, text) {
        for (const auto& wake : night.scenario.wakes)
            if (wake.scheduledBy == ownIdentifier)
                own.insert(wake.at.secondsSince1970);
    }

    void called(const Call& call) override {
        const bool cancels = call.operation == Operation::CPCancelWakeAtDateWithIdentifier;
        if (!cancels && call.operation != Operation::CPScheduleWakeAtDateWithIdentifier)
            return;
        check(text(call, 1) == ownIdentifier, "a wake-up of {} is {}", text(call, 1),
              cancels ? "cancelled" : "scheduled");
        const double at = std::get<double>(call.arguments[0]);
        if (cancels)
            check(own.contains(at), "a wake-up at the time of another program's is cancelled");
        else
            own.insert(at);
    }

private:
    std::set<double> own; ///< The times of the monitor's wake-ups, also of earlier ones.
};

class OneWakeUp final : public Invariant {
public:
    static constexpr Text rule =
        "With ActiveOnSleep, one wake-up of the monitor is in the list after each cycle, 900 "
        "seconds ahead. Without it, the list stays as it is.";
    using Invariant::Invariant;

    void called(const Call& call) override {
        edits += call.operation == Operation::CPScheduleWakeAtDateWithIdentifier ||
                 call.operation == Operation::CPCancelWakeAtDateWithIdentifier;
    }

    void cycleEnds() override {
        if (!night.onlooker.settings.ActiveOnSleep) {
            check(edits == 0, "the list of wake-ups is changed");
        } else {
            int own = 0;
            double ahead = 0;
            for (const auto& wake : night.phone.power.scheduledWakes())
                if (wake.scheduledBy == ownIdentifier) {
                    ++own;
                    ahead = wake.at.secondsSince1970 - night.phone.clock.wall().secondsSince1970;
                }
            check(own == 1 && ahead == 900, "{} wake-ups are in the list, the last {} s ahead", own,
                  ahead);
        }
        edits = 0;
    }

private:
    int edits = 0;
};

class PowerAnswers final : public Invariant {
public:
    static constexpr Text rule =
        "Each question of the system about its sleep gets one answer. Idle sleep is refused in a "
        "countdown with sounds on, until the state changes, and at no other time.";
    using Invariant::Invariant;

    void called(const Call& call) override {
        if (call.operation == Operation::CFRunLoopAddSource)
            listens = true;
        if (call.operation != Operation::IOAllowPowerChange &&
            call.operation != Operation::IOCancelPowerChange)
            return;
        check(wanted == call.operation, "{} is the answer", nameOf(call.operation));
        check(std::get<std::int64_t>(call.arguments[1]) == notification,
              "the answer is to another question");
        wanted.reset();
    }

    void happens(const Event& event) override {
        check(!wanted, "a question is not answered");
        wanted.reset();
        const auto* message = std::get_if<PowerMessage>(&event);
        if (!message || !listens)
            return;
        notification = message->notification;
        if (message->type == kIOMessageCanSystemSleep)
            wanted = night.onlooker.idleSleepIsRefused ? Operation::IOCancelPowerChange
                                                       : Operation::IOAllowPowerChange;
        else if (message->type == kIOMessageSystemWillSleep)
            wanted = Operation::IOAllowPowerChange;
    }

    void nightEnds() override { check(!wanted, "a question is not answered"); }

private:
    bool listens = false;
    std::optional<Operation> wanted;
    std::int64_t notification = 0;
};

// Threads, resources and files.

class OneThreadEach final : public Invariant {
public:
    static constexpr Text rule =
        "Radios are switched, and applications and sounds used, on the main thread alone; readings "
        "and wake-ups are the monitor thread's.";
    using Invariant::Invariant;

    void called(const Call& call) override {
        switch (call.operation) {
        case Operation::AudioServicesPlaySystemSound:
        case Operation::setIsInAirplaneMode:
        case Operation::updateAirplaneMode:
        case Operation::setWiFiEnabled:
        case Operation::setPowered:
        case Operation::setEnabled:
        case Operation::CFPreferencesSetAppValue:
        case Operation::CFPreferencesAppSynchronize:
        case Operation::setLocationServicesEnabled:
        case Operation::CTCellularDataPlanSetIsEnabled:
        case Operation::CTRegistrationSetMaxAllowedDataRate:
        case Operation::allApplications:
        case Operation::process:
        case Operation::accessibilityFrontMostApplication:
        case Operation::activate:
        case Operation::launch:
        case Operation::resumeToQuit:
        case Operation::kill:
        case Operation::leafIconForIdentifier:
        case Operation::iconForDisplayIdentifier:
            check(call.onMainThread, "{} is called on the monitor thread", nameOf(call.operation));
            break;
        case Operation::sleep:
        case Operation::startAccelerometerUpdates:
        case Operation::stopAccelerometerUpdates:
        case Operation::CPScheduleWakeAtDateWithIdentifier:
        case Operation::CPCancelWakeAtDateWithIdentifier:
            check(!call.onMainThread, "{} is called on the main thread", nameOf(call.operation));
            break;
        default:
            break;
        }
    }
};

class NothingStaysOn final : public Invariant {
public:
    static constexpr Text rule = "The accelerometer runs for one second in a reading and is off "
                                 "otherwise. No connection to the telephony server stays open.";
    using Invariant::Invariant;

    void called(const Call& call) override {
        if (call.operation == Operation::startAccelerometerUpdates) {
            check(!runs, "the accelerometer is started twice");
            runs = true;
            seconds = 0;
        } else if (call.operation == Operation::stopAccelerometerUpdates) {
            check(runs && seconds == 1, "a reading lasts {} s", seconds);
            runs = false;
        } else if (call.operation == Operation::sleep && runs) {
            seconds += std::get<std::int64_t>(call.arguments[0]);
        }
    }

    void cycleEnds() override {
        check(!runs, "the accelerometer stays on");
        check(night.phone.radios.openConnections == 0, "a connection stays open");
    }

private:
    bool runs = false;
    std::int64_t seconds = 0;
};

class SettingsFile final : public Invariant {
public:
    static constexpr Text rule =
        "The monitor writes the settings file only to add a missing key or to make a missing file. "
        "No key is lost or changed, and the file is always whole.";
    using Invariant::Invariant;

    void called(const Call& call) override {
        if (call.operation == Operation::fileExistsAtPath && text(call) == settingsFilePath) {
            isThere = std::get<bool>(*call.result);
        } else if (call.operation == Operation::initWithContentsOfFile &&
                   text(call) == settingsFilePath) {
            const auto* file = std::get_if<const Dictionary*>(call.result);
            lastRead = file ? std::optional(**file) : std::nullopt;
        } else if (call.operation == Operation::writeToFileAtomically) {
            check(text(call) == settingsFilePath, "{} is written", text(call));
            writes(*std::get<const Dictionary*>(call.arguments[1]), std::get<bool>(*call.result));
        } else if (call.operation == Operation::writeToFileInPlace) {
            check(false, "a file is written in place");
        }
    }

private:
    static constexpr std::size_t keysOfNewFile = 20;

    void writes(const Dictionary& file, bool written) {
        if (!isThere) {
            check(file.size() == keysOfNewFile, "a new file gets {} keys", file.size());
        } else {
            check(lastRead.has_value(), "a file that cannot be read is replaced");
            if (lastRead)
                check(file.size() == lastRead->size() + 1 &&
                          std::equal(lastRead->begin(), lastRead->end(), file.begin()),
                      "a write does more than add one key at the end");
        }
        const auto content = night.phone.files.content(settingsFilePath);
        const auto* now = content.value ? content.value->as<Dictionary>() : nullptr;
        if (written)
            check(now && *now == file, "the file does not have what was written");
        else if (isThere)
            check(now && lastRead && *now == *lastRead, "a failed write changes the file");
        isThere = isThere || written;
    }

    bool isThere = true;
    std::optional<Dictionary> lastRead;
};

class OtherProcesses final : public Invariant {
public:
    static constexpr Text rule = "In a process other than SpringBoard the library does nothing.";
    using Invariant::Invariant;

    void called(const Call& call) override {
        if (isInert)
            check(call.operation == Operation::bundleIdentifier, "it calls {}",
                  nameOf(call.operation));
    }

private:
    const bool isInert = night.scenario.phone.bundle != springBoardBundle;
};

template <typename... Kinds>
Invariants makeAll(WatchedNight& night) {
    Invariants all;
    (all.push_back(std::make_unique<Kinds>(night, Kinds::rule)), ...);
    return all;
}

} // namespace

Invariants makeInvariants(WatchedNight& night) {
    return makeAll<ThreeReadings, ReadingInEachCycle, Pace, MonitorGoesOn, Cues, GoesQuiet,
                   ComesBack, ChangesAreAnnounced, ChosenApplications, OthersKeepTheirWakeUps,
                   OneWakeUp, PowerAnswers, OneThreadEach, NothingStaysOn, SettingsFile,
                   OtherProcesses>(night);
}

} // namespace noctara
