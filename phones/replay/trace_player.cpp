#include "phones/replay/trace_player.h"

#include <algorithm>
#include <utility>

namespace noctara {

namespace {

Json jsonOf(std::span<const CallValue> values) {
    Json array = Json::array();
    for (const auto& value : values)
        array.push_back(noctara::jsonOf(value));
    return array;
}

/// Ignores the order of keys in dictionaries, which differs between phones.
bool areEqual(const Json& one, const Json& other) {
    return one == other || nlohmann::json(one) == nlohmann::json(other);
}

std::string described(Operation operation, const Json& arguments) {
    return std::string(nameOf(operation)) + (arguments.empty() ? "" : ' ' + arguments.dump());
}

const char* threadOf(bool isMain) {
    return isMain ? "main thread" : "monitor thread";
}

} // namespace

std::optional<std::string>
TracePlayer::play(const std::function<void(Date, const Event&)>& happens) {
    while (const TraceLine* line = reader.peek()) {
        if (const auto* last = std::get_if<TraceEnd>(&line->what)) {
            present = line->at;
            return last->why;
        }
        if (std::holds_alternative<Event>(line->what)) {
            const TraceLine taken = reader.take();
            present = taken.at;
            const auto& event = std::get<Event>(taken.what);
            happens(taken.at, event);
            if (const auto* change = std::get_if<ClockChange>(&event)) {
                end.secondsSince1970 += change->to.secondsSince1970 - present.secondsSince1970;
                present = change->to;
            }
        } else if (!letGoOn(*line)) {
            refuse(*line);
        }
    }
    present = std::max(present, end);
    return std::nullopt;
}

const TracedCall* TracePlayer::nextCallOf(const Work& work) {
    const TraceLine* line = reader.peek();
    return line && line->onMainThread == work.isMain ? std::get_if<TracedCall>(&line->what)
                                                     : nullptr;
}

/// Runs the thread of the line until it has taken the line. False if it does not take it.
bool TracePlayer::letGoOn(const TraceLine& line) {
    const std::size_t number = line.number;
    const auto isTaken = [&] {
        const TraceLine* now = reader.peek();
        return !now || now->number != number;
    };
    if (!line.onMainThread) {
        return monitor && !monitor->hop && (resume(*monitor), isTaken());
    }
    // The main thread runs one piece of work at a time.
    auto work = std::find_if(mainWork.begin(), mainWork.end(),
                             [](const auto& other) { return other.hasBegun; });
    if (work == mainWork.end())
        work = std::find_if(mainWork.begin(), mainWork.end(), [&](const auto& other) {
            return mayBegin(other, std::get<TracedCall>(line.what));
        });
    if (work == mainWork.end())
        return false;
    if (resume(*work))
        mainWork.erase(work);
    return isTaken();
}

bool TracePlayer::mayBegin(const Work& work, const TracedCall& call) const {
    const auto& [operations, logLine] = work.beginning;
    if (call.operation == Operation::NSLog)
        return logLine && call.arguments.at(0).get<std::string>().starts_with(*logLine);
    return std::find(operations.begin(), operations.end(), call.operation) != operations.end();
}

/// True if the work is done.
bool TracePlayer::resume(Work& work) {
    Work* const before = std::exchange(current, &work);
    work.stack->resume();
    current = before;
    if (!work.stack->ended())
        return false;
    if (monitor && monitor->hop == &work)
        monitor->hop = nullptr;
    return true;
}

void TracePlayer::refuse(const TraceLine& line) const {
    const auto& call = std::get<TracedCall>(line.what);
    std::string rules = "has nothing to do";
    const auto waiting = std::find_if(mainWork.begin(), mainWork.end(),
                                      [](const auto& work) { return !work.wanted.empty(); });
    const bool isBlocked = monitor && monitor->hop;
    if ((line.onMainThread || isBlocked) && waiting != mainWork.end())
        rules = "calls " + waiting->wanted;
    else if (!line.onMainThread && monitor && !monitor->wanted.empty())
        rules = "calls " + monitor->wanted;
    throw TraceAndRulesPart("the trace and the rules part at line " + std::to_string(line.number) +
                            ": the trace has " + described(call.operation, call.arguments) +
                            ", and by the rules the " + threadOf(line.onMainThread) + ' ' + rules);
}

TraceLine TracePlayer::take(Operation operation, std::span<const CallValue> arguments) {
    takeLogLines();
    return takeNow(operation, arguments);
}

void TracePlayer::takeLogLines() {
    auto& lines = current->logLines;
    for (; !lines.empty(); lines.pop_front()) {
        const CallValue text = std::string_view(lines.front());
        tookLogLine(takeNow(Operation::NSLog, {&text, 1}));
    }
}

TraceLine TracePlayer::takeNow(Operation operation, std::span<const CallValue> arguments) {
    Work& work = *current;
    const Json wanted = jsonOf(arguments);
    for (;;) {
        const TracedCall* call = nextCallOf(work);
        if (call && call->operation == operation && areEqual(call->arguments, wanted))
            break;
        if (call && inRealTime && operation == Operation::NSLog)
            return {0, present, work.isMain, TracedCall{operation, wanted, {}}};
        if (call && inRealTime && call->operation == Operation::NSLog) {
            reader.take();
            continue;
        }
        work.wanted = described(operation, wanted);
        work.stack->park();
    }
    work.wanted.clear();
    work.hasBegun = true;
    TraceLine taken = reader.take();
    present = taken.at;
    return taken;
}

bool TracePlayer::isNext(Operation operation) {
    if (current)
        takeLogLines();
    const TracedCall* call = current ? nextCallOf(*current) : nullptr;
    return call && call->operation == operation;
}

std::optional<std::string> TracePlayer::nextLogLine() {
    if (!isNext(Operation::NSLog))
        return std::nullopt;
    return std::get<TracedCall>(reader.peek()->what).arguments.at(0).get<std::string>();
}

Date TracePlayer::now() {
    if (current)
        takeLogLines();
    return present;
}

void TracePlayer::waitForTurn() {
    takeLogLines();
    while (!nextCallOf(*current))
        current->stack->park();
    present = reader.peek()->at;
}

void TracePlayer::performOnMainThread(Beginning beginning, std::function<void()> work) {
    takeLogLines();
    if (current->isMain)
        return work();
    Work& waiting = *current;
    waiting.hop = &addMainWork(std::move(beginning), std::move(work));
    while (waiting.hop)
        waiting.stack->park();
}

void TracePlayer::startMonitor(std::function<void()> body) {
    monitor = std::make_unique<Work>();
    monitor->isMain = false;
    monitor->stack = makeHandedOverThread(std::move(body));
}

TracePlayer::Work& TracePlayer::addMainWork(Beginning beginning, std::function<void()> work) {
    Work& added = mainWork.emplace_back();
    added.isMain = true;
    added.beginning = std::move(beginning);
    added.stack = makeHandedOverThread([this, work = std::move(work)] {
        work();
        takeLogLines();
    });
    return added;
}

void TracePlayer::startOnMainThread(Beginning beginning, std::function<void()> work) {
    if (resume(addMainWork(std::move(beginning), std::move(work))))
        mainWork.pop_back();
}

} // namespace noctara
