/// What this process has used of the machine.
#pragma once

#include <string>

namespace noctara {

/// A few lines of text: of the monitor thread its processor time and voluntary context switches, of
/// the process its processor time, peak memory and the heap in use.
std::string usageOfThisProcess();

} // namespace noctara
