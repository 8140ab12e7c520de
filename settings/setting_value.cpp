#include "settings/setting_value.h"

#include "input/bad_input.h"
#include "platform/utf8.h"
#include "settings/setting_keys.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <vector>

namespace noctara {

namespace {

struct SwitchWord {
    std::string_view word;
    bool on;
};

constexpr std::array switchWords{
    SwitchWord{"on", true},     SwitchWord{"off", false}, SwitchWord{"true", true},
    SwitchWord{"false", false}, SwitchWord{"yes", true},  SwitchWord{"no", false},
    SwitchWord{"1", true},      SwitchWord{"0", false},
};

std::optional<bool> truthIn(std::string_view text) {
    const auto equal = [](char given, char letter) {
        return letter ==
               (given >= 'A' && given <= 'Z' ? static_cast<char>(given - 'A' + 'a') : given);
    };
    for (const auto& known : switchWords)
        if (std::equal(text.begin(), text.end(), known.word.begin(), known.word.end(), equal))
            return known.on;
    return std::nullopt;
}

std::optional<std::int64_t> integerIn(std::string_view text) {
    std::int64_t integer = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, integer);
    if (parsed.ec != std::errc() || parsed.ptr != end)
        return std::nullopt;
    return integer;
}

[[noreturn]] void refuseKey(const std::string& option, std::string_view key) {
    const auto meant = nearestSettingKey(key);
    std::vector<std::string_view> names;
    for (const auto& known : settingKeys())
        names.push_back(known.name);
    throw BadInput(fmt::format("{}: unknown setting {}; {}", option, inQuotes(key),
                               meant ? fmt::format("did you mean {}?", inQuotes(*meant))
                                     : fmt::format("accepted: {}, {}IDENTIFIER",
                                                   fmt::join(names, ", "), applicationKeyPrefix)));
}

} // namespace

void checkSettingKey(const std::string& option, std::string_view key) {
    if (findSettingKey(key))
        return;
    const auto identifier = identifierInKey(key);
    if (!identifier)
        refuseKey(option, key);
    const bool hasControls = std::any_of(identifier->begin(), identifier->end(), [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
    });
    if (identifier->empty() || hasControls || !isUtf8(*identifier))
        throw BadInput(fmt::format("{}: {} names no application; write an identifier such as "
                                   "{}com.apple.mobiletimer",
                                   option, inQuotes(key), applicationKeyPrefix));
}

PropertyList parseSettingValue(const std::string& option, std::string_view key,
                               std::string_view text) {
    checkSettingKey(option, key);
    const SettingKey* const known = findSettingKey(key);
    const std::string name = known ? std::string(key) : inQuotes(key);
    if (!known || known->kind == SettingKey::Kind::onOff) {
        if (const auto truth = truthIn(text))
            return *truth;
        throw BadInput(
            fmt::format("{}: {} is {}; accepted: on, off", option, name, inQuotes(text)));
    }
    if (const auto integer = integerIn(text))
        return *integer;
    throw BadInput(fmt::format("{}: {} is {}; accepted: a whole number, {} to {}", option, name,
                               inQuotes(text), known->least, known->most));
}

void refuseOutOfRange(const std::string& option, std::string_view key, const PropertyList& value) {
    const SettingKey* const known = findSettingKey(key);
    const auto* const integer = value.as<std::int64_t>();
    if (known && integer && (*integer < known->least || *integer > known->most))
        throw BadInput(fmt::format("{}: {} is {}; accepted: {} to {}", option, key, *integer,
                                   known->least, known->most));
}

} // namespace noctara
