/// Reads a trace back, line by line.
#pragma once

#include "night/trace.h"
#include "phones/model/event.h"

#include <cstddef>
#include <istream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace noctara {

/// A call of the monitor.
struct TracedCall {
    Operation operation;
    Json arguments; ///< An array.
    Json result;    ///< Null also if there is none.
};

/// The last line of a stream that is replayed while the night is played.
struct TraceEnd {
    std::optional<std::string> why; ///< Why the night ended early. Absent if it did not.
};

struct TraceLine {
    std::size_t number; ///< From 1.
    Date at;            ///< On the phone's wall clock.
    bool onMainThread;
    std::variant<TracedCall, Event, TraceEnd> what;
};

class TraceReader {
public:
    /// `name` is the name of the stream in messages. The stream must outlive the reader.
    TraceReader(std::istream& lines, std::string name) : in(lines), streamName(std::move(name)) {}

    /// The next line. Null at the end. Valid until it is taken. Throws BadInput for a line that is
    /// not a line of a trace.
    const TraceLine* peek();

    /// Takes the line that `peek` returned. Call `peek` first; it must not have returned null.
    TraceLine take() { return *std::exchange(head, std::nullopt); }

private:
    std::istream& in;
    std::string streamName;
    std::size_t number = 0;
    std::optional<TraceLine> head;
};

/// The property-list value for a JSON value. Null, which a property list cannot hold, becomes an
/// empty string.
PropertyList propertyListOf(const Json& value);

/// Absent for a value that is not an object.
std::optional<Dictionary> dictionaryOf(const Json& value);

} // namespace noctara
