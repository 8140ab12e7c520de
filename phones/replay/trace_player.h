/// Runs the monitor along the lines of a trace. The trace determines which of the two threads runs.
/// The monitor must make the call that the trace has next.
#pragma once

#include "night/trace_reader.h"
#include "phones/simulated/handed_over_thread.h"

#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

/// The monitor makes another call than the trace has, or none. The text names the line.
class TraceAndRulesPart : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class TracePlayer {
public:
    /// `nightEnds`, on the monotonic clock, is the end of the night, because a trace has no line
    /// for it. The reader must outlive the player.
    TracePlayer(TraceReader& lines, Date nightBegins, Date nightEnds) :
        reader(lines), present(nightBegins), end(nightEnds) {}

    /// Told of each log line that `takeLogLineLater` has put off, when it is taken.
    std::function<void(const TraceLine&)> tookLogLine;

    TracePlayer(const TracePlayer&) = delete;
    TracePlayer& operator=(const TracePlayer&) = delete;

    /// Plays to the end of the trace. Calls `happens` for each event. If the night ended early,
    /// returns the reason from the trace. Throws TraceAndRulesPart, and BadInput for a line that is
    /// not a line of a trace.
    std::optional<std::string> play(const std::function<void(Date, const Event&)>& happens);

    /// The first call of a piece of work: one of these operations, or a log line that begins with
    /// this text. The work does not start before the trace has that call, because it could take a
    /// lock that other work needs first.
    struct Beginning {
        std::vector<Operation> operations;
        std::optional<std::string_view> logLine = std::nullopt;
    };

    /// Queues `work` for the main thread.
    void onMainThread(Beginning beginning, std::function<void()> work) {
        addMainWork(std::move(beginning), std::move(work));
    }

    /// Runs `work` on the main thread up to its first call.
    void startOnMainThread(Beginning beginning, std::function<void()> work);

    // The functions below are called by work on either thread.

    /// Waits until the next line is this call on the calling thread, and takes the line.
    TraceLine take(Operation operation, std::span<const CallValue> arguments);

    /// Whether the next line is this operation of the calling thread.
    bool isNext(Operation operation);
    /// The text of the next line, if that is a log line of the calling thread.
    std::optional<std::string> nextLogLine();

    /// Takes a log line as `take` does, but when the calling thread makes its next call. For log
    /// lines that are written under a lock: a thread that waits here would hold it.
    void takeLogLineLater(std::string text) { current->logLines.push_back(std::move(text)); }

    /// Waits until the next line is a call of the calling thread. Everything before it in the trace
    /// is then done.
    void waitForTurn();

    /// Runs `work` on the main thread and waits until it is done.
    void performOnMainThread(Beginning beginning, std::function<void()> work);

    void startMonitor(std::function<void()> body);

    /// The trace is of a night in real time, in which a setting may change at any moment, also
    /// between two calls. Log lines that come or go with the setting "Debug" are passed over then.
    void playInRealTime() { inRealTime = true; }
    bool isInRealTime() const { return inRealTime; }

    /// The present of the calling thread: what it has put off is taken first.
    Date now();
    bool isMainThread() const { return !current || current->isMain; }

private:
    /// A piece of work. It has its own stack.
    struct Work {
        bool isMain;
        Beginning beginning;
        bool hasBegun = false;            ///< It has taken a line.
        std::deque<std::string> logLines; ///< To be taken before the next call.
        std::string wanted;               ///< The call that it waits to make.
        Work* hop = nullptr;              ///< The work on the main thread that it waits for.
        std::unique_ptr<HandedOverThread> stack;
    };

    const TracedCall* nextCallOf(const Work& work);
    bool letGoOn(const TraceLine& line);
    bool resume(Work& work);
    [[noreturn]] void refuse(const TraceLine& line) const;
    bool mayBegin(const Work& work, const TracedCall& call) const;
    void takeLogLines();
    TraceLine takeNow(Operation operation, std::span<const CallValue> arguments);
    Work& addMainWork(Beginning beginning, std::function<void()> work);

    TraceReader& reader;
    bool inRealTime = false;
    Date present;
    Date end; ///< Of the night, on the wall clock as it is set now.
    std::unique_ptr<Work> monitor;
    std::list<Work> mainWork; ///< In the order in which it runs.
    Work* current = nullptr;  ///< The work that runs. Null if the player itself runs.
};

} // namespace noctara
