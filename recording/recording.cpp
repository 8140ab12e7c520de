/// From the lines of a file to readings in g, in the phone's own axes.
#include "recording/recording.h"

#include "input/bad_input.h"
#include "monitor/posture.h"
#include "recording/csv_lines.h"
#include "recording/recording_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <map>
#include <utility>

namespace noctara {

namespace {

constexpr std::size_t complaintLimit = 10;
constexpr double longestRecording = 366.0 * 24 * 3600;
constexpr double standardGravity = 9.80665;
/// In any unit; what reads more is a damaged line, not a phone.
constexpr double largestAcceleration = 1e6;

/// As the file has them, units and axes included.
struct Row {
    std::size_t line = 0;
    double time = 0;
    std::array<double, 3> values{};
};

std::string shortly(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3g", value);
    return text.data();
}

/// Collects the bad lines, to report the first of them and count the rest.
class BadLines {
public:
    void add(std::size_t line, std::string reason) { lines.emplace(line, std::move(reason)); }

    void report(const std::string& file, std::ostream& complaints) const {
        std::size_t reported = 0;
        for (const auto& [line, reason] : lines) {
            if (++reported > complaintLimit) {
                complaints << file << ": " << lines.size() - complaintLimit
                           << " more lines are skipped\n";
                return;
            }
            complaints << file << ':' << line + 1 << ": " << reason << "; the line is skipped\n";
        }
    }

    std::size_t total() const { return lines.size(); }

private:
    std::map<std::size_t, std::string> lines;
};

/// The row in `fields`; without one, `reason` says why.
std::optional<Row> readRow(const std::vector<std::string>& fields, const RecordingLayout& layout,
                           const std::optional<TimeColumn>& time, std::string& reason) {
    const auto& axes = layout.columns.axes;
    std::size_t last = *std::max_element(axes.begin(), axes.end());
    if (time)
        last = std::max(last, time->index);
    if (fields.size() <= last) {
        reason = std::to_string(fields.size()) + (fields.size() == 1 ? " field" : " fields") +
                 " where at least " + std::to_string(last + 1) + " are needed";
        return std::nullopt;
    }
    Row row;
    if (time) {
        const auto value = time->parse(fields[time->index]);
        if (!value) {
            reason = "the time is no " + std::string(time->holdsDates ? "date" : "number") + ": " +
                     inQuotes(fields[time->index]);
            return std::nullopt;
        }
        row.time = *value;
    }
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
        const auto value = parseNumber(fields[axes[axis]]);
        if (!value || std::abs(*value) > largestAcceleration) {
            reason = std::string(1, "xyz"[axis]) +
                     (value ? " is out of all range: " : " is no number: ") +
                     inQuotes(fields[axes[axis]]);
            return std::nullopt;
        }
        row.values[axis] = *value;
    }
    return row;
}

std::vector<Row> readRows(const Lines& lines, const RecordingLayout& layout,
                          const std::optional<TimeColumn>& time, BadLines& badLines) {
    FieldSplitter splitter(layout.delimiter);
    std::vector<Row> rows;
    std::string reason;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool heading = !layout.headings.empty() && i == layout.headingLine;
        if (heading || holdsNoFields(lines[i]))
            continue;
        if (lines[i].size() > longestLine) {
            badLines.add(i, "this is no reading but " + std::to_string(lines[i].size()) +
                                " characters without a line end");
        } else if (auto row = readRow(splitter.split(lines[i]), layout, time, reason)) {
            row->line = i;
            rows.push_back(*row);
        } else {
            badLines.add(i, reason);
        }
    }
    return rows;
}

/// The most rows whose times never go back, so that one damaged time costs one row, whichever way
/// it errs.
std::vector<Row> keepInOrder(const std::vector<Row>& rows, BadLines& badLines) {
    // The longest such sequence: ends[n] is the earliest row that n others can come before.
    std::vector<std::size_t> ends;
    std::vector<std::size_t> previous(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto place =
            std::upper_bound(ends.begin(), ends.end(), rows[i].time,
                             [&](double time, std::size_t row) { return time < rows[row].time; });
        if (place != ends.begin())
            previous[i] = *std::prev(place);
        if (place == ends.end())
            ends.push_back(i);
        else
            *place = i;
    }
    std::vector<bool> kept(rows.size());
    for (std::size_t left = ends.size(), row = left ? ends.back() : 0; left > 0; --left) {
        kept[row] = true;
        row = previous[row];
    }
    std::vector<Row> ordered;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (kept[i])
            ordered.push_back(rows[i]);
        else
            badLines.add(rows[i].line, "the time is out of order");
    }
    return ordered;
}

