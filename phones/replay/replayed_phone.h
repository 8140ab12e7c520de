/// A phone that answers from a trace. Each call of the linked-in monitor must be the next call in
/// the trace, and gets the result that the trace has. This reconstructs the decisions of a monitor
/// that ran elsewhere, and finds the first call in which a trace differs from the rules.
#pragma once

#include "phones/model/scenario.h"
#include "phones/replay/replayed_process.h"
#include "phones/replay/replayed_services.h"
#include "phones/replay/trace_player.h"

#include <functional>
#include <optional>
#include <string>

namespace noctara {

class ReplayedPhone {
public:
    /// The scenario provides what a trace does not have: the time zone, the names of applications
    /// and the CoreFoundation version. Sets the process's platform, so only one phone can exist at
    /// a time. Scenario and reader must outlive the phone.
    ReplayedPhone(const Scenario& scenario, TraceReader& lines);

    ~ReplayedPhone();
    ReplayedPhone(const ReplayedPhone&) = delete;
    ReplayedPhone& operator=(const ReplayedPhone&) = delete;

    /// Call it before `play`. The observer must live until `play` returns.
    void observe(PhoneObserver& observer) { answers.add(observer); }

    /// Plays the trace to its end. If the night ended early, returns the reason from the trace.
    /// Throws TraceAndRulesPart, and BadInput for a line that is not a line of a trace.
    std::optional<std::string> play();

    /// Whether the trace is of a night in real time. Known once it is played.
    bool isInRealTime() const { return player->isInRealTime(); }

    /// The wall clock at the present line of the trace.
    Date now() { return player->now(); }

private:
    struct Effect;

    std::optional<TracePlayer> player;
    Answers answers;
    ReplayedProcess process;
    ReplayedServices services;
    Platform platform;
};

} // namespace noctara
