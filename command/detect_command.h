/// `noctara detect`: prints the results of the monitor's posture check on a recording.
#pragma once

#include "recording/recording_file.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>

namespace noctara {

struct DetectOptions {
    std::filesystem::path file;
    RecordingOptions recording;

    /// The setting of this name. The higher it is, the flatter the phone must lie.
    std::int32_t sensitivity = 5;

    std::optional<std::filesystem::path> report; ///< An HTML page.
};

/// Prints the assumptions about the file, the verdict for each second at a Sensitivity, the share
/// of readings that pass at each Sensitivity, and the suitable Sensitivity. There must be a sample.
void detect(const Recording& recording, std::int32_t sensitivity, std::ostream& out);

/// Reads a recording and prints that. Returns the exit code of the command. Throws BadInput if the
/// file cannot be used.
int detect(const DetectOptions& options, std::ostream& out, std::ostream& complaints);

} // namespace noctara
