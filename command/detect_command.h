/// `noctara detect`: advises a Sensitivity from a recording, by the monitor's posture check.
#pragma once

#include "recording/recording_file.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>

namespace noctara {

struct DetectOptions {
    std::filesystem::path file; ///< "-" is standard input.
    RecordingOptions recording;

    /// The setting of this name, for the table. The higher it is, the flatter the phone must lie.
    std::int32_t sensitivity = 5;

    /// The table has a line for each second, instead of one for each run of the same verdict.
    bool wholeTable = false;
    std::optional<std::filesystem::path> report; ///< An HTML page.
};

/// Prints the advice, then the assumptions about the file, the share of readings that pass at each
/// Sensitivity, and the table of seconds. There must be a sample. `options.file` is not read.
void detect(const Recording& recording, const DetectOptions& options, std::ostream& out);

/// Reads a recording and prints that. Returns the exit code of the command. Throws BadInput if the
/// file cannot be used.
int detect(const DetectOptions& options, std::ostream& out, std::ostream& complaints);

} // namespace noctara
