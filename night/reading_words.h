/// A reading of the accelerometer, in the words of a story.
#pragma once

#include "monitor/decisions.h"

#include <string>

namespace noctara {

/// "lying screen down, 0.3° off", or why the reading does not count as lying.
std::string readingInWords(const Reading& reading);

} // namespace noctara
