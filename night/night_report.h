/// Everyone who watches a night: the story, the summary, the check of the mornings and, if it is
/// asked for, the trace.
#pragma once

#include "night/morning_check.h"
#include "night/night_files.h"
#include "night/night_summary.h"
#include "night/story.h"
#include "night/trace.h"

#include <optional>
#include <ostream>
#include <string>

namespace noctara {

class NightReport {
public:
    /// Watches `phone` from its launch on. All three, and the trace file if there is one, must
    /// outlive the night.
    NightReport(PhoneModel& phone, std::ostream& out, bool withLog, TraceFile* trace);

    /// Ends the report; `endedEarly` says why the night did not come to its end, if it did not. The
    /// result is the exit code of a command: 0, or 1 when something was found wrong.
    int finish(const std::optional<std::string>& endedEarly);

    Story story;

private:
    std::ostream& out;
    TraceFile* traceFile;
    NightSummary summary;
    MorningCheck morning;
    std::optional<TraceWriter> trace;
};

} // namespace noctara
