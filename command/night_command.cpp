#include "command/night_command.h"

#include "command/night_player.h"
#include "host/host.h"
#include "night/night_files.h"
#include "night/night_report.h"
#include "output/output_file.h"
#include "phones/simulated/simulated_phone.h"

namespace noctara {

namespace {

std::unique_ptr<FileStore> fileStore(const NightOptions& options) {
    if (!options.root)
        return makeMemoryFileStore();
    auto store = makeDirectoryFileStore(*options.root);
    // An existing settings file is kept unless the user gives another one.
    if (options.settings || !options.set.empty())
        store->remove(settingsFilePath);
    return store;
}

} // namespace

int playNight(const NightOptions& options, std::ostream& out, std::ostream& complaints) {
    const NightInput input = readNightInput(options, complaints);
    std::optional<OutputFile> trace;
    if (options.trace)
        trace.emplace("--trace", *options.trace, filesOf(options));
    if (options.root)
        prepareRoot(*options.root);

    std::ostream nowhere(nullptr);
    std::ostream& story = options.json ? nowhere : out;
    auto phone = makePhone(input, fileStore(options));
    NightReport report(
        input.scenario, [&] { return phone->now(); }, story, options.log,
        trace ? &*trace : nullptr);
    phone->observe(report);
    monitorObserver = &report;
    if (input.motion)
        report.story.tellOfRecording(options.motion->filename().string(), input.motionBegins,
                                     input.motion->remarks);
    if (input.scenario.phone.bundle != springBoardBundle)
        report.story.tellOfInertness();
    report.endNight(playNight(*phone));
    phone.reset();
    return report.finish(retryOf(input), options.json ? SummaryForm::json : SummaryForm::text, out);
}

} // namespace noctara
