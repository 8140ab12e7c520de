#include "night/night_report.h"

#include <fmt/format.h>

namespace noctara {

NightReport::NightReport(PhoneModel& phone, std::ostream& text, bool withLog, TraceFile* file) :
    story(phone, text, withLog), out(text), traceFile(file), summary(phone), morning(phone) {
    if (traceFile)
        phone.observe(trace.emplace(traceFile->begin()));
    phone.observe(story);
    phone.observe(summary);
    phone.observe(morning);
}

int NightReport::finish(const std::optional<std::string>& endedEarly) {
    story.finish();
    summary.print(out);

    std::vector<std::string> wrong;
    if (endedEarly)
        wrong.push_back("the night ended early: " + *endedEarly);
    wrong.insert(wrong.end(), morning.complaints().begin(), morning.complaints().end());
    if (traceFile && !traceFile->finish())
        wrong.push_back(
            fmt::format("the trace {} could not be written whole", traceFile->path().string()));
    for (const auto& sentence : wrong)
        out << "\nSomething is wrong: " << sentence << ".\n";
    return wrong.empty() ? 0 : 1;
}

} // namespace noctara
