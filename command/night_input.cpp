#include "command/night_input.h"

#include "input/bad_input.h"
#include "input/input_file.h"
#include "night/chosen_scenario.h"
#include "night/scenario_times.h"
#include "phones/model/phone_model.h"
#include "phones/model/property_list_file.h"
#include "settings/setting_value.h"
#include "settings/settings_file.h"

#include <fmt/format.h>

namespace noctara {

namespace {

Date motionBegin(const std::string& text, const Scenario& scenario) {
    const Date begin = instantOrNext(writtenTime("--motion-at", text, TimeForm::DayOptional),
                                     TimeZone(scenario.timezone), scenario.start);
    if (begin >= scenario.end)
        throw BadInput(fmt::format(
            "--motion-at: {} is after the end of the night; give an earlier time", inQuotes(text)));
    return begin;
}

/// A settings file that is below the root already. Absent if there is none, or if the monitor
/// cannot read it.
std::optional<Dictionary> settingsBelow(const std::filesystem::path& root) {
    const auto file = root / std::filesystem::path(settingsFilePath).relative_path();
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored))
        return std::nullopt;
    const auto parsed = readPropertyListFile(file);
    const auto* dictionary = parsed.value ? parsed.value->as<Dictionary>() : nullptr;
    return dictionary ? std::optional(*dictionary) : std::nullopt;
}

} // namespace

NightInput readNightInput(const NightInputOptions& options, std::ostream& complaints) {
    if (options.settings && options.motion && isStandardInput(*options.settings) &&
        isStandardInput(*options.motion))
        throw BadInput("--settings and --motion are both -, but standard input can be read only "
                       "once; give a file for one of them");
    NightInput input{chosenScenario(options.scenario, options.overrides), nullptr, {}};
    Scenario& scenario = input.scenario;
    if (options.settings)
        scenario.settings = readSettingsFile(*options.settings);
    else if (options.root)
        if (auto existing = settingsBelow(*options.root))
            scenario.settings = std::move(existing);
    Dictionary changed;
    for (const auto& text : options.set) {
        const auto [key, value] = keyAndValue("--set", text);
        changed.set(key, parseSettingValue("--set", key, value));
    }
    if (!changed.empty())
        scenario = withSettings(std::move(scenario), changed);
    input.motionBegins = scenario.start;
    if (options.motion) {
        input.motion = std::make_shared<const Recording>(
            readRecording(*options.motion, options.recording, complaints));
        if (options.motionAt)
            input.motionBegins = motionBegin(*options.motionAt, scenario);
    }
    return input;
}

std::vector<std::filesystem::path> filesOf(const NightInputOptions& options) {
    std::vector<std::filesystem::path> files;
    for (const auto& file : {options.scenario, options.settings, options.motion})
        if (file)
            files.push_back(*file);
    return files;
}

std::pair<std::string, std::string> keyAndValue(const std::string& option,
                                                const std::string& text) {
    const auto equals = text.find('=');
    if (equals == text.npos)
        throw BadInput(fmt::format("{}: {} has no equals sign; give a setting and its value, such "
                                   "as Sensitivity=3",
                                   option, inQuotes(text)));
    return {text.substr(0, equals), text.substr(equals + 1)};
}

} // namespace noctara
