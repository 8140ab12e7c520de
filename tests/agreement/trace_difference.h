/// Whether two traces describe the same night: the same calls with the same arguments and results,
/// and the same events, in the same order.
#pragma once

#include <cstddef>
#include <istream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace noctara {

enum class TraceOrder {
    perThread, ///< The order of each thread by itself; times do not count. Events are "main"'s.
    whole,     ///< One order over both threads, and the times count.
};

struct ComparedLine {
    std::size_t number; ///< From 1, in the file.
    std::string text;
    std::string compared; ///< What counts of it.
};

/// A trace as it is compared, held in memory whole.
struct Trace {
    std::string name;
    std::size_t lines = 0;                                  ///< All that the file has.
    std::map<std::string, std::vector<ComparedLine>> order; ///< By thread; or one, of no thread.
};

/// A line is not a line of a trace. The message names the trace and the line.
class BadTrace : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throws BadTrace. `name` is the name of the trace in messages.
Trace readTrace(std::istream& lines, const std::string& name, TraceOrder order);

struct TraceDifference {
    /// For each thread on which they differ the first place where they do, with the lines around
    /// it.
    std::string text;
    std::size_t otherLine; ///< The line of the other trace at the first place; 0 if it ends there.
};

/// Absent if the traces, read in the same order, agree.
std::optional<TraceDifference> traceDifference(const Trace& one, const Trace& other);

} // namespace noctara
