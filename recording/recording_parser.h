/// Finds the readings in the lines of a recording.
#pragma once

#include "platform/motion.h"
#include "recording/csv_line.h"
#include "recording/recording_columns.h"
#include "recording/recording_options.h"

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace noctara {

enum class FormOfTimes { number, date, clock };

/// A reading in the numbers of the file.
struct RawReading {
    /// In the unit of the file, or in seconds for dates and clock times. 0 if the user gives a
    /// rate.
    double time = 0;
    Acceleration acceleration;

    /// The clock was set back before this reading.
    bool afterSetBack = false;
};

/// The lines must be given in order. Throws BadInput, with a text that begins with `file`, when
/// they cannot be those of a recording.
class RecordingParser {
public:
    using Visitor = std::function<void(const RawReading&)>;

    /// Lines without a reading are reported to `complaints`, if there is one.
    RecordingParser(std::string file, const RecordingOptions& options, std::ostream* complaints,
                    Visitor visitor);

    void readLine(std::string_view line);

    /// Throws BadInput about the line after those that were given.
    [[noreturn]] void refuseNextLine(const std::string& reason);

    /// After the last line.
    void finish();

    /// There was a reading, so this is known.
    const RecordingColumns& foundColumns() const { return *columns; }
    FormOfTimes formOfTimes() const { return *timeForm; }

    std::size_t readingCount() const { return readings; }
    std::size_t skippedCount() const { return skipped; }
    std::size_t setBackCount() const { return setBacks; }

    /// The sensor whose lines were taken, if the file has lines of several.
    const std::optional<std::string>& chosenSensor() const { return sensor; }

private:
    struct Pending {
        double time;
        Acceleration acceleration;
        std::size_t line;
    };

    [[noreturn]] void refuse(const std::string& reason) const;
    void skip(std::size_t line, const std::function<std::string()>& reason);
    void checkStart(std::string_view& line) const;
    void readHeadings(const Fields& fields);
    void requireTime(bool hasTime) const;
    void lookAhead(std::string_view line);
    void endLookAhead();
    std::string labelIn(const Fields& fields) const;
    void readReading(std::string_view line);
    void readValue(const Fields& fields);
    void readAxes(const Fields& fields);
    bool readNumber(const Fields& fields, std::size_t column, std::string_view name,
                    double& number);
    bool readTime(const Fields& fields, std::optional<std::size_t> column, double& time);
    std::optional<double> parseTime(std::string_view field);
    void take(double time, const Acceleration& acceleration);
    void deliver(const Pending& reading, bool afterSetBack);

    const std::string file;
    const RecordingOptions& options;
    std::ostream* const complaints;
    const Visitor visitor;

    LineSplitter splitter;
    std::size_t lineNumber = 0;
    char delimiter = ',';
    std::optional<RecordingColumns> columns;
    std::optional<LabelColumns> labelColumns;
    std::vector<std::string> labels;

    /// The first lines after the headings, if they tell which sensors there are.
    bool looksAhead = false;
    std::vector<std::pair<std::size_t, std::string>> ahead;
    std::optional<std::size_t> sensorColumn;
    std::optional<std::string> sensor;

    /// The values of a reading whose axes are on lines of their own.
    std::array<std::optional<double>, 3> values;

    std::optional<FormOfTimes> timeForm;
    double days = 0; ///< Midnights that clock times have crossed, in seconds.
    double latest = 0;
    /// A reading whose time goes back. The next one tells whether the clock was set back.
    std::optional<Pending> goesBack;

    std::size_t readings = 0;
    std::size_t skipped = 0;
    std::size_t outOfOrder = 0;
    std::size_t setBacks = 0;
};

} // namespace noctara
