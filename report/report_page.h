/// The report: one HTML page that needs no network. docs/report.md describes its data.
#pragma once

#include "night/trace.h"

#include <ostream>

namespace noctara {

/// Writes the page with these data in it. Text that is not UTF-8 is replaced.
void writeReportPage(std::ostream& out, const Json& data);

} // namespace noctara
