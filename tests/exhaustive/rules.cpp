#include "tests/exhaustive/rules.h"

#include <array>

namespace noctara::exhaustive {

namespace {

using Reason = NoReading::Reason;

/// 1. A change of airplane mode by hand suspends monitoring, and its end resumes it. The rows are
/// tried in order, and each one whose question is answered with yes takes effect. Monitoring that
/// resumes does so after the cycle.
struct ByHandRow {
    bool (*asks)(const Rules&);   ///< Whether the monitor asks for airplane mode.
    bool (*answer)(const Rules&); ///< The answer that takes effect.
    bool suspended;
};

constexpr std::array byHandRows{
    // Airplane mode is not as the monitor left it.
    ByHandRow{[](const Rules& r) { return r.now.enabled && r.now.detectManual; },
              [](const Rules& r) { return r.airplaneModeSeen() != r.self.quiet; }, true},
    // Airplane mode is off again.
    ByHandRow{[](const Rules& r) {
                  return !r.now.enabled && r.self.suspendedByHand && r.now.detectManual;
              },
              [](const Rules& r) { return !r.airplaneModeSeen(); }, false},
};

/// 2. Why a cycle takes no reading. The first row that holds decides; if none does, there is a
/// reading.
struct NoReadingRow {
    Reason reason;
    bool (*holds)(const Rules&);
    bool oneSecondIfCounting; ///< Otherwise the wait is the interval.
};

constexpr std::array noReadingRows{
    NoReadingRow{Reason::monitoringIsOff, [](const Rules& r) { return !r.now.enabled; }, true},
    NoReadingRow{
        Reason::outsideWindow,
        [](const Rules& r) { return r.now.timeLimit && !r.now.insideWindow && !r.self.quiet; },
        false},
    NoReadingRow{Reason::notOnCharger,
                 [](const Rules& r) {
                     return r.now.onChargerOnly && !r.now.charger && !r.self.goesOnWithoutCharger;
                 },
                 false},
};

/// 3. What a reading does: the steps in order, and the state and the count afterwards. There is one
/// row for each state, count and reading.
enum class Step : std::uint8_t {
    none,
    warn,    ///< With sounds on: refuses idle sleep, and plays the warning sound.
    signal,  ///< With sounds on: plays the return sound.
    vibrate, ///< With vibration on.
    enter,   ///< Switches to the quiet state.
    leave,   ///< Switches back.
    settle,  ///< Allows idle sleep again.
    forget,  ///< Goes on without a charger no longer.
};

struct ReadingRow {
    bool quiet;
    int inARow;
    bool lies;
    std::array<Step, 5> steps;
    bool quietAfter;
    int inARowAfter;
};

constexpr bool awake = false, quiet = true, lies = true, other = false;
using enum Step;

constexpr std::array readingRows{
    ReadingRow{awake, 0, lies, {warn}, awake, 1},
    ReadingRow{awake, 1, lies, {}, awake, 2},
    ReadingRow{awake, 2, lies, {vibrate, enter, settle}, quiet, 0},
    ReadingRow{awake, 0, other, {}, awake, 0},
    ReadingRow{awake, 1, other, {}, awake, 0},
    ReadingRow{awake, 2, other, {}, awake, 0},

    ReadingRow{quiet, 0, other, {}, quiet, 1},
    ReadingRow{quiet, 1, other, {}, quiet, 2},
    ReadingRow{quiet, 2, other, {signal, vibrate, leave, settle, forget}, awake, 0},
    ReadingRow{quiet, 0, lies, {}, quiet, 0},
    ReadingRow{quiet, 1, lies, {}, quiet, 0},
    ReadingRow{quiet, 2, lies, {}, quiet, 0},
};

void take(Step step, Rules& r) {
    const auto act = [&](Act made) { r.acts.push_back(made); };
    switch (step) {
    case none:
        return;
    case warn:
        if (r.now.playSound) {
            r.self.refusesIdleSleep = true;
            act(Act::playsWarning);
        }
        return;
    case signal:
        if (r.now.playSound)
            act(Act::playsReturn);
        return;
    case vibrate:
        if (r.now.vibrate)
            act(Act::vibrates);
        return;
    case enter:
    case leave:
        act(step == enter ? Act::becomesQuiet : Act::comesBack);
        if (r.now.airplaneSwitch)
            r.now.airplaneMode = step == enter;
        return;
    case settle:
        r.self.refusesIdleSleep = false;
        return;
    case forget:
        r.self.goesOnWithoutCharger = false;
        return;
    }
}

/// 4. What a change of the settings turns into its opposite.
struct SettingRow {
    Change change;
    bool Situation::*setting;
};

constexpr std::array settingRows{
    SettingRow{Change::enabled, &Situation::enabled},
    SettingRow{Change::detectManual, &Situation::detectManual},
    SettingRow{Change::timeLimit, &Situation::timeLimit},
    SettingRow{Change::onChargerOnly, &Situation::onChargerOnly},
    SettingRow{Change::playSound, &Situation::playSound},
    SettingRow{Change::vibrate, &Situation::vibrate},
    SettingRow{Change::activeOnSleep, &Situation::activeOnSleep},
    SettingRow{Change::airplaneSwitch, &Situation::airplaneSwitch},
    SettingRow{Change::screenDown, &Situation::screenDown},
};

} // namespace

void Rules::start(const Situation& situation) {
    file = now = situation;
    if (now.interval < 5)
        now.interval = 5;
    self = {};
    self.quiet = self.startedInAirplaneMode = now.airplaneMode;
}

void Rules::askForAirplaneMode() {
    // A phone that did not start in airplane mode is not asked.
    if (self.startedInAirplaneMode)
        acts.push_back(Act::asksForAirplaneMode);
}

bool Rules::beginCycle() {
    acts.clear();
    report = {};
    bool resumes = false;
    for (const auto& row : byHandRows) {
        if (!row.asks(*this))
            continue;
        askForAirplaneMode();
        if (!row.answer(*this))
            continue;
        self.suspendedByHand = row.suspended;
        (row.suspended ? now.enabled : resumes) = !row.suspended;
    }
    if (now.enabled && now.timeLimit)
        acts.push_back(Act::asksForTheTimeOfDay);
    for (const auto& row : noReadingRows)
        if (row.holds(*this)) {
            report.noReading = row.reason;
            oneSecondIfCounting = row.oneSecondIfCounting;
            now.enabled |= resumes;
            return false;
        }
    acts.push_back(Act::reads);
    oneSecondIfCounting = true;
    return true;
}

void Rules::takeReading(bool reading) {
    for (const auto& row : readingRows) {
        if (row.quiet != self.quiet || row.inARow != self.inARow || row.lies != reading)
            continue;
        report.wasQuiet = self.quiet;
        report.inARow = row.lies == row.quiet ? 0 : row.inARow + 1;
        for (const Step step : row.steps)
            take(step, *this);
        self.quiet = row.quietAfter;
        self.inARow = row.inARowAfter;
        return;
    }
}

void Rules::endCycle() {
    if (now.activeOnSleep)
        acts.push_back(Act::schedulesWakeUp);
    firstWait = self.inARow != 0 && oneSecondIfCounting ? 1 : now.interval;
}

void Rules::happens(Change change) {
    switch (change) {
    case Change::charger:
        now.charger = !now.charger;
        self.goesOnWithoutCharger = !now.charger && self.quiet;
        return;
    case Change::airplaneMode:
        now.airplaneMode = !now.airplaneMode;
        return;
    case Change::window:
        now.insideWindow = !now.insideWindow;
        return;
    case Change::stop:
        self.stopped = true;
        return;
    case Change::intervalOf0:
        file.interval = 0;
        break;
    case Change::intervalOf10:
        file.interval = 10;
        break;
    default:
        for (const auto& row : settingRows)
            if (row.change == change)
                file.*row.setting = !(file.*row.setting);
    }
    // The whole file is read again. It ends a suspension, but the monitor does not know that.
    Situation read = file;
    read.insideWindow = now.insideWindow;
    read.charger = now.charger;
    read.airplaneMode = now.airplaneMode;
    now = read;
}

} // namespace noctara::exhaustive