double lengthOf(const Row& row) {
    double length = 0;
    computeTiltAngle(&length, row.values[0], row.values[1], row.values[2]);
    return length;
}

std::string nameOf(AccelerationUnit unit) {
    switch (unit) {
    case AccelerationUnit::g:
        return "g";
    case AccelerationUnit::milliG:
        return "mg";
    case AccelerationUnit::metresPerSecondSquared:
        break;
    }
    return "m/s²";
}

/// How much of the unit one g is.
double unitsPerG(AccelerationUnit unit) {
    switch (unit) {
    case AccelerationUnit::g:
        return 1.0;
    case AccelerationUnit::milliG:
        return 1000.0;
    case AccelerationUnit::metresPerSecondSquared:
        break;
    }
    return standardGravity;
}

AccelerationUnit findUnit(const std::string& file, const RecordingLayout& layout,
                          const RecordingOptions& options, const std::vector<Row>& rows,
                          std::vector<std::string>& remarks) {
    if (options.unit) {
        remarks.push_back("unit: " + nameOf(*options.unit) + ", as --unit says");
        return *options.unit;
    }
    if (layout.columns.unit) {
        remarks.push_back("unit: " + nameOf(*layout.columns.unit) +
                          ", as the heading says; --unit says otherwise");
        return *layout.columns.unit;
    }
    std::vector<double> lengths;
    for (const Row& row : rows)
        lengths.push_back(lengthOf(row));
    const double length = median(std::move(lengths));
    for (const AccelerationUnit unit :
         {AccelerationUnit::g, AccelerationUnit::metresPerSecondSquared,
          AccelerationUnit::milliG}) {
        if (length > unitsPerG(unit) / 2 && length < unitsPerG(unit) * 2) {
            remarks.push_back("unit: " + nameOf(unit) + ", told from the lengths (median " +
                              shortly(length) + "); --unit says otherwise");
            return unit;
        }
    }
    const char* hint = length < 0.5 ? "if the logger took gravity out, record the raw "
                                      "accelerometer; else say the unit with --unit"
                                    : "say the unit with --unit";
    throw BadInput(file + ": the unit cannot be told: half of the readings are longer than " +
                   shortly(length) + ", where a phone at rest reads 1 g, 9.8 m/s² or 1000 mg; " +
                   hint);
}

AxisConvention findAxes(const RecordingLayout& layout, const RecordingOptions& options,
                        AccelerationUnit unit, std::vector<std::string>& remarks) {
    AxisConvention axes = unit == AccelerationUnit::metresPerSecondSquared ? AxisConvention::android
                                                                           : AxisConvention::ios;
    std::string reason = "as usual with this unit";
    if (layout.columns.convention) {
        axes = *layout.columns.convention;
        reason = "as the headings say";
    }
    if (options.axes) {
        axes = *options.axes;
        reason = "as --axes says";
    }
    const bool android = axes == AxisConvention::android;
    std::string remark = android ? "axes: Android's (screen up reads z = +1 g), "
                                 : "axes: the iPhone's (screen up reads z = -1 g), ";
    remark += reason;
    if (!options.axes)
        remark += android ? "; --axes ios says otherwise" : "; --axes android says otherwise";
    remarks.push_back(remark);
    return axes;
}

/// The only unit in which such a mean step is that of an accelerometer: about 1 to 1000 a second.
double timeUnitFromStep(double step) {
    if (step < 1.5)
        return 1.0;
    if (step < 1500)
        return 1e-3;
    return step < 1.5e6 ? 1e-6 : 1e-9;
}

std::string nameOfTimeUnit(double unit) {
    if (unit == 1.0)
        return "seconds";
    if (unit == 1e-3)
        return "milliseconds";
    return unit == 1e-6 ? "microseconds" : "nanoseconds";
}

