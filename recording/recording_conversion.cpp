#include "recording/recording_conversion.h"

#include "input/bad_input.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace noctara {

namespace {

/// Copies the values, because the survey keeps its own.
double medianOf(std::vector<float> values) {
    if (values.empty())
        return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return double{*middle};
}

/// The unit in which the first time is a date of this century, and the step is plausible.
std::optional<UnitOfTime> unitOfDates(double first, double step) {
    constexpr double year2001 = 1e9;
    constexpr double year2100 = 4.1e9;
    constexpr double longestStep = 60;
    for (const auto& unit : unitsOfTime) {
        const double seconds = first * unit.seconds;
        if (seconds > year2001 && seconds < year2100 && step * unit.seconds <= longestStep)
            return unit;
    }
    return std::nullopt;
}

UnitOfTime unitFromSteps(const RecordingSurvey& survey) {
    const double step = survey.medianStep();
    if (const auto unit = unitOfDates(survey.firstTime(), step))
        return *unit;
    // A reading every five seconds, or every five milliseconds. The fast ones come less evenly.
    constexpr double fastest = 1.5;
    constexpr double slowest = 8;
    if (step >= fastest && step < slowest && survey.isRegular())
        return unitsOfTime.front();
    return *std::find_if(unitsOfTime.begin(), unitsOfTime.end() - 1,
                         [=](const UnitOfTime& unit) { return step * unit.seconds < fastest; });
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

} // namespace

void RecordingSurvey::add(const RawReading& reading) {
    const Acceleration& a = reading.acceleration;
    lengths.push_back(static_cast<float>(std::sqrt(a.x * a.x + a.y * a.y + a.z * a.z)));
    if (readings++ == 0) {
        first = partBegins = reading.time;
    } else if (reading.afterSetBack) {
        finishedDurations.push_back(latest - partBegins);
        partBegins = reading.time;
    } else if (reading.time > latest) {
        steps.push_back(static_cast<float>(reading.time - latest));
    }
    latest = reading.time;
}

double RecordingSurvey::span() const {
    // Summed in the order of the conversion, so that both are equal to the last bit.
    const double step = medianStep();
    double before = 0;
    for (const double duration : finishedDurations)
        before += duration + step;
    return before + (latest - partBegins);
}

double RecordingSurvey::medianStep() const {
    return medianOf(steps);
}

bool RecordingSurvey::isRegular() const {
    constexpr double largestDifference = 0.15;
    constexpr double mostOfThem = 0.9;
    const double middle = medianStep();
    const auto near = std::count_if(steps.begin(), steps.end(), [=](float step) {
        return std::abs(double{step} - middle) <= largestDifference * middle;
    });
    return static_cast<double>(near) >= mostOfThem * static_cast<double>(steps.size());
}

double RecordingSurvey::medianLength() const {
    return medianOf(lengths);
}

RecordingConversion::RecordingConversion(const RecordingSurvey& survey,
                                         const RecordingParser& parser,
                                         const RecordingOptions& recordingOptions,
                                         const std::string& file,
                                         std::vector<std::string>& remarks) :
    options(recordingOptions) {
    chooseTimes(survey, parser, file, remarks);
    chooseAccelerations(survey, parser, file, remarks);
}

void RecordingConversion::chooseTimes(const RecordingSurvey& survey, const RecordingParser& parser,
                                      const std::string& file, std::vector<std::string>& remarks) {
    constexpr double secondsPerDay = 24 * 3600;
    constexpr double longestDays = 366;
    if (options.rate) {
        step = 1 / *options.rate;
        span = static_cast<double>(survey.count() - 1) / *options.rate;
        // A single reading lasts a step, too.
        if (std::max(step, span) > longestDays * secondsPerDay)
            throw BadInput(fmt::format("{}: at {:.3g} readings a second it spans {:.3g} days; give "
                                       "a higher rate with --rate HZ",
                                       file, *options.rate, std::max(step, span) / secondsPerDay));
        remarks.push_back(
            fmt::format("time: {:.3g} readings a second, as --rate says", *options.rate));
        return;
    }
    const RecordingColumns& columns = parser.foundColumns();
    const std::string name = inQuotes(columns.timeName);
    first = survey.firstTime();
    step = survey.medianStep();
    span = survey.span();
    if (span <= 0 && survey.count() > 1)
        throw BadInput(file + ": the time in " + name +
                       " is the same in all lines; give the number of readings per second with "
                       "--rate HZ");
    UnitOfTime unit{
        "", parser.formOfTimes() == FormOfTimes::clock ? "times of day" : "dates and times of day",
        1.0};
    const char* reason = "; --rate HZ says otherwise";
    if (parser.formOfTimes() == FormOfTimes::number) {
        unit = options.timeUnit   ? *options.timeUnit
               : columns.timeUnit ? *columns.timeUnit
                                  : unitFromSteps(survey);
        reason = options.timeUnit   ? ", as --time-unit says"
                 : columns.timeUnit ? ", as its heading says; --time-unit says otherwise"
                                    : ", told from its steps; --time-unit says otherwise";
    }
    remarks.push_back(fmt::format("time: {}, {}{}", name, unit.name, reason));
    if (const std::size_t count = parser.setBackCount())
        remarks.push_back(fmt::format("the clock is set back {}: the readings after it follow one "
                                      "step after those before it",
                                      count == 1 ? "once" : fmt::format("{} times", count)));
    secondsPerUnit = unit.seconds;
    span *= unit.seconds;
    if (span > longestDays * secondsPerDay)
        throw BadInput(fmt::format("{}: the time in {} spans {:.3g} days; if this is wrong, give "
                                   "the unit of the times with --time-unit, or the number of "
                                   "readings per second with --rate HZ",
                                   file, name, span / secondsPerDay));
}

void RecordingConversion::chooseAccelerations(const RecordingSurvey& survey,
                                              const RecordingParser& parser,
                                              const std::string& file,
                                              std::vector<std::string>& remarks) {
    UnitOfAcceleration unit{};
    std::string reason;
    if (options.unit) {
        unit = *std::find_if(unitsOfAcceleration.begin(), unitsOfAcceleration.end(),
                             [&](const auto& known) { return known.unit == *options.unit; });
        reason = "as --unit says";
    } else if (const auto& written = parser.foundColumns().unit) {
        unit = *written;
        reason = "as the heading says; --unit says otherwise";
    } else {
        const double length = survey.medianLength();
        unit = unitFromLength(length, file);
        reason =
            fmt::format("told from the lengths (median {:.3g}); --unit says otherwise", length);
    }
    remarks.push_back(fmt::format("unit: {}, {}", unit.symbol, reason));

    const bool android = options.axes ? *options.axes == AxisConvention::android
                                      : unit.unit == AccelerationUnit::metresPerSecondSquared;
    remarks.push_back(
        fmt::format("axes: {}, {}",
                    android ? "Android's (screen up reads z = +1 g)"
                            : "the iPhone's (screen up reads z = -1 g)",
                    options.axes ? "as --axes says"
                                 : fmt::format("as usual with this unit; --axes {} says otherwise",
                                               android ? "ios" : "android")));
    divisor = android ? -unit.perG : unit.perG;
}

Recording::Sample RecordingConversion::convert(const RawReading& reading) {
    const Acceleration& a = reading.acceleration;
    const Acceleration acceleration{a.x / divisor, a.y / divisor, a.z / divisor};
    if (options.rate)
        return {static_cast<double>(converted++) / *options.rate, acceleration};
    if (reading.afterSetBack) {
        before += latest - first + step;
        first = reading.time;
    }
    latest = reading.time;
    return {(before + (reading.time - first)) * secondsPerUnit, acceleration};
}

} // namespace noctara
