#include "recording/recording_parser.h"

#include "input/bad_input.h"
#include "input/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace noctara {

namespace {

constexpr std::size_t complaintLimit = 10;
constexpr std::size_t linesAhead = 1000;
constexpr double secondsPerDay = 24 * 3600;

bool isNumber(std::string_view text) {
    return parseNumber(text).has_value();
}

} // namespace

RecordingParser::RecordingParser(std::string fileName, const RecordingOptions& recordingOptions,
                                 std::ostream* complaintStream, Visitor readingVisitor) :
    file(std::move(fileName)),
    options(recordingOptions),
    complaints(complaintStream),
    visitor(std::move(readingVisitor)) {}

void RecordingParser::readLine(std::string_view line) {
    if (++lineNumber == 1)
        checkStart(line);
    if (looksAhead) {
        lookAhead(line);
        return;
    }
    if (columns) {
        readReading(line);
        return;
    }
    delimiter = findDelimiter(line);
    const Fields& fields = splitter.split(line, delimiter);
    if (!fields.empty())
        readHeadings(fields);
}

void RecordingParser::finish() {
    if (lineNumber == 0)
        throw BadInput(file + ": the file is empty");
    if (looksAhead)
        endLookAhead();
    if (goesBack) {
        ++outOfOrder;
        skip(goesBack->line, [] { return "the time is out of order"; });
    }
    if (complaints && skipped > complaintLimit)
        *complaints << file << ": " << skipped - complaintLimit << " more lines are skipped\n";
    if (readings == 0)
        throw BadInput(file + ": no line holds a reading; give CSV lines with time, x, y, z of an "
                              "accelerometer");
    if (outOfOrder >= readings || (setBacks > 1 && setBacks * 4 > readings))
        throw BadInput(file + ": the times are out of order; if " + inQuotes(columns->timeName) +
                       " is not the time, name the columns time, x, y, z");
}

void RecordingParser::refuse(const std::string& reason) const {
    throw BadInput(fmt::format("{}:{}: {}", file, lineNumber, reason));
}

void RecordingParser::refuseNextLine(const std::string& reason) {
    ++lineNumber;
    refuse(reason);
}

void RecordingParser::skip(std::size_t line, const std::function<std::string()>& reason) {
    if (++skipped <= complaintLimit && complaints)
        *complaints << fmt::format("{}:{}: {}; the line is skipped\n", file, line, reason());
}

void RecordingParser::checkStart(std::string_view& line) const {
    if (line.starts_with("\xff\xfe") || line.starts_with("\xfe\xff"))
        throw BadInput(file + ": the text is UTF-16; save it as UTF-8");
    if (line.starts_with("PK\x03\x04"))
        throw BadInput(file + ": this is a zip archive; unpack it and give the CSV file of the "
                              "accelerometer");
    if (line.find('\0') != line.npos)
        throw BadInput(file + ": this is not text; give the CSV file that the logger exports");
    if (line.starts_with("\xef\xbb\xbf"))
        line.remove_prefix(3);
}

void RecordingParser::requireTime(bool hasTime) const {
    if (!options.rate && !hasTime)
        refuse(
            "there is no column of times; give the number of readings per second with --rate HZ");
}

void RecordingParser::readHeadings(const Fields& fields) {
    const std::vector<std::string> headings(fields.begin(), fields.end());
    columns = findColumns(headings);
    if (columns) {
        sensorColumn = findSensorColumn(headings);
        looksAhead = sensorColumn.has_value();
        if (!columns->raw)
            refuse(columns->nameOf(columns->axes[0]) +
                   " is gravity alone or acceleration without gravity; record the raw "
                   "accelerometer");
        requireTime(columns->time.has_value());
        return;
    }
    labelColumns = findLabelColumns(headings);
    looksAhead = labelColumns.has_value();
    if (labelColumns)
        requireTime(labelColumns->time.has_value());
    else if (std::count_if(fields.begin(), fields.end(), isNumber) >= 3)
        refuse("no headings above this line name x, y and z of an accelerometer; name the columns "
               "time, x, y, z");
}

std::string RecordingParser::labelIn(const Fields& fields) const {
    std::string label;
    const auto add = [&](std::size_t column) {
        if (column < fields.size())
            label += (label.empty() ? "" : " ") + std::string(fields[column]);
    };
    if (labelColumns)
        std::for_each(labelColumns->labels.begin(), labelColumns->labels.end(), add);
    else
        add(*sensorColumn);
    return label;
}

void RecordingParser::lookAhead(std::string_view line) {
    ahead.emplace_back(lineNumber, line);
    const std::string label = labelIn(splitter.split(line, delimiter));
    if (!label.empty() && std::find(labels.begin(), labels.end(), label) == labels.end())
        labels.push_back(label);
    if (ahead.size() == linesAhead)
        endLookAhead();
}

