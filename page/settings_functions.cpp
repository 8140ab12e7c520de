/// Settings files, for the page's script. They are files that the script has put into the current
/// folder.
#include "input/printable.h"
#include "page/script_functions.h"
#include "phones/model/property_list_file.h"
#include "settings/setting_keys.h"
#include "settings/setting_value.h"
#include "settings/setting_words.h"
#include "settings/settings_check.h"
#include "settings/settings_file.h"

#include <fstream>
#include <optional>
#include <string>

namespace noctara {

namespace {

Json ofKey(const SettingKey& key, const PropertyList* value) {
    const bool isSwitch = key.kind == SettingKey::Kind::onOff;
    Json row{{"key", key.name},          {"switch", isSwitch},
             {"standard", key.standard}, {"least", key.least},
             {"most", key.most},         {"meaning", key.meaning},
             {"value", nullptr},         {"words", missingInWords(key)}};
    if (value) {
        row["value"] = isSwitch ? int{value->boolValue()} : value->intValue();
        row["words"] = isSwitch ? switchInWords(*value) : valueInWords(*value);
    }
    return row;
}

/// {"file": NAME}: the settings in the order of the settings page, the applications and the other
/// keys in the order of the file, and what is odd.
Json settingsOf(const Json& question) {
    const Dictionary settings = readSettingsFile(question.at("file").get<std::string>());
    Json keys = Json::array();
    for (const auto& key : settingKeys())
        keys.push_back(ofKey(key, settings.find(key.name)));
    Json applications = Json::array();
    Json others = Json::array();
    for (const auto& [key, value] : settings)
        if (const auto identifier = identifierInKey(key))
            applications.push_back({{"key", key},
                                    {"identifier", printable(*identifier)},
                                    {"value", int{value.boolValue()}},
                                    {"words", switchInWords(value)}});
        else if (!findSettingKey(key))
            others.push_back({{"key", printable(key)}, {"words", valueInWords(value)}});
    Json odd = Json::array();
    for (const auto& oddity : checkSettings(settings, nullptr))
        odd.push_back(oddity.text);
    return {{"keys", keys}, {"applications", applications}, {"others", others}, {"odd", odd}};
}

/// {"file": NAME, "key": KEY, "value": TEXT}, or null instead of the text to remove the key. The
/// settings after the change.
Json changedSettingOf(const Json& question) {
    const std::string key = question.at("key");
    std::optional<PropertyList> value;
    if (const auto& text = question.at("value"); !text.is_null()) {
        value = parseSettingValue("the value", key, text.get<std::string>());
        refuseOutOfRange("the value", key, *value);
    }
    changeSettingsFile(question.at("file").get<std::string>(), key, value);
    return settingsOf(question);
}

/// {"file": NAME}: makes the file with the defaults.
Json madeSettingsOf(const Json& question) {
    std::ofstream(question.at("file").get<std::string>()) << propertyListXml(defaultSettings());
    return settingsOf(question);
}

} // namespace

} // namespace noctara

extern "C" {

EMSCRIPTEN_KEEPALIVE char* settings(const char* question) {
    return noctara::answered(question, noctara::settingsOf);
}

EMSCRIPTEN_KEEPALIVE char* changeSetting(const char* question) {
    return noctara::answered(question, noctara::changedSettingOf);
}

EMSCRIPTEN_KEEPALIVE char* makeSettings(const char* question) {
    return noctara::answered(question, noctara::madeSettingsOf);
}

} // extern "C"
