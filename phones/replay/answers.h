/// Answers the monitor's calls from a trace.
#pragma once

#include "phones/model/phone_observer.h"
#include "phones/replay/trace_player.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace noctara {

class Answers {
public:
    explicit Answers(TracePlayer& lines);

    void add(PhoneObserver& observer) { observers.push_back(&observer); }
    void tell(const Happening& happening) const;

    using Arguments = std::initializer_list<CallValue>;

    /// These functions take the next line of the trace and return its result. The line must be this
    /// call. The observers are told of it. A result of another type counts as false, 0 or empty.
    void call(Operation operation, Arguments arguments = {}) const { json(operation, arguments); }
    bool yes(Operation operation, Arguments arguments = {}) const;
    std::int64_t integer(Operation operation, Arguments arguments = {}) const;
    double real(Operation operation, Arguments arguments = {}) const;
    std::string text(Operation operation, Arguments arguments = {}) const;
    std::vector<std::string> texts(Operation operation, Arguments arguments = {}) const;
    Json json(Operation operation, Arguments arguments = {}) const;

    TracePlayer& player;

private:
    void tell(const TraceLine& line, std::span<const CallValue> arguments) const;

    std::vector<PhoneObserver*> observers;
};

} // namespace noctara