void RecordingParser::endLookAhead() {
    looksAhead = false;
    if (labelColumns) {
        columns = findColumns(labels);
        if (!columns)
            refuse("no lines above name x, y and z of an accelerometer; name the columns time, x, "
                   "y, z");
        if (!columns->raw)
            refuse(columns->nameOf(columns->axes[0]) +
                   " is gravity alone or acceleration without gravity; record the raw "
                   "accelerometer");
        columns->time = labelColumns->time;
        columns->timeUnit = labelColumns->timeUnit;
        columns->timeName = labelColumns->timeName;
    } else {
        // The shortest name: "accelerometer", not "accelerometer uncalibrated".
        for (const std::string& label : labels)
            if (namesRawAccelerometer(label) && (!sensor || label.size() < sensor->size()))
                sensor = label;
        if (labels.size() < 2)
            sensor.reset();
    }
    const auto lines = std::exchange(ahead, {});
    const std::size_t number = lineNumber;
    for (const auto& [line, text] : lines) {
        lineNumber = line;
        readReading(text);
    }
    lineNumber = number;
}

void RecordingParser::readReading(std::string_view line) {
    const Fields& fields = splitter.split(line, delimiter);
    if (fields.empty())
        return;
    if (labelColumns)
        readValue(fields);
    else if (!sensor || (*sensorColumn < fields.size() && fields[*sensorColumn] == *sensor))
        readAxes(fields);
}

/// A reading is complete with the last of its three values, and has the time of that one.
void RecordingParser::readValue(const Fields& fields) {
    const std::string label = labelIn(fields);
    for (std::size_t axis = 0; axis < values.size(); ++axis) {
        if (label != columns->headings[columns->axes[axis]])
            continue;
        double value = 0;
        if (!readNumber(fields, labelColumns->value, label, value))
            return;
        values[axis] = value;
        double time = 0;
        if (!values[0] || !values[1] || !values[2] || !readTime(fields, labelColumns->time, time))
            return;
        const Acceleration acceleration{*values[0], *values[1], *values[2]};
        values = {};
        take(time, acceleration);
        return;
    }
}

void RecordingParser::readAxes(const Fields& fields) {
    if (readings == 0 && delimiter == ',' && fields.size() == 2 * columns->headings.size())
        refuse("this line has twice as many fields as there are headings: decimal commas and "
               "commas between fields cannot be told apart; export with semicolons or decimal "
               "points");
    const auto& [x, y, z] = columns->axes;
    Acceleration acceleration;
    double time = 0;
    if (readNumber(fields, x, "x", acceleration.x) && readNumber(fields, y, "y", acceleration.y) &&
        readNumber(fields, z, "z", acceleration.z) && readTime(fields, columns->time, time))
        take(time, acceleration);
}

bool RecordingParser::readNumber(const Fields& fields, std::size_t column, std::string_view name,
                                 double& number) {
    if (column >= fields.size()) {
        skip(lineNumber, [&] {
            return fmt::format("{} {} where at least {} are needed", fields.size(),
                               fields.size() == 1 ? "field" : "fields", column + 1);
        });
        return false;
    }
    const auto value = parseNumber(fields[column]);
    if (!value) {
        skip(lineNumber, [&] {
            return fmt::format("{} is not a number: {}", printable(name), inQuotes(fields[column]));
        });
        return false;
    }
    number = *value;
    return true;
}

/// The first time decides the form of all.
bool RecordingParser::readTime(const Fields& fields, std::optional<std::size_t> column,
                               double& time) {
    if (options.rate)
        return true;
    if (*column >= fields.size()) {
        skip(lineNumber, [&] { return "there is no time"; });
        return false;
    }
    const std::string_view field = fields[*column];
    if (!timeForm)
        timeForm = parseNumber(field)      ? FormOfTimes::number
                   : parseClockTime(field) ? FormOfTimes::clock
                                           : FormOfTimes::date;
    const auto value = parseTime(field);
    if (!value && readings == 0 && !goesBack)
        refuse("the time in " + inQuotes(columns->timeName) +
               " is neither a number nor an ISO date and time nor a time of day; give the number "
               "of readings per second with --rate HZ");
    if (!value) {
        skip(lineNumber, [&] {
            return fmt::format("the time is not a {}: {}",
                               timeForm == FormOfTimes::number  ? "number"
                               : timeForm == FormOfTimes::clock ? "time of day"
                                                                : "date",
                               inQuotes(field));
        });
        return false;
    }
    time = *value;
    return true;
}

std::optional<double> RecordingParser::parseTime(std::string_view field) {
    if (timeForm == FormOfTimes::number)
        return parseNumber(field);
    if (timeForm == FormOfTimes::date)
        return parseDateTime(field);
    const auto clock = parseClockTime(field);
    if (!clock)
        return std::nullopt;
    if (readings > 0 && *clock + days < latest - secondsPerDay / 2)
        days += secondsPerDay;
    return *clock + days;
}

void RecordingParser::take(double time, const Acceleration& acceleration) {
    const Pending reading{time, acceleration, lineNumber};
    if (goesBack) {
        const Pending back = *std::exchange(goesBack, std::nullopt);
        if (time < latest && time >= back.time) {
            ++setBacks;
            deliver(back, true);
        } else {
            ++outOfOrder;
            skip(back.line, [] { return "the time is out of order"; });
        }
    }
    if (readings > 0 && time < latest)
        goesBack = reading;
    else
        deliver(reading, false);
}

void RecordingParser::deliver(const Pending& reading, bool afterSetBack) {
    ++readings;
    latest = reading.time;
    visitor({reading.time, reading.acceleration, afterSetBack});
}

} // namespace noctara
