#include "tests/exhaustive/every_sequence.h"

#include "monitor/noctara_thread.h"
#include "tests/exhaustive/tiny_phone.h"
#include "tests/full_settings.h"

#include <algorithm>
#include <array>
#include <utility>

namespace noctara::exhaustive {

namespace {

Dictionary settingsFile(const Situation& s, Dictionary file) {
    file.set("Enabled", s.enabled);
    file.set("ScanInterval", s.interval / 5);
    file.set("TimeLimit", s.timeLimit);
    file.set("EnableOnAC", s.onChargerOnly);
    file.set("DetectManual", s.detectManual);
    file.set("PlaySound", s.playSound);
    file.set("Vibrate", s.vibrate);
    file.set("ActiveOnSleep", s.activeOnSleep);
    file.set("AirplaneSwitch", s.airplaneSwitch);
    file.set("ScreenDown", s.screenDown);
    return file;
}

/// The readings of a run. Those beyond the chosen ones are added as the monitor takes them.
class Sequence {
public:
    void restart() { taken = 0; }

    bool next() {
        if (taken == chosen.size())
            chosen.push_back(false);
        return chosen[taken++];
    }

    /// Goes on to the next sequence. False after the last.
    bool advance() {
        chosen.resize(taken);
        while (!chosen.empty() && chosen.back())
            chosen.pop_back();
        if (chosen.empty())
            return false;
        chosen.back() = true;
        return true;
    }

    std::size_t readings() const { return taken; }

    std::string inWords() const {
        std::string text;
        for (std::size_t i = 0; i < taken; ++i)
            text += chosen[i] ? " lies" : " other";
        return text;
    }

private:
    std::vector<bool> chosen;
    std::size_t taken = 0;
};

struct Difference {
    std::string text;
};

/// One run of the monitor. Throws a Difference at the first cycle that breaks the rules.
class Run final : private Watcher, private MonitorObserver {
public:
    Run(const Case& ofCase, const Dictionary& settings, Sequence& ofReadings) :
        played(ofCase), sequence(ofReadings), phone(*this) {
        const Situation& situation = played.situation;
        rules.start(situation);
        phone.settings = settings;
        phone.screenDownWanted = situation.screenDown;
        phone.insideWindow = situation.insideWindow;
        phone.onCharger = situation.charger;
        phone.airplaneMode = situation.airplaneMode;
    }

    /// Returns the number of cycles.
    int play() {
        sequence.restart();
        NoctaraThread thread(phone.platform(), this);
        monitor = &thread;
        // The lines of the first load would take longer than all cycles.
        thread._DEBUG_ = false;
        thread.run();
        demand(waiting && (cycle == played.cycles || rules.self.stopped),
               "the monitor ends without being told to");
        demand(waited == rules.wait(), "the last wait is too short");
        demand(phone.disposed == std::vector{TinyPhone::warning, TinyPhone::signal},
               "the monitor does not release its two sounds at the end");
        demand(!thread.motionManager, "the monitor keeps the motion manager at the end");
        return cycle;
    }

private:
    void does(Act act) override {
        continueCycle();
        acts.push_back(act);
    }

    void decided(const Decision& decision) override {
        if (const auto* none = std::get_if<NoReading>(&decision)) {
            continueCycle();
            report.noReading = none->reason;
        } else if (const auto* counted = std::get_if<ReadingCounted>(&decision)) {
            continueCycle();
            report.inARow = counted->inARow;
            report.wasQuiet = counted->inSleepState;
        }
    }

    void readingTakesASecond() override { happen(Moment::inTheReading); }

    bool lies() override { return reading = sequence.next(); }

    bool switchesToQuiet() override { return monitor->currentState; }

    void looksAtTheClock() override {
        if (!waiting)
            endCycle();
        if (cycle == played.cycles && waited == rules.wait())
            monitor->stop();
    }

    void pauses() override {
        if (!waiting)
            endCycle();
        ++waited;
        demand(waited <= rules.wait(), "the wait is too long");
    }

    void continueCycle() {
        if (!waiting)
            return;
        if (cycle > 0) {
            demand(waited == rules.wait(), "the wait is too short");
            demand(!monitor->eventOccurred, "eventOccurred is set after a wait");
            compareFields();
        }
        demand(cycle < played.cycles && !rules.self.stopped, "the monitor goes on after a stop");
        ++cycle;
        waiting = false;
        acts.clear();
        report = {};
        reads = rules.beginCycle();
    }

    void endCycle() {
        if (reads)
            rules.takeReading(reading);
        rules.endCycle();
        waiting = true;
        waited = 0;
        demand(acts == rules.acts, "the monitor does something else");
        demand(report == rules.report, "the monitor reports something else");
        compareFields();
        happen(Moment::inTheWait);
    }

