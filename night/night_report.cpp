#include "night/night_report.h"

#include "night/local_clock_text.h"
#include "output/interruption.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <utility>

namespace noctara {

NightReport::NightReport(const Scenario& scenario, std::function<Date()> wallClock,
                         std::ostream& lines, bool withLog, OutputFile* file) :
    story(scenario, lines, withLog),
    night(scenario),
    now(std::move(wallClock)),
    storyLines(lines),
    traceFile(file),
    findings(scenario, now) {
    if (traceFile)
        trace.emplace(traceFile->stream());
}

void NightReport::followsRecording(const std::string& name, Date from,
                                   const std::vector<std::string>& remarks) {
    story.tellOfRecording(name, from, remarks);
    findings.obstacles.followsRecording(from);
}

void NightReport::called(const Call& call) {
    if (trace)
        trace->called(call);
    story.called(call);
    if (call.operation == Operation::sleep && (!storyLines || (traceFile && !traceFile->stream())))
        stopIfNobodyReads();
    findings.called(call);
}

void NightReport::happens(const Happening& happening) {
    if (trace)
        trace->happens(happening);
    story.happens(happening);
    findings.happens(happening);
}

void NightReport::decided(const Decision& decision) {
    story.decided(now(), decision);
    findings.decided(decision);
}

void NightReport::endNight(const std::optional<std::string>& wrong) {
    story.finish();
    findings.finish();
    if (wrong)
        faults.push_back(*wrong);
    if (wasInterrupted())
        faults.push_back("the night was interrupted at " +
                         timeText(TimeZone(night.timezone), now()));
    else if (traceFile && !traceFile->keep())
        faults.push_back(
            fmt::format("the trace {} could not be written whole", traceFile->path().string()));
}

int NightReport::finish(const Retry& retry, SummaryForm form, std::ostream& out) {
    summary = NightSummary{verdictOn(night, findings, retry), findings.figures, faults};
    if (form == SummaryForm::json)
        out << toJson(*summary).dump(2) << '\n';
    else
        printSummary(*summary, night.timezone, out);
    return faults.empty() && summary->verdict.kind != Verdict::Kind::notBack ? 0 : 1;
}

} // namespace noctara
