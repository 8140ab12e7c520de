/// The machine's resources that this process has used.
#pragma once

#include <string>

namespace noctara {

/// Lines of text: for each thread its processor time and its voluntary context switches, and for
/// the process its processor time, peak memory and heap in use.
std::string usageOfThisProcess();

} // namespace noctara