    void compareFields() {
        const NoctaraThread& m = *monitor;
        const Knowledge& self = rules.self;
        demand(m.lastStateWasPlane == self.quiet, "lastStateWasPlane is wrong");
        demand(m.enabled == rules.now.enabled, "enabled is wrong");
        demand(m.switchingToAirplane == self.refusesIdleSleep, "switchingToAirplane is wrong");
        demand(m.continueToMonitorAfterAC == self.goesOnWithoutCharger,
               "continueToMonitorAfterAC is wrong");
        demand(phone.airplaneMode == rules.now.airplaneMode, "airplane mode is wrong");
    }

    void happen(Moment moment) {
        for (const auto& at : played.changes)
            if (at.cycle == cycle && at.moment == moment) {
                rules.happens(at.change);
                happen(at.change);
            }
    }

    void happen(Change change) {
        switch (change) {
        case Change::charger:
            phone.onCharger = !phone.onCharger;
            monitor->setACState(phone.onCharger);
            break;
        case Change::airplaneMode:
            phone.airplaneMode = !phone.airplaneMode;
            return;
        case Change::window:
            phone.insideWindow = !phone.insideWindow;
            return;
        case Change::stop:
            monitor->stop();
            return;
        default:
            phone.screenDownWanted = rules.file.screenDown;
            phone.write(settingsFile(rules.file, phone.settings));
        }
        demand(monitor->eventOccurred, "eventOccurred is not set by a change");
    }

    void demand(bool holds, const char* otherwise) const {
        if (!holds)
            throw Difference{explain(otherwise)};
    }

    std::string explain(const char* otherwise) const {
        const auto listed = [](const std::vector<Act>& list, const Report& reported) {
            std::string text;
            for (const Act act : list)
                text += inWords(act) + "; ";
            if (reported.noReading)
                return text + "reports no reading, reason " +
                       std::to_string(static_cast<int>(*reported.noReading));
            return text + "reports " + std::to_string(reported.inARow) + " in a row" +
                   (reported.wasQuiet ? " while quiet" : "");
        };
        std::string text = std::string(otherwise) + ", in cycle " + std::to_string(cycle);
        text += "\n  settings: " + inWords(played.situation);
        for (const auto& at : played.changes)
            text += "\n  change:   " + inWords(at.change) + ", in cycle " +
                    std::to_string(at.cycle) +
                    (at.moment == Moment::inTheWait ? ", in the wait" : ", in the reading");
        text += "\n  readings:" + sequence.inWords();
        text += "\n  expected: " + listed(rules.acts, rules.report);
        text += "\n  got:      " + listed(acts, report);
        text += "\n  expected: a wait of " + std::to_string(rules.wait()) + " s; " +
                inWords(rules.self) + "; " + inWords(rules.now);
        const Knowledge held{.quiet = monitor->lastStateWasPlane,
                             .inARow = report.inARow % 3,
                             .refusesIdleSleep = monitor->switchingToAirplane,
                             .goesOnWithoutCharger = monitor->continueToMonitorAfterAC,
                             .startedInAirplaneMode = monitor->defaultAirplane,
                             .stopped = !monitor->running};
        text += "\n  got:      a wait of " + std::to_string(waited) + " s so far; " +
                inWords(held) + (monitor->enabled ? "; on" : "; off") +
                (phone.airplaneMode ? ", in airplane mode" : "");
        return text;
    }

    const Case& played;
    Sequence& sequence;
    Rules rules;
    TinyPhone phone;
    NoctaraThread* monitor = nullptr;

    int cycle = 0;
    bool waiting = true;
    std::int64_t waited = 0;
    bool reads = false;
    bool reading = false;
    std::vector<Act> acts;
    Report report;
};

} // namespace

Count& Count::operator+=(const Count& other) {
    cases += other.cases;
    sequences += other.sequences;
    runs += other.runs;
    cycles += other.cycles;
    return *this;
}

std::string playEverySequence(const Case& played, Count& count) {
    const Dictionary settings = settingsFile(played.situation, fullSettings());
    Sequence sequence;
    ++count.cases;
    do {
        try {
            Run run(played, settings, sequence);
            count.cycles += static_cast<std::uint64_t>(run.play());
        } catch (const Difference& difference) {
            return difference.text;
        }
        ++count.runs;
        count.sequences += std::uint64_t{1}
                           << (static_cast<std::size_t>(played.cycles) - sequence.readings());
    } while (sequence.advance());
    return {};
}

} // namespace noctara::exhaustive
