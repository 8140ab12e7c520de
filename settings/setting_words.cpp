#include "settings/setting_words.h"

#include "input/bad_input.h"

#include <fmt/format.h>

#include <cmath>

namespace noctara {

namespace {

const char* onOff(bool on) {
    return on ? "on" : "off";
}

/// One overload for each type of value. A missing overload is a compile error.
struct Words {
    std::string operator()(bool truth) const { return onOff(truth); }
    std::string operator()(std::int64_t integer) const { return std::to_string(integer); }
    std::string operator()(double real) const { return fmt::format("{}", real); }
    std::string operator()(const std::string& text) const { return "the text " + inQuotes(text); }
    std::string operator()(const Date&) const { return "a date"; }
    std::string operator()(const Data&) const { return "data"; }
    std::string operator()(const Array&) const { return "an array"; }
    std::string operator()(const Dictionary&) const { return "a dictionary"; }
};

} // namespace

std::string settingInWords(const SettingKey& key, std::int32_t value) {
    return key.kind == SettingKey::Kind::onOff ? onOff(value != 0) : std::to_string(value);
}

std::string missingInWords(const SettingKey& key) {
    const std::string standard = settingInWords(key, key.standard);
    if (key.whenMissing == key.standard)
        return fmt::format("it counts as {}, its default", standard);
    return fmt::format("it counts as {} when the home screen starts, and as {}, its default, from "
                       "the next change of the settings on",
                       settingInWords(key, key.whenMissing), standard);
}

std::string valueInWords(const PropertyList& value) {
    return std::visit(Words(), value.variant());
}

std::string valueOfKeyInWords(std::string_view key, const PropertyList& value) {
    const SettingKey* const known = findSettingKey(key);
    const bool isSwitch =
        known ? known->kind == SettingKey::Kind::onOff : identifierInKey(key).has_value();
    const auto number = wholeNumberIn(value);
    return isSwitch && (number == 0 || number == 1) ? onOff(number == 1) : valueInWords(value);
}

std::optional<std::int64_t> wholeNumberIn(const PropertyList& value) {
    if (const auto* integer = value.as<std::int64_t>())
        return *integer;
    constexpr double exactIntegers = 9007199254740992.0;
    const auto* real = value.as<double>();
    if (real && std::floor(*real) == *real && std::abs(*real) < exactIntegers)
        return static_cast<std::int64_t>(*real);
    return std::nullopt;
}

} // namespace noctara
