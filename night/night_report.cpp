#include "night/night_report.h"

#include <fmt/format.h>
#include <utility>

namespace noctara {

NightReport::NightReport(const Scenario& scenario, std::function<Date()> wallClock,
                         std::ostream& text, bool withLog, OutputFile* file) :
    story(scenario, text, withLog),
    now(std::move(wallClock)),
    out(text),
    traceFile(file),
    summary(scenario),
    morning(scenario) {
    if (traceFile)
        trace.emplace(traceFile->stream());
}

void NightReport::called(const Call& call) {
    if (trace)
        trace->called(call);
    story.called(call);
    summary.called(call);
    morning.called(call);
}

void NightReport::happens(const Happening& happening) {
    if (trace)
        trace->happens(happening);
    story.happens(happening);
    summary.happens(happening);
    morning.happens(happening);
}

void NightReport::decided(const Decision& decision) {
    const Date at = now();
    story.decided(at, decision);
    summary.decided(at, decision);
    morning.decided(at, decision);
}

int NightReport::finish(const std::optional<std::string>& wrong) {
    story.finish();
    summary.print(out, now());

    std::vector<std::string> found;
    if (wrong)
        found.push_back(*wrong);
    found.insert(found.end(), morning.complaints().begin(), morning.complaints().end());
    if (traceFile && !traceFile->keep())
        found.push_back(
            fmt::format("the trace {} could not be written whole", traceFile->path().string()));
    for (const auto& clause : found)
        out << "\nSomething is wrong: " << clause << ".\n";
    return found.empty() ? 0 : 1;
}

} // namespace noctara
