/// The functions of script_functions.h that read and change settings files.
#include "input/printable.h"
#include "page/script_functions.h"
#include "page/settings_data.h"
#include "phones/model/property_list_file.h"
#include "settings/setting_keys.h"
#include "settings/setting_value.h"
#include "settings/setting_words.h"
#include "settings/settings_check.h"
#include "settings/settings_file.h"

#include <fstream>
#include <nlohmann/json.hpp>
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
        row["words"] = valueOfKeyInWords(key.name, *value);
    }
    return row;
}

} // namespace

Json settingsForPage(const Dictionary& settings) {
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
                                    {"words", valueOfKeyInWords(key, value)}});
        else if (!findSettingKey(key))
            others.push_back({{"key", printable(key)}, {"words", valueOfKeyInWords(key, value)}});
    Json odd = Json::array();
    for (const auto& oddity : checkSettings(settings, nullptr))
        odd.push_back(oddity.text);
    return {{"keys", keys}, {"applications", applications}, {"others", others}, {"odd", odd}};
}

Json settingsOf(const Json& question) {
    return settingsForPage(readSettingsFile(question.at("file").get<std::string>()));
}

Json changedSettingsOf(const Json& question) {
    const std::string key = question.at("key");
    std::optional<PropertyList> value;
    if (const auto& text = question.at("value"); !text.is_null()) {
        value = parseSettingValue("the value", key, text.get<std::string>());
        refuseOutOfRange("the value", key, *value);
    }
    changeSettingsFile(question.at("file").get<std::string>(), key, value);
    return settingsOf(question);
}

Json newSettingsOf(const Json& question) {
    std::ofstream(question.at("file").get<std::string>()) << propertyListXml(defaultSettings());
    return settingsOf(question);
}

} // namespace noctara
