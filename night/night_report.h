/// The report of a night: its story, its figures, the check of the radios after coming back and,
/// optionally, the trace.
#pragma once

#include "monitor/decisions.h"
#include "night/night_findings.h"
#include "night/night_summary.h"
#include "night/story.h"
#include "night/trace.h"
#include "output/output_file.h"

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace noctara {

enum class SummaryForm { text, json };

class NightReport final : public PhoneObserver, public MonitorObserver {
public:
    /// `wallClock` tells the time on the phone until `endNight`. The story is written to `lines`.
    /// The stream and the trace file, if there is one, must outlive the report.
    NightReport(const Scenario& scenario, std::function<Date()> wallClock, std::ostream& lines,
                bool withLog, OutputFile* trace);

    /// A recording provides the accelerometer samples from `from` on.
    void followsRecording(const std::string& name, Date from,
                          const std::vector<std::string>& remarks);

    /// Throws Interruption after a signal, or if nobody reads the output, when the monitor waits.
    void called(const Call& call) override;
    void happens(const Happening& happening) override;
    void decided(const Decision& decision) override;

    /// Ends the night. `wrong` is a clause about an error during the night, if there was one. Drops
    /// the trace of a night that was interrupted.
    void endNight(const std::optional<std::string>& wrong);

    /// Prints the summary. Advice is given only if there is a `retry`, which must not be called
    /// while the phone of this night exists. Returns the exit code of a command: 0, or 1 if
    /// something was found wrong.
    int finish(const Retry& retry, SummaryForm form, std::ostream& out);

    const NightFindings& nightFindings() const { return findings; }

    /// Absent before `finish`.
    const std::optional<NightSummary>& nightSummary() const { return summary; }

    Story story;

private:
    const Scenario night;
    const std::function<Date()> now; ///< By the wall clock of the phone.
    std::ostream& storyLines;
    OutputFile* traceFile;
    NightFindings findings;
    std::optional<TraceWriter> trace;
    std::vector<std::string> faults;
    std::optional<NightSummary> summary;
};

} // namespace noctara
