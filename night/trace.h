/// The trace: JSON Lines, one line for each call of the monitor and each event. docs/trace.md
/// describes it.
#pragma once

#include "phones/model/phone_observer.h"

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <ostream>
#include <string>

namespace noctara {

using Json = nlohmann::ordered_json;

/// The form of a value in a trace.
Json jsonOf(const CallValue& value);

class TraceWriter final : public PhoneObserver {
public:
    /// With `withClock`, reads of the clock are written too, so that a night that ran in real time
    /// can be replayed exactly. The stream must outlive the writer.
    explicit TraceWriter(std::ostream& lines, bool withClock = false) :
        out(lines), hasClock(withClock) {}

    void called(const Call& call) override;
    void happens(const Happening& happening) override;

    /// Writes the last line of a stream that is replayed. It says why the night ended early, or
    /// null.
    void end(Date at, const std::optional<std::string>& why);

private:
    std::ostream& out;
    const bool hasClock;
};

} // namespace noctara
