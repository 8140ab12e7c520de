/// The functions of script_functions.h that read recordings of the accelerometer.
#include "page/script_functions.h"
#include "recording/recording_file.h"
#include "recording/sensitivity_advice.h"
#include "report/recording_record.h"

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace noctara {

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

RecordingOptions optionsOf(const Json& question) {
    RecordingOptions options;
    if (question.contains("rate"))
        options.rate = question["rate"].get<double>();
    if (question.contains("axes"))
        options.axes = question["axes"] == "ios" ? AxisConvention::ios : AxisConvention::android;
    if (question.contains("unit"))
        if (const auto unit = findUnitOfAcceleration(question["unit"].get<std::string>()))
            options.unit = unit->unit;
    if (question.contains("timeUnit"))
        options.timeUnit = findUnitOfTime(question["timeUnit"].get<std::string>());
    return options;
}

} // namespace

Json recordingOf(const Json& question) {
    const std::string name = question.at("file");
    std::ostringstream complaints;
    const Recording recording = readRecording(name, optionsOf(question), complaints);
    Json page = recordingForPage(recording, name, adviceFrom(recording));
    page["skipped"] = linesOf(complaints.str());
    return page;
}

} // namespace noctara
