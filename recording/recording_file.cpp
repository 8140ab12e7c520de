/// Reads the samples of a file line by line.
#include "recording/recording_file.h"

#include "input/bad_input.h"
#include "input/printable.h"
#include "recording/csv_line.h"
#include "recording/recording_columns.h"
#include "recording/recording_conversion.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace noctara {

namespace {

using Fields = std::vector<std::string>;

/// Why a line is skipped.
class NoReading : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Collects samples, in the numbers of the file, until makeRecording() converts them.
class RecordingReader {
public:
    RecordingReader(std::string fileName, const RecordingOptions& recordingOptions,
                    std::ostream& complaintStream) :
        file(std::move(fileName)), options(recordingOptions), complaints(complaintStream) {}

    void readLines(std::istream& in) {
        std::vector<char> buffer(longestLine + 1);
        while (in.getline(buffer.data(), longestLine + 1)) {
            // The count includes the newline, which the last line may lack.
            const auto length = in.gcount() - (in.eof() ? 0 : 1);
            std::string line(buffer.data(), static_cast<std::size_t>(length));
            if (++lineNumber == 1)
                checkStart(line);
            readLine(line);
        }
        if (in.gcount() > 0 && !in.bad()) {
            ++lineNumber;
            refuse(fmt::format("this line has more than {} bytes; give the CSV file that the "
                               "logger exports",
                               longestLine));
        }
        if (skipped > complaintLimit)
            complaints << printable(file) << ": " << skipped - complaintLimit
                       << " more lines are skipped\n";
    }

    Recording makeRecording() {
        auto& samples = recording.samples;
        if (lineNumber == 0)
            throw BadInput(file + ": the file is empty");
        if (samples.empty())
            throw BadInput(file + ": no line holds a reading; give CSV lines with time, x, y, z of "
                                  "an accelerometer");
        if (outOfOrder >= samples.size())
            throw BadInput(file + ": the times are out of order; if " +
                           columns->nameOf(*columns->time) +
                           " is not the time, name the columns time, x, y, z");
        const auto& [x, y, z] = columns->axes;
        recording.remarks.push_back(fmt::format("x, y, z: {}, {}, {}", columns->nameOf(x),
                                                columns->nameOf(y), columns->nameOf(z)));
        if (options.rate)
            setRate(recording, *options.rate);
        else
            convertTimes(recording, file, *columns, timesAreDates);
        convertAccelerations(recording, file, *columns, options);
        if (skipped > 0)
            recording.remarks.push_back(fmt::format("skipped: {} {} without a reading", skipped,
                                                    skipped == 1 ? "line" : "lines"));
        return std::move(recording);
    }

private:
    static constexpr std::size_t complaintLimit = 10;
    /// In bytes. Far more than any logger writes. The file may be a device without an end.
    static constexpr std::streamsize longestLine = 65'536;

    [[noreturn]] void refuse(const std::string& reason) const {
        throw BadInput(fmt::format("{}:{}: {}", file, lineNumber, reason));
    }

    void checkStart(std::string& line) const {
        if (line.starts_with("\xff\xfe") || line.starts_with("\xfe\xff"))
            throw BadInput(file + ": the text is UTF-16; save it as UTF-8");
        if (line.starts_with("PK\x03\x04"))
            throw BadInput(file + ": this is a zip archive; unpack it and give the CSV file of the "
                                  "accelerometer");
        if (line.find('\0') != line.npos)
            throw BadInput(file + ": this is not text; give the CSV file that the logger exports");
        if (line.starts_with("\xef\xbb\xbf"))
            line.erase(0, 3);
    }

    void readLine(const std::string& line) {
        if (!columns)
            delimiter = findDelimiter(line);
        const Fields fields = splitLine(line, delimiter);
        if (fields.empty())
            return;
        if (columns)
            readSample(fields);
        else
            readHeadings(fields);
    }

    void readHeadings(const Fields& fields) {
        columns = findColumns(fields);
        if (!columns) {
            if (std::count_if(fields.begin(), fields.end(), parseNumber) >= 3)
                refuse("no headings above this line name x, y and z of an accelerometer; name the "
                       "columns time, x, y, z");
            return;
        }
        if (!columns->raw)
            refuse(columns->nameOf(columns->axes[0]) +
                   " is gravity alone or acceleration without gravity; record the raw "
                   "accelerometer");
        if (!options.rate && !columns->time)
            refuse("there is no column of times; give the number of readings per second with "
                   "--rate HZ");
    }

    void readSample(const Fields& fields) {
        if (recording.samples.empty() && delimiter == ',' &&
            fields.size() == 2 * columns->headings.size())
            refuse("this line has twice as many fields as there are headings: decimal commas and "
                   "commas between fields cannot be told apart; export with semicolons or decimal "
                   "points");
        try {
            const auto& [x, y, z] = columns->axes;
            const Acceleration acceleration{axisOf(fields, x, 'x'), axisOf(fields, y, 'y'),
                                            axisOf(fields, z, 'z')};
            const double seconds = options.rate ? 0.0 : timeOf(fields);
            recording.samples.push_back({seconds, acceleration});
        } catch (const NoReading& error) {
            if (++skipped <= complaintLimit)
                complaints << fmt::format("{}:{}: {}; the line is skipped\n", printable(file),
                                          lineNumber, printable(error.what()));
        }
    }

    static const std::string& fieldAt(const Fields& fields, std::size_t column) {
        if (column >= fields.size())
            throw NoReading(fmt::format("{} {} where at least {} are needed", fields.size(),
                                        fields.size() == 1 ? "field" : "fields", column + 1));
        return fields[column];
    }

    static double axisOf(const Fields& fields, std::size_t column, char name) {
        const std::string& field = fieldAt(fields, column);
        const auto value = parseNumber(field);
        if (!value)
            throw NoReading(fmt::format("{} is not a number: {}", name, inQuotes(field)));
        return *value;
    }

    /// The first time decides whether all times are dates.
    double timeOf(const Fields& fields) {
        const bool first = recording.samples.empty();
        const std::string& field = fieldAt(fields, *columns->time);
        if (first)
            timesAreDates = !parseNumber(field);
        const auto time = timesAreDates ? parseDateTime(field) : parseNumber(field);
        if (!time && first)
            refuse("the time in " + columns->nameOf(*columns->time) +
                   " is neither a number nor an ISO date and time; give the number of readings per "
                   "second with --rate HZ");
        if (!time)
            throw NoReading(fmt::format("the time is not a {}: {}",
                                        timesAreDates ? "date" : "number", inQuotes(field)));
        if (!first && *time < recording.samples.back().seconds) {
            ++outOfOrder;
            throw NoReading("the time is out of order");
        }
        return *time;
    }

    const std::string file;
    const RecordingOptions& options;
    std::ostream& complaints;
    std::size_t lineNumber = 0;
    std::size_t skipped = 0;
    std::size_t outOfOrder = 0;
    char delimiter = ',';
    std::optional<RecordingColumns> columns;
    bool timesAreDates = false;
    Recording recording;
};

} // namespace

Recording readRecording(const std::filesystem::path& path, const RecordingOptions& options,
                        std::ostream& complaints) {
    if (options.rate && !(*options.rate > 0 && std::isfinite(*options.rate)))
        throw BadInput("--rate: must be above 0; give the number of readings per second");
    RecordingReader reader(path.string(), options, complaints);
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    reader.readLines(file);
    if (!file.is_open() || file.bad())
        throw BadInput(
            fmt::format("{}: cannot be read: {}; give the CSV file that the logger exports",
                        path.string(), std::generic_category().message(errno)));
    return reader.makeRecording();
}

} // namespace noctara
