#include "recording/recording_conversion.h"

#include "input/bad_input.h"
#include "monitor/posture.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace noctara {

namespace {

/// The longest unit in which a mean step is at most about a second, as an accelerometer's is.
UnitOfTime unitFromStep(double step) {
    return *std::find_if(unitsOfTime.begin(), unitsOfTime.end() - 1,
                         [=](const UnitOfTime& unit) { return step * unit.seconds < 1.5; });
}

double medianLength(const Recording& recording) {
    std::vector<double> lengths;
    lengths.reserve(recording.samples.size());
    for (const auto& [seconds, a] : recording.samples)
        computeTiltAngle(&lengths.emplace_back(), a.x, a.y, a.z);
    return median(std::move(lengths));
}

UnitOfAcceleration unitFromLength(double length, const std::string& file) {
    for (const auto& unit : unitsOfAcceleration) {
        if (length > unit.perG / 2 && length < unit.perG * 2)
            return unit;
    }
    throw BadInput(fmt::format(
        "{}: the unit cannot be told: half of the readings are longer than {:.3g}, where a phone "
        "at rest reads 1 g, 9.8 m/s² or 1000 mg; {}give the unit with --unit",
        file, length,
        length < 0.5 ? "if the logger removed gravity, record the raw accelerometer; else " : ""));
}

UnitOfAcceleration chooseUnit(Recording& recording, const std::string& file,
                              const RecordingColumns& columns, const RecordingOptions& options) {
    UnitOfAcceleration unit{};
    std::string reason;
    if (options.unit) {
        unit = *std::find_if(unitsOfAcceleration.begin(), unitsOfAcceleration.end(),
                             [&](const auto& known) { return known.unit == *options.unit; });
        reason = "as --unit says";
    } else if (columns.unit) {
        unit = *columns.unit;
        reason = "as the heading says; --unit says otherwise";
    } else {
        const double length = medianLength(recording);
        unit = unitFromLength(length, file);
        reason =
            fmt::format("told from the lengths (median {:.3g}); --unit says otherwise", length);
    }
    recording.remarks.push_back(fmt::format("unit: {}, {}", unit.symbol, reason));
    return unit;
}

} // namespace

void convertTimes(Recording& recording, const std::string& file, const RecordingColumns& columns,
                  bool dates) {
    constexpr double secondsPerDay = 24 * 3600;
    constexpr double longestDays = 366;
    auto& samples = recording.samples;
    const std::string name = columns.nameOf(*columns.time);
    const double first = samples.front().seconds;
    double span = samples.back().seconds - first;
    const auto steps = static_cast<double>(samples.size() - 1);
    if (span <= 0 && steps > 0)
        throw BadInput(file + ": the time in " + name +
                       " is the same in all lines; give the number of readings per second with "
                       "--rate HZ");
    UnitOfTime unit{"", "dates and times of day", 1.0};
    const char* reason = "";
    if (!dates) {
        unit = columns.timeUnit ? *columns.timeUnit : unitFromStep(steps > 0 ? span / steps : 0);
        reason = columns.timeUnit ? ", as its heading says" : ", told from its steps";
    }
    recording.remarks.push_back(
        fmt::format("time: {}, {}{}; --rate HZ says otherwise", name, unit.name, reason));
    span *= unit.seconds;
    if (span > longestDays * secondsPerDay)
        throw BadInput(fmt::format("{}: the time in {} spans {:.3g} days; if this is wrong, give "
                                   "the number of readings per second with --rate HZ",
                                   file, name, span / secondsPerDay));
    for (auto& sample : samples)
        sample.seconds = (sample.seconds - first) * unit.seconds;
}

void setRate(Recording& recording, double rate) {
    for (std::size_t i = 0; i < recording.samples.size(); ++i)
        recording.samples[i].seconds = static_cast<double>(i) / rate;
    recording.remarks.push_back(
        fmt::format("time: {:.3g} readings a second, as --rate says", rate));
}

void convertAccelerations(Recording& recording, const std::string& file,
                          const RecordingColumns& columns, const RecordingOptions& options) {
    const UnitOfAcceleration unit = chooseUnit(recording, file, columns, options);
    const bool android = options.axes ? *options.axes == AxisConvention::android
                                      : unit.unit == AccelerationUnit::metresPerSecondSquared;
    recording.axesAreAssumed = !options.axes;
    recording.remarks.push_back(
        fmt::format("axes: {}, {}",
                    android ? "Android's (screen up reads z = +1 g)"
                            : "the iPhone's (screen up reads z = -1 g)",
                    options.axes ? "as --axes says"
                                 : fmt::format("as usual with this unit; --axes {} says otherwise",
                                               android ? "ios" : "android")));
    const double divisor = android ? -unit.perG : unit.perG;
    for (auto& [seconds, a] : recording.samples)
        a = {a.x / divisor, a.y / divisor, a.z / divisor};
}

} // namespace noctara
