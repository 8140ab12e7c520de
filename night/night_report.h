/// The report of a night: its story, its figures, the check of the radios after coming back and,
/// optionally, the trace.
#pragma once

#include "monitor/decisions.h"
#include "night/morning_check.h"
#include "night/night_summary.h"
#include "night/story.h"
#include "night/trace.h"
#include "output/output_file.h"

#include <functional>
#include <optional>
#include <ostream>
#include <string>

namespace noctara {

class NightReport final : public PhoneObserver, public MonitorObserver {
public:
    /// `wallClock` tells the time on the phone. The stream and the trace file, if there is one,
    /// must outlive the report.
    NightReport(const Scenario& scenario, std::function<Date()> wallClock, std::ostream& out,
                bool withLog, OutputFile* trace);

    void called(const Call& call) override;
    void happens(const Happening& happening) override;
    void decided(const Decision& decision) override;

    /// Ends the report. `wrong` is a clause about an error during the night, if there was one.
    /// Returns the exit code of a command: 0, or 1 if something was found wrong.
    int finish(const std::optional<std::string>& wrong);

    Story story;

private:
    const std::function<Date()> now; ///< By the wall clock of the phone.
    std::ostream& out;
    OutputFile* traceFile;
    NightSummary summary;
    MorningCheck morning;
    std::optional<TraceWriter> trace;
};

} // namespace noctara
