/// The machine's resources that this process has used.
#pragma once

#include <string>

namespace noctara {

/// Lines of text. For each thread: processor time and voluntary context switches. For the process:
/// processor time, peak memory and heap in use.
std::string usageOfThisProcess();

} // namespace noctara