/// Rewrites the times as seconds since the first.
void scaleTimes(const std::string& file, const RecordingLayout& layout, const TimeColumn& time,
                std::vector<Row>& rows, std::vector<std::string>& remarks) {
    const double first = rows.front().time;
    const double span = rows.back().time - first;
    if (span <= 0 && rows.size() > 1)
        throw BadInput(file + ": the time in " + layout.nameOf(time.index) +
                       " is the same in all lines; say how many readings a second there are with "
                       "--rate HZ");
    std::string remark = "time: " + layout.nameOf(time.index) + ", ";
    double unit = 1.0;
    if (time.holdsDates) {
        remark += "dates and times of day";
    } else {
        const auto named = time.index < layout.headings.size()
                               ? timeUnitOf(layout.headings[time.index])
                               : std::nullopt;
        const double step = rows.size() > 1 ? span / static_cast<double>(rows.size() - 1) : 0.0;
        unit = named.value_or(timeUnitFromStep(step));
        remark += nameOfTimeUnit(unit);
        remark += named ? ", as its heading says" : ", told from its steps";
    }
    if (span * unit > longestRecording)
        throw BadInput(file + ": the time in " + layout.nameOf(time.index) + " spans " +
                       shortly(span * unit / (24 * 3600)) +
                       " days; if that is not so, say how many readings a second there are with "
                       "--rate HZ");
    remarks.push_back(remark + "; --rate HZ says otherwise");
    for (Row& row : rows)
        row.time = (row.time - first) * unit;
}

void spaceEvenly(double rate, std::vector<Row>& rows, std::vector<std::string>& remarks) {
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i].time = static_cast<double>(i) / rate;
    remarks.push_back("time: " + shortly(rate) + " readings a second, as --rate says");
}

} // namespace

double Recording::duration() const {
    if (samples.empty() || samples.back().seconds <= 0)
        return 1.0;
    const auto count = static_cast<double>(samples.size());
    return samples.back().seconds * count / (count - 1);
}

const Acceleration& Recording::at(double seconds) const {
    const double moment = std::fmod(seconds, duration());
    const auto next =
        std::upper_bound(samples.begin(), samples.end(), moment,
                         [](double time, const Sample& sample) { return time < sample.seconds; });
    return next == samples.begin() ? next->acceleration : std::prev(next)->acceleration;
}

Recording readRecording(const std::filesystem::path& path, const RecordingOptions& options,
                        std::ostream& complaints) {
    const std::string file = path.string();
    if (options.rate && !(*options.rate > 0 && std::isfinite(*options.rate)))
        throw BadInput("--rate: must be above 0; say how many readings a second there are");
    const std::string text = readText(path);
    const Lines lines = splitLines(text);
    const RecordingLayout layout = findLayout(file, lines);
    std::optional<TimeColumn> time;
    if (!options.rate)
        time = findTime(file, lines, layout);
    BadLines badLines;
    const std::vector<Row> allRows = readRows(lines, layout, time, badLines);
    std::vector<Row> rows = keepInOrder(allRows, badLines);
    badLines.report(file, complaints);
    if (rows.empty())
        throw BadInput(file + ": no line holds a reading");
    if (time && rows.size() * 2 <= allRows.size())
        throw BadInput(file + ": the times are out of order; if " + layout.nameOf(time->index) +
                       " is not the time, name the columns time, x, y, z");

    Recording recording;
    const auto& axesAt = layout.columns.axes;
    recording.remarks.push_back("x, y, z: " + layout.nameOf(axesAt[0]) + ", " +
                                layout.nameOf(axesAt[1]) + ", " + layout.nameOf(axesAt[2]));
    if (time)
        scaleTimes(file, layout, *time, rows, recording.remarks);
    else
        spaceEvenly(*options.rate, rows, recording.remarks);
    const AccelerationUnit unit = findUnit(file, layout, options, rows, recording.remarks);
    const AxisConvention axes = findAxes(layout, options, unit, recording.remarks);
    recording.axesAreAssumed = !options.axes && !layout.columns.convention;
    if (badLines.total())
        recording.remarks.push_back("skipped: " + std::to_string(badLines.total()) +
                                    (badLines.total() == 1 ? " line" : " lines") +
                                    " without a reading");

    const double divisor = axes == AxisConvention::android ? -unitsPerG(unit) : unitsPerG(unit);
    recording.samples.reserve(rows.size());
    for (const auto& [line, seconds, values] : rows)
        recording.samples.push_back(
            {seconds, {values[0] / divisor, values[1] / divisor, values[2] / divisor}});
    return recording;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace noctara
