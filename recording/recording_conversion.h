/// Converts the numbers of a file to seconds, and to g in the phone's axes.
///
/// The functions add their assumptions to the recording's remarks. There must be a sample. They
/// throw BadInput, with a text that begins with `file`, for numbers that are not plausible.
#pragma once

#include "recording/recording_columns.h"
#include "recording/recording_file.h"

#include <string>

namespace noctara {

/// Converts the times of the samples to seconds since the first sample. With `dates` the times are
/// in seconds already.
void convertTimes(Recording& recording, const std::string& file, const RecordingColumns& columns,
                  bool dates);

/// Spaces the samples evenly.
void setRate(Recording& recording, double rate);

/// Converts the accelerations to g in the phone's axes.
void convertAccelerations(Recording& recording, const std::string& file,
                          const RecordingColumns& columns, const RecordingOptions& options);

} // namespace noctara
