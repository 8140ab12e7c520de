#include "command/detect_command.h"

#include "command/detect_table.h"
#include "command/report_file.h"
#include "monitor/posture.h"
#include "recording/posture_statistics.h"
#include "recording/sensitivity_advice.h"
#include "report/recording_record.h"

#include <fmt/ostream.h>

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

namespace noctara {

namespace {

/// In percent. 100 is shown only for all readings, and 0 only for none.
double shownPercent(double share) {
    if (share <= 0 || share >= 1)
        return share * 100;
    return std::clamp(share * 100, 0.01, 99.99);
}

void printAssumptions(const RecordingSummary& summary, std::ostream& out) {
    fmt::print(out, "\n{} {} in {:.1f} s, {:.3g} a second\n", summary.samples,
               summary.samples == 1 ? "reading" : "readings", summary.duration(),
               static_cast<double>(summary.samples) / summary.duration());
    for (const std::string& remark : summary.remarks)
        out << "  " << remark << '\n';
}

void printShares(const PostureShares& shares, std::ostream& out) {
    const BySensitivity up = shares.of(false);
    const BySensitivity down = shares.of(true);
    out << "\nReadings that pass\n Sensitivity  tolerance   screen up  screen down\n";
    for (std::size_t i = 0; i < up.size(); ++i)
        fmt::print(out, "{:12d}  {:8.2f}°  {:8.2f} %  {:9.2f} %\n", i,
                   postureTolerance(static_cast<std::int32_t>(i)) * degreesPerRadian,
                   shownPercent(up[i]), shownPercent(down[i]));
}

using Visitor = std::function<void(const Recording::Sample&)>;

void report(const RecordingSummary& summary, const std::function<void(const Visitor&)>& forEach,
            const DetectOptions& options, std::ostream& out) {
    SensitivityAdviceSearch search(summary.medianStep);
    PostureShares shares;
    SecondTable table(options.sensitivity, options.wholeTable,
                      longestGapBetween(summary.medianStep));
    forEach([&](const Recording::Sample& sample) {
        search.add(sample);
        shares.add(PostureReading(sample.acceleration));
        table.add(sample);
    });
    table.finish();
    const SensitivityAdvice advice = search.finish(summary.axesAreAssumed);
    for (const std::string& line : linesOf(advice))
        out << line << '\n';
    printAssumptions(summary, out);
    printShares(shares, out);
    table.print(advice.outcome == SensitivityAdvice::Outcome::notOneG, out);
}

} // namespace

void detect(const Recording& recording, const DetectOptions& options, std::ostream& out) {
    report(
        recording.summary(),
        [&](const Visitor& visit) {
            std::for_each(recording.samples.begin(), recording.samples.end(), visit);
        },
        options, out);
}

int detect(const DetectOptions& options, std::ostream& out, std::ostream& complaints) {
    if (options.report) {
        const Recording recording = readRecording(options.file, options.recording, complaints);
        const auto page = makeReportFile(options.report, {options.file});
        detect(recording, options, out);
        const auto data =
            recordingForPage(recording, shownName(options.file.filename()), adviceFrom(recording));
        return writeReport(*page, data, complaints) ? 0 : 1;
    }
    RecordingFile file(options.file, options.recording, complaints);
    report(
        file.summary(), [&](const Visitor& visit) { file.forEachSample(visit); }, options, out);
    return 0;
}

} // namespace noctara
