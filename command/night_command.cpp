#include "command/night_command.h"

#include "command/night_player.h"
#include "host/host.h"
#include "input/bad_input.h"
#include "input/input_file.h"
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
        throw BadInput(fmt::format("{}: {}; give an XML or binary property list", shownName(file),
                                   parsed.error));
    auto* dictionary = parsed.value->as<Dictionary>();
    if (!dictionary)
        throw BadInput(
            fmt::format("{}: the top level is not a dictionary; a settings file maps keys "
                        "such as Enabled to values",
                        shownName(file)));
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

NightInput nightInput(const NightOptions& options, std::ostream& complaints) {
    if (options.settings && options.motion && isStandardInput(*options.settings) &&
        isStandardInput(*options.motion))
        throw BadInput("--settings and --motion are both -, but standard input can be read only "
                       "once; give a file for one of them");
    NightInput input{chosenScenario(options.scenario, options.overrides), std::nullopt, {}};
    Scenario& scenario = input.scenario;
    if (options.settings)
        scenario.settings = readSettings(*options.settings);
    input.motionBegins = scenario.start;
    if (options.motion) {
        input.motion = readRecording(*options.motion, options.recording, complaints);
        if (options.motionAt)
            input.motionBegins = motionBegin(*options.motionAt, scenario);
    }
    return input;
}

} // namespace

int playNight(const NightOptions& options, std::ostream& out, std::ostream& complaints) {
    const NightInput input = nightInput(options, complaints);
    std::optional<OutputFile> trace;
    if (options.trace)
        trace.emplace("--trace", *options.trace, inputsOf(options));
    if (options.root)
        prepareRoot(*options.root);

    auto phone = makePhone(input, fileStore(options));
    NightReport report(
        input.scenario, [&] { return phone->now(); }, out, options.log, trace ? &*trace : nullptr);
    phone->observe(report);
    monitorObserver = &report;
    if (input.motion)
        report.story.tellOfRecording(shownName(options.motion->filename()), input.motionBegins,
                                     input.motion->remarks);
    if (input.scenario.phone.bundle != springBoardBundle)
        report.story.tellOfInertness();
    report.endNight(playNight(*phone));
    phone.reset();
    return report.finish(retryOf(input));
}

} // namespace noctara
