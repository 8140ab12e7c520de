/// Reads the CSV files that accelerometer loggers write: phyphox, Sensor Logger, SensorLog,
/// AndroSensor, Physics Toolbox, MATLAB Mobile, and others with similar headings.
///
/// Fields are separated by semicolons, tabs or commas; numbers have decimal points or commas. The
/// columns are found by their headings. Lines before the headings are ignored. A file may have one
/// value in each line, with its axis; or lines of several sensors. A later line without a reading
/// is skipped and reported to `complaints` as "FILE:LINE: ..."; after ten of them the rest is only
/// counted. Where the clock was set back, the later readings follow one step after the earlier
/// ones.
///
/// The file may be compressed with gzip, and "-" is standard input.
#pragma once

#include "input/input_file.h"
#include "recording/recording.h"
#include "recording/recording_conversion.h"
#include "recording/recording_options.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <ostream>
#include <string>

namespace noctara {

/// A file that is read twice: first to find its units, then for the samples. The samples of a night
/// need not fit into memory.
class RecordingFile {
public:
    /// Reads the file for the first time. There is at least one sample. Throws BadInput when the
    /// file cannot be used.
    RecordingFile(const std::filesystem::path& path, const RecordingOptions& options,
                  std::ostream& complaints);

    const RecordingSummary& summary() const { return found; }

    /// Calls `visit` for each sample in the order of time. May be called once. Throws BadInput if
    /// the file can no longer be read.
    void forEachSample(const std::function<void(const Recording::Sample&)>& visit);

private:
    void readLines(RecordingParser& parser);

    const RecordingOptions options;
    const std::string name;
    std::optional<InputFile> input;
    std::optional<RecordingConversion> conversion;
    RecordingSummary found;
};

/// The whole recording. Throws BadInput as RecordingFile does.
Recording readRecording(const std::filesystem::path& path, const RecordingOptions& options,
                        std::ostream& complaints);

} // namespace noctara
