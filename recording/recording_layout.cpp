/// Looks at the first lines of a recording: its delimiter, its headings, its times.
#include "recording/recording_layout.h"

#include "input/bad_input.h"

#include <algorithm>
#include <utility>

namespace noctara {

namespace {

bool holdsNumbers(const std::vector<std::string>& fields) {
    return std::count_if(fields.begin(), fields.end(), [](const std::string& field) {
               return parseNumber(field).has_value();
           }) >= 3;
}

char findDelimiterOf(const Lines& lines) {
    constexpr std::size_t enough = 50;
    Lines first;
    for (const std::string_view line : lines) {
        if (!holdsNoFields(line) && line.size() <= longestLine && first.size() < enough)
            first.push_back(line);
    }
    return findDelimiter(first);
}

/// Without headings: time, x, y, z; or x, y, z alone.
RecordingColumns columnsByPosition(std::size_t fields) {
    RecordingColumns columns;
    if (fields == 3) {
        columns.axes = {0, 1, 2};
    } else {
        columns.axes = {1, 2, 3};
        columns.times = {0};
    }
    return columns;
}

std::string listOf(const std::vector<std::string>& headings) {
    constexpr std::size_t enough = 8;
    std::string list;
    for (std::size_t i = 0; i < std::min(headings.size(), enough); ++i)
        list += (i ? ", " : "") + inQuotes(headings[i]);
    return headings.size() > enough ? list + ", ..." : list;
}

void refuseUnusable(const std::string& file, const RecordingLayout& layout, std::size_t fields) {
    const std::string place = file + ':' + std::to_string(layout.headingLine + 1) + ": ";
    if (!layout.columns.raw)
        throw BadInput(place + layout.nameOf(layout.columns.axes[0]) +
                       " is not what the accelerometer read, but a part of it, without gravity or "
                       "gravity alone; record the raw accelerometer");
    if (layout.delimiter == ',' && fields == 2 * layout.headings.size())
        throw BadInput(place + "the lines have twice as many fields as there are headings: "
                               "decimal commas and commas between fields cannot be told apart; "
                               "export with semicolons or decimal points");
}

} // namespace

std::string RecordingLayout::nameOf(std::size_t column) const {
    return column < headings.size() ? inQuotes(headings[column])
                                    : "column " + std::to_string(column + 1);
}

std::optional<double> TimeColumn::parse(const std::string& field) const {
    return holdsDates ? parseDateTime(field) : parseNumber(field);
}

RecordingLayout findLayout(const std::string& file, const Lines& lines) {
    RecordingLayout layout;
    layout.delimiter = findDelimiterOf(lines);
    FieldSplitter splitter(layout.delimiter);
    std::optional<RecordingColumns> columns;
    std::optional<std::size_t> unknownHeadings;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string_view line = lines[i];
        if (line.size() > longestLine)
            continue;
        // Some programs write the headings as a comment.
        const bool comment = holdsNoFields(line);
        if (comment)
            line.remove_prefix(std::min(line.find_first_not_of("#/ \t"), line.size()));
        const std::vector<std::string>& fields = splitter.split(line);
        if (!comment && holdsNumbers(fields)) {
            layout.firstLine = i;
            if (!columns && unknownHeadings)
                throw BadInput(file + ':' + std::to_string(*unknownHeadings + 1) +
                               ": no three of the headings name x, y and z of an accelerometer (" +
                               listOf(splitter.split(lines[*unknownHeadings])) +
                               "); name the columns time, x, y, z");
            layout.columns = columns ? *columns : columnsByPosition(fields.size());
            if (columns)
                refuseUnusable(file, layout, fields.size());
            return layout;
        }
        if (auto found = findColumns(fields)) {
            columns = std::move(found);
            layout.headings = fields;
            layout.headingLine = i;
        } else if (!comment && fields.size() >= 3 && !unknownHeadings) {
            unknownHeadings = i;
        }
    }
    throw BadInput(file + ": no line holds three numbers; what is read is CSV with time, x, y, z "
                          "of an accelerometer in its lines");
}

TimeColumn findTime(const std::string& file, const Lines& lines, const RecordingLayout& layout) {
    constexpr std::size_t enough = 50;
    const std::string place = file + ':' + std::to_string(layout.firstLine + 1) + ": ";
    if (layout.columns.times.empty())
        throw BadInput(place + "there is no column of times; say how many readings a second there "
                               "are with --rate HZ");
    FieldSplitter splitter(layout.delimiter);
    const std::size_t end = std::min(lines.size(), layout.firstLine + enough);
    for (std::size_t i = layout.firstLine; i < end; ++i) {
        if (holdsNoFields(lines[i]) || lines[i].size() > longestLine)
            continue;
        const std::vector<std::string>& fields = splitter.split(lines[i]);
        for (const bool dates : {false, true}) {
            for (const std::size_t index : layout.columns.times) {
                const TimeColumn time{index, dates};
                if (index < fields.size() && time.parse(fields[index]))
                    return time;
            }
        }
    }
    throw BadInput(place + "the time in " + layout.nameOf(layout.columns.times.front()) +
                   " is neither a number nor an ISO date and time; say how many readings a second "
                   "there are with --rate HZ");
}

} // namespace noctara
