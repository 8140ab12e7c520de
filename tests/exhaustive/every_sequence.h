/// Plays the monitor through every sequence of readings, and holds each cycle to the rules.
#pragma once

#include "platform/property_list.h"
#include "tests/exhaustive/rules.h"

#include <cstdint>
#include <string>
#include <vector>

namespace noctara::exhaustive {

enum class Moment : std::uint8_t {
    inTheReading, ///< Between the checks before a reading and its sample.
    inTheWait     ///< At the beginning of the first wait of the cycle.
};

/// A change in a cycle, counted from 1. A change in the reading of a cycle without one does not
/// happen.
struct ChangeAt {
    Change change;
    int cycle;
    Moment moment;
};

struct Case {
    Situation situation;
    int cycles = 14;
    std::vector<ChangeAt> changes;
};

struct Count {
    std::uint64_t cases = 0;
    std::uint64_t sequences = 0; ///< Of readings, one for each cycle: 2 ^ cycles for each case.
    /// Runs of the monitor. The sequences that differ only in cycles without a reading share one.
    std::uint64_t runs = 0;
    std::uint64_t cycles = 0; ///< In which the monitor was compared with the rules.

    Count& operator+=(const Count& other);
};

/// Plays every sequence of readings of a case. Returns the first difference between the monitor and
/// the rules, in words; empty if there is none.
std::string playEverySequence(const Case& played, Count& count);

} // namespace noctara::exhaustive
