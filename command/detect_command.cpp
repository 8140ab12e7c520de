#include "command/detect_command.h"

#include "command/report_file.h"
#include "input/printable.h"
#include "monitor/posture.h"
#include "recording/posture_statistics.h"
#include "report/recording_record.h"

#include <fmt/ostream.h>

#include <algorithm>
#include <cmath>
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

const char* nameOf(bool screenDown) {
    return screenDown ? "down" : "up";
}

const char* verdictOn(const PostureReading& reading, std::int32_t sensitivity,
                      bool stillOffLength) {
    const bool screenDown = reading.nearerToScreenDown();
    if (reading.lies(sensitivity, screenDown))
        return screenDown ? "screen down" : "screen up";
    if (reading.hasLengthAtRest())
        return "tilted";
    return stillOffLength ? "still, but not 1 g long" : "moving";
}

std::string describeTolerance(std::int32_t sensitivity) {
    const double degrees = postureTolerance(sensitivity) * degreesPerRadian;
    if (std::isinf(degrees))
        return "any tilt passes";
    if (degrees < 0)
        return "no tilt passes";
    return fmt::format("less than {:.2f}° off passes", degrees);
}

void printSeconds(const Recording& recording, std::int32_t sensitivity, bool stillOffLength,
                  std::ostream& out) {
    /// In seconds. During a longer gap the latest reading is not printed again.
    constexpr double longestGap = 10.0;
    fmt::print(out, "\n second  off vertical   length  at Sensitivity {}: {}\n", sensitivity,
               describeTolerance(sensitivity));
    const auto& samples = recording.samples;
    std::size_t latest = 0;
    for (double second = 0; second <= samples.back().seconds;) {
        while (latest + 1 < samples.size() && samples[latest + 1].seconds <= second)
            ++latest;
        const PostureReading reading(samples[latest].acceleration);
        fmt::print(out, "{:7.0f}  {:11.2f}°  {:5.3f} g  {}\n", second, reading.degreesOffVertical(),
                   reading.length, verdictOn(reading, sensitivity, stillOffLength));
        if (latest + 1 == samples.size())
            break;
        const double next = samples[latest + 1].seconds;
        if (next - second > longestGap) {
            second = std::ceil(next);
            fmt::print(out, "      -  no reading until {:.2f} s\n", next);
        } else {
            ++second;
        }
    }
}

void printShares(const PostureStatistics& statistics, std::ostream& out) {
    out << "\nReadings that pass\n Sensitivity  tolerance   screen up  screen down\n";
    for (std::size_t i = 0; i < statistics.screenUp.size(); ++i)
        fmt::print(out, "{:12d}  {:8.2f}°  {:8.2f} %  {:9.2f} %\n", i,
                   postureTolerance(static_cast<std::int32_t>(i)) * degreesPerRadian,
                   shownPercent(statistics.screenUp[i]), shownPercent(statistics.screenDown[i]));
}

void printLying(const PostureStatistics& statistics, bool axesAreAssumed, std::ostream& out) {
    const LyingReadings& lying = *statistics.lying;
    const char* posture = nameOf(lying.screenDown);
    const char* other = nameOf(!lying.screenDown);
    const double share = std::max(statistics.screenUp[0], statistics.screenDown[0]);
    const double otherShare = std::min(statistics.screenUp[0], statistics.screenDown[0]);
    if (share >= 1)
        fmt::print(out, "\nThe phone lies still with the screen {} all the time.\n", posture);
    else
        fmt::print(out,
                   "\nThe phone lies still with the screen {} in {}{:.2f} % of the readings.\n",
                   posture, share < 0.5 ? "only " : "", shownPercent(share));
    if (otherShare > 0)
        fmt::print(out, "With the screen {} it does so in {:.2f} %.\n", other,
                   shownPercent(otherShare));
    if (axesAreAssumed)
        fmt::print(out, "That it is {}, and not {}, rests on the axes that were assumed above.\n",
                   posture, other);
    fmt::print(out, "Lying so, it reads {:.1f}° off the vertical (median), {:.1f}° at worst.\n",
               lying.medianDegreesOff, lying.worstDegreesOff);
}

void printSuitable(const LyingReadings& lying, bool always, std::ostream& out) {
    constexpr double nearlyAll = 0.99;
    const auto percentAt = [&](std::int32_t sensitivity) {
        return shownPercent(lying.passing[static_cast<std::size_t>(sensitivity)]);
    };
    const std::int32_t all = lying.highestPassing(1.0);
    const std::int32_t most = lying.highestPassing(nearlyAll);
    const char* such = always ? "" : " such";
    if (all == highestSensitivity) {
        fmt::print(out, "Any Sensitivity from 0 to 9 detects it at every{} reading.\n", such);
        return;
    }
    fmt::print(out, "Sensitivity {}{} detects it at every{} reading", all > 0 ? "up to " : "", all,
               such);
    if (most > all)
        fmt::print(out, ", up to {} at nearly every one ({:.2f} %)", most, percentAt(most));
    out << ".\n";
    if (most < highestSensitivity)
        fmt::print(out, "Sensitivity {} detects it at {:.2f} % of them.\n", most + 1,
                   percentAt(most + 1));
}

void printNotLying(const Recording& recording, const std::optional<PostureReading>& steady,
                   std::ostream& out) {
    if (!steady)
        fmt::print(out,
                   "\nIn none of these {:.0f} seconds does the phone lie still: no reading passes "
                   "at any Sensitivity.\n",
                   std::max(1.0, std::round(recording.duration())));
    else if (!steady->hasLengthAtRest())
        fmt::print(out,
                   "\nThe phone keeps still, but reads {:.3g} g instead of 1 g; 0.9 to 1.1 g "
                   "pass.\nThe sensor is badly calibrated, or the unit is wrong (--unit).\n",
                   steady->length);
    else
        fmt::print(out,
                   "\nThe phone keeps still, but {:.1f}° off the vertical; Sensitivity 0, the "
                   "widest, allows {:.1f}°.\n",
                   steady->degreesOffVertical(), postureTolerance(0) * degreesPerRadian);
}

} // namespace

void detect(const Recording& recording, std::int32_t sensitivity, std::ostream& out) {
    const std::size_t count = recording.samples.size();
    fmt::print(out, "{} {} in {:.1f} s, {:.3g} a second\n", count,
               count == 1 ? "reading" : "readings", recording.duration(),
               static_cast<double>(count) / recording.duration());
    for (const std::string& remark : recording.remarks)
        out << "  " << printable(remark) << '\n';

    const PostureStatistics statistics = computePostureStatistics(recording);
    const auto& steady = statistics.steady;
    printSeconds(recording, sensitivity, steady && !steady->hasLengthAtRest(), out);
    printShares(statistics, out);
    if (statistics.lying) {
        printLying(statistics, recording.axesAreAssumed, out);
        const bool always = statistics.screenUp[0] >= 1 || statistics.screenDown[0] >= 1;
        printSuitable(*statistics.lying, always, out);
    } else {
        printNotLying(recording, steady, out);
    }
}

int detect(const DetectOptions& options, std::ostream& out, std::ostream& complaints) {
    const Recording recording = readRecording(options.file, options.recording, complaints);
    const auto page = makeReportFile(options.report, {options.file});
    detect(recording, options.sensitivity, out);
    const std::string name = options.file.filename().string();
    if (page &&
        !writeReport(*page, recordingForPage(recording, name, adviceFrom(recording)), complaints))
        return 1;
    return 0;
}

} // namespace noctara
