/// From the numbers in a file to seconds, and to g in the phone's axes.
///
/// What was assumed is added to the recording's remarks. There must be a sample. Throws BadInput,
/// which begins with `file`, when the numbers make no sense.
#pragma once

#include "recording/recording_columns.h"
#include "recording/recording_file.h"

#include <string>

namespace noctara {

/// Makes the times of the samples seconds since the first. With `dates` they are seconds already.
void convertTimes(Recording& recording, const std::string& file, const RecordingColumns& columns,
                  bool dates);

/// Spaces the samples evenly.
void setRate(Recording& recording, double rate);

/// Makes the accelerations g in the phone's axes.
void convertAccelerations(Recording& recording, const std::string& file,
                          const RecordingColumns& columns, const RecordingOptions& options);

} // namespace noctara
