/// The file of a report page.
#pragma once

#include "night/trace.h"
#include "output/output_file.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace noctara {

/// The file that the option --report names, or null if it was not given. Throws BadInput if it
/// cannot be written, or if it is one of the `inputs` or the file `other` that the command writes
/// too.
std::unique_ptr<OutputFile> makeReportFile(const std::optional<std::filesystem::path>& place,
                                           const std::vector<std::filesystem::path>& inputs,
                                           const std::optional<std::filesystem::path>& other = {});

/// Writes the page with these data. If that fails, tells `complaints` and returns false.
bool writeReport(OutputFile& file, const Json& data, std::ostream& complaints);

} // namespace noctara
