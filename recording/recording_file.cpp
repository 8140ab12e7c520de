#include "recording/recording_file.h"

#include "input/bad_input.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

namespace noctara {

namespace {

/// Decompressed. A night with 400 readings a second has half of it.
constexpr std::size_t mostMebibytes = 1024;

/// In bytes. Far more than any logger writes. The file may be a device without an end.
constexpr std::size_t longestLine = 65'536;

void refuseRate(const RecordingOptions& options) {
    if (options.rate && !(*options.rate > 0 && std::isfinite(*options.rate)))
        throw BadInput("--rate: must be above 0; give the number of readings per second");
}

std::vector<std::string> remarksOn(const RecordingParser& parser) {
    const RecordingColumns& columns = parser.foundColumns();
    const auto& [x, y, z] = columns.axes;
    std::vector<std::string> remarks{fmt::format("x, y, z: {}, {}, {}", columns.nameOf(x),
                                                 columns.nameOf(y), columns.nameOf(z))};
    if (parser.chosenSensor())
        remarks.push_back("sensor: " + inQuotes(*parser.chosenSensor()) +
                          ", the lines of others are left out");
    return remarks;
}

} // namespace

RecordingFile::RecordingFile(const std::filesystem::path& path,
                             const RecordingOptions& recordingOptions, std::ostream& complaints) :
    options(recordingOptions), name(shownName(path)) {
    refuseRate(options);
    try {
        input.emplace(path, mostMebibytes, InputFile::Passes::several);
    } catch (const UnreadableFile& error) {
        throw BadInput(fmt::format("{}: cannot be read: {}; give the CSV file that the logger "
                                   "exports",
                                   name, error.what()));
    }
    RecordingSurvey survey;
    RecordingParser parser(name, options, &complaints,
                           [&survey](const RawReading& reading) { survey.add(reading); });
    readLines(parser);
    found.remarks = remarksOn(parser);
    conversion.emplace(survey, parser, options, name, found.remarks);
    found.samples = survey.count();
    found.lastSeconds = conversion->lastSeconds();
    found.medianStep = conversion->medianStep();
    found.axesAreAssumed = !options.axes;
    if (const std::size_t skipped = parser.skippedCount())
        found.remarks.push_back(fmt::format("skipped: {} {} without a reading", skipped,
                                            skipped == 1 ? "line" : "lines"));
}

void RecordingFile::forEachSample(const std::function<void(const Recording::Sample&)>& visit) {
    input->rewind();
    RecordingParser parser(name, options, nullptr,
                           [&](const RawReading& reading) { visit(conversion->convert(reading)); });
    readLines(parser);
}

void RecordingFile::readLines(RecordingParser& parser) {
    std::vector<char> buffer(std::size_t{4} * longestLine);
    std::size_t kept = 0; // The beginning of a line whose end is not read yet.
    const auto readMore = [&] {
        try {
            return input->read(buffer.data() + kept, buffer.size() - kept);
        } catch (const UnreadableFile& error) {
            throw BadInput(fmt::format("{}: cannot be read: {}; give the CSV file that the logger "
                                       "exports",
                                       name, error.what()));
        }
    };
    const auto checkLength = [&](std::size_t length) {
        if (length > longestLine)
            parser.refuseNextLine(fmt::format("this line has more than {} bytes; give the CSV file "
                                              "that the logger exports",
                                              longestLine));
    };
    while (const std::size_t count = readMore()) {
        std::string_view rest(buffer.data(), kept + count);
        for (auto end = rest.find('\n', kept); end != rest.npos; end = rest.find('\n')) {
            checkLength(end);
            parser.readLine(rest.substr(0, end));
            rest.remove_prefix(end + 1);
        }
        checkLength(rest.size());
        kept = rest.size();
        std::copy(rest.begin(), rest.end(), buffer.begin());
    }
    if (kept > 0)
        parser.readLine({buffer.data(), kept});
    parser.finish();
}

Recording readRecording(const std::filesystem::path& path, const RecordingOptions& options,
                        std::ostream& complaints) {
    RecordingFile file(path, options, complaints);
    Recording recording;
    recording.remarks = file.summary().remarks;
    recording.axesAreAssumed = file.summary().axesAreAssumed;
    recording.medianStep = file.summary().medianStep;
    recording.samples.reserve(file.summary().samples);
    file.forEachSample([&](const auto& sample) { recording.samples.push_back(sample); });
    return recording;
}

} // namespace noctara
