/// A recording for the report page.
#pragma once

#include "night/trace.h"
#include "recording/recording.h"
#include "recording/sensitivity_advice.h"

#include <cstddef>
#include <string>

namespace noctara {

/// A longer recording is shown in this many groups of samples, each by its lowest and its highest.
inline constexpr std::size_t longestShownRecording = 20000;

/// The recording as the page's script takes it; docs/report.md describes it. There must be a
/// sample.
Json recordingForPage(const Recording& recording, const std::string& name,
                      const SensitivityAdvice& advice);

} // namespace noctara
