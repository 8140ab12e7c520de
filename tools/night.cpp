#include "tools/night.h"

#include "platform/simulated/property_list_file.h"
#include "platform/simulated/simulated_phone.h"
#include "radios/device_capabilities.h"
#include "tools/bad_input.h"
#include "tools/morning_check.h"
#include "tools/night_summary.h"
#include "tools/scenario_times.h"
#include "tools/story.h"
#include "tools/trace.h"
#include "tools/typical_night.h"

#include <fmt/format.h>

#include <fstream>

namespace noctara {

namespace {

Dictionary readSettings(const std::filesystem::path& file) {
    auto parsed = readPropertyListFile(file);
    if (!parsed.value)
        throw BadInput(fmt::format("{}: {}; a property list, XML or binary, would do",
                                   file.string(), parsed.error));
    auto* dictionary = parsed.value->as<Dictionary>();
    if (!dictionary)
        throw BadInput(fmt::format("{}: the top level is no dictionary; a settings file maps keys "
                                   "such as Enabled to values",
                                   file.string()));
    return *dictionary;
}

/// The file that the trace goes to.
class TraceFile {
public:
    explicit TraceFile(const std::filesystem::path& place) : file(place), lines(place) {
        if (!lines)
            throw BadInput(fmt::format("--trace: {} cannot be written; a file in a folder that "
                                       "exists would do",
                                       file.string()));
    }

    std::ostream& stream() { return lines; }

    /// False when not all of it could be written.
    bool close() {
        lines.close();
        return !lines.fail();
    }

private:
    std::filesystem::path file;
    std::ofstream lines;
};

Date motionBegin(const std::string& text, const Scenario& scenario) {
    return instantOrNext(writtenTime("--motion-at", text, TimeForm::DayOptional),
                         TimeZone(scenario.timezone), scenario.start);
}

void refuseUnlessFolder(const std::filesystem::path& root) {
    // Missing folders are made as files need them; what is there has to be a folder.
    std::error_code ignored;
    for (auto place = std::filesystem::absolute(root); !place.empty(); place = place.parent_path())
        if (std::filesystem::exists(place, ignored)) {
            if (!std::filesystem::is_directory(place, ignored))
                throw BadInput(fmt::format("--root: {} is no folder; the path of a folder, or of "
                                           "one to be made, would do",
                                           place.string()));
            return;
        }
}

} // namespace

Scenario chosenScenario(const std::optional<std::filesystem::path>& file,
                        const ScenarioOverrides& overrides) {
    return file ? readScenario(*file, overrides)
                : parseScenario(typicalNight, "the typical night", overrides);
}

int playNight(const NightOptions& options, std::ostream& out, std::ostream& complaints) {
    Scenario scenario = chosenScenario(options.scenario, options.overrides);
    if (options.settings)
        scenario.settings = readSettings(*options.settings);
    std::optional<Recording> motion;
    Date motionBegins = scenario.start;
    if (options.motion) {
        motion = readRecording(*options.motion, options.recording, complaints);
        if (options.motionAt)
            motionBegins = motionBegin(*options.motionAt, scenario);
    }
    if (options.root)
        refuseUnlessFolder(*options.root);
    std::optional<TraceFile> trace;
    if (options.trace)
        trace.emplace(*options.trace);

    SimulatedPhone phone(scenario, options.root ? makeDirectoryFileStore(*options.root)
                                                : makeMemoryFileStore());
    if (motion)
        phone.motion.source = [&]() -> std::optional<Acceleration> {
            const double since = phone.clock.elapsedClock - motionBegins.secondsSince1970;
            return since < 0 ? phone.motion.posedSample() : motion->at(since);
        };
    Story story(phone, out, options.log);
    NightSummary summary(phone);
    MorningCheck morning(phone);
    std::optional<TraceWriter> writer;
    if (trace)
        phone.observe(writer.emplace(trace->stream()));
    phone.observe(story);
    phone.observe(summary);
    phone.observe(morning);

    std::vector<std::string> wrong;
    try {
        phone.launch();
        phone.playToTheEnd();
    } catch (const std::exception& error) {
        wrong.push_back(fmt::format("the night ended early: {}", error.what()));
    }
    story.finish();
    summary.print(out);

    wrong.insert(wrong.end(), morning.complaints().begin(), morning.complaints().end());
    if (trace && !trace->close())
        wrong.push_back(
            fmt::format("the trace {} could not be written whole", options.trace->string()));
    for (const auto& sentence : wrong)
        out << "\nSomething is wrong: " << sentence << ".\n";
    return wrong.empty() ? 0 : 1;
}

void reportCapabilities(const Scenario& scenario) {
    const SimulatedPhone phone(scenario);
    DeviceCapabilities(phone.platform()).scanCapabilities();
}

} // namespace noctara
