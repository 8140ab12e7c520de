#include "command/night_command.h"

#include "host/host.h"
#include "input/bad_input.h"
#include "night/chosen_scenario.h"
#include "night/night_files.h"
#include "night/night_report.h"
#include "night/scenario_times.h"
#include "output/output_file.h"
#include "phones/model/property_list_file.h"
#include "phones/simulated/simulated_phone.h"

#include <fmt/format.h>

namespace noctara {

namespace {

Dictionary readSettings(const std::filesystem::path& file) {
    auto parsed = readPropertyListFile(file);
    if (!parsed.value)
        throw BadInput(fmt::format("{}: {}; give an XML or binary property list", file.string(),
                                   parsed.error));
    auto* dictionary = parsed.value->as<Dictionary>();
    if (!dictionary)
        throw BadInput(
            fmt::format("{}: the top level is not a dictionary; a settings file maps keys "
                        "such as Enabled to values",
                        file.string()));
    return *dictionary;
}

Date motionBegin(const std::string& text, const Scenario& scenario) {
    const Date begin = instantOrNext(writtenTime("--motion-at", text, TimeForm::DayOptional),
                                     TimeZone(scenario.timezone), scenario.start);
    if (begin >= scenario.end)
        throw BadInput(fmt::format(
            "--motion-at: {} is after the end of the night; give an earlier time", inQuotes(text)));
    return begin;
}

/// The files that the night reads.
std::vector<std::filesystem::path> inputsOf(const NightOptions& options) {
    std::vector<std::filesystem::path> inputs;
    for (const auto& input : {options.scenario, options.settings, options.motion})
        if (input)
            inputs.push_back(*input);
    return inputs;
}

std::unique_ptr<FileStore> fileStore(const NightOptions& options) {
    if (!options.root)
        return makeMemoryFileStore();
    auto store = makeDirectoryFileStore(*options.root);
    // An existing settings file is kept unless the user gives another one.
    if (options.settings)
        store->remove(settingsFilePath);
    return store;
}

} // namespace

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
    std::optional<OutputFile> trace;
    if (options.trace)
        trace.emplace("--trace", *options.trace, inputsOf(options));
    if (options.root)
        prepareRoot(*options.root);

    SimulatedPhone phone(scenario, fileStore(options));
    if (motion)
        phone.motion.source = [&]() -> std::optional<Acceleration> {
            const double since = phone.clock.monotonic - motionBegins.secondsSince1970;
            return since < 0 ? phone.motion.posedSample() : motion->at(since);
        };
    NightReport report(
        scenario, [&] { return phone.now(); }, out, options.log, trace ? &*trace : nullptr);
    phone.observe(report);
    monitorObserver = &report;
    if (motion)
        report.story.tellOfRecording(options.motion->filename().string(), motionBegins,
                                     motion->remarks);

    std::optional<std::string> wrong;
    try {
        phone.launch();
        if (!NoctaraInstance)
            report.story.tellOfInertness();
        phone.playToTheEnd();
    } catch (const std::exception& error) {
        wrong = std::string("the night ended early: ") + error.what();
    }
    return report.finish(wrong);
}

} // namespace noctara
