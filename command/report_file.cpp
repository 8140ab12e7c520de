#include "command/report_file.h"

#include "input/bad_input.h"
#include "report/report_page.h"

#include <nlohmann/json.hpp>

namespace noctara {

namespace fs = std::filesystem;

std::unique_ptr<OutputFile> makeReportFile(const std::optional<fs::path>& place,
                                           const std::vector<fs::path>& inputs,
                                           const std::optional<fs::path>& other) {
    if (!place)
        return nullptr;
    if (OutputFile::isStandardOutput(*place))
        throw BadInput("--report: the page cannot go to standard output; give a file");
    if (other && fs::weakly_canonical(*place) == fs::weakly_canonical(*other))
        throw BadInput("--report: " + inQuotes(place->string()) +
                       " is written by another option; give another file");
    return std::make_unique<OutputFile>("--report", *place, inputs);
}

bool writeReport(OutputFile& file, const Json& data, std::ostream& complaints) {
    writeReportPage(file.stream(), data);
    if (file.keep())
        return true;
    complaints << "Something is wrong: the report " << inQuotes(file.path().string())
               << " could not be written whole.\n";
    return false;
}

} // namespace noctara
