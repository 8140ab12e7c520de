/// The cycles of the monitor in columns, with the lines that it logs in each.
#pragma once

#include "monitor/decisions.h"
#include "night/trace.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace noctara {

/// What a cycle of the monitor came to. The page's script has the same numbers.
enum class CycleOutcome {
    notLying,
    lies,
    noSample,
    deviceMotion,
    off,
    outsideWindow,
    notOnCharger,
};

/// Times are seconds since the start of the night, on the monotonic clock.
class NightCycles {
public:
    void logged(const std::string& line);
    void took(double at, const Reading& reading);
    void skipped(double at, NoReading::Reason reason);
    void counted(int inARow);

    /// The monitor begins to wait. That ends a cycle that has taken or skipped its reading.
    void waits();

    /// The columns; docs/report.md describes them. Call it once, at the end.
    Json finish();

private:
    void begin(double at, CycleOutcome outcome);

    struct Cycle {
        double at;
        CycleOutcome outcome;
        double tilt = 0; ///< Degrees off the wanted posture.
        double length = 0;
        int inARow = 0;
        std::size_t lines = 0; ///< Logged since the end of the cycle before.
    };
    std::vector<Cycle> cycles;
    bool underWay = false;

    std::vector<std::string> texts;
    std::unordered_map<std::string, std::size_t> indices;
    std::vector<std::size_t> log; ///< Indices of `texts`.
    std::size_t linesOfCycle = 0;
};

} // namespace noctara
