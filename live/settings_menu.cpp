#include "live/settings_menu.h"

#include "settings/setting_keys.h"

#include <algorithm>

namespace noctara {

std::vector<MenuItem> SettingsMenu::items() const {
    const auto file = night.phone.files.content(settingsFilePath);
    const Dictionary* const settings = file.value ? file.value->as<Dictionary>() : nullptr;
    std::vector<MenuItem> found;
    const auto add = [&](MenuItem item) {
        const auto* const value = settings ? settings->find(item.key) : nullptr;
        item.isMissing = !value;
        if (value)
            item.value = item.isNumber ? value->intValue() : int{value->boolValue()};
        found.push_back(std::move(item));
    };
    for (const auto& key : settingKeys())
        if (key.name != "Stop") // It has no effect.
            add({std::string(key.name), key.kind == SettingKey::Kind::number, key.standard, true,
                 key.least, key.most, std::string(key.meaning)});
    for (const auto& application : night.night.applications)
        add({std::string(applicationKeyPrefix) + application.identifier, false, 0, true, 0, 1,
             application.name + " is launched when the phone becomes quiet"});
    return found;
}

void SettingsMenu::move(int by) {
    const auto last = static_cast<std::ptrdiff_t>(items().size()) - 1;
    selection = static_cast<std::size_t>(
        std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(selection) + by, 0, last));
}

void SettingsMenu::change(int by) {
    const MenuItem item = items()[selection];
    if (!item.isNumber) {
        night.act(SettingsChange{{{item.key, item.value == 0}}});
        return;
    }
    const auto changed =
        std::clamp<std::int64_t>(std::int64_t{item.value} + by, item.least, item.most);
    if (changed != item.value)
        night.act(SettingsChange{{{item.key, changed}}});
}

} // namespace noctara
