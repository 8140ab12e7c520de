#include "command/settings_command.h"

#include "input/bad_input.h"
#include "input/command_line.h"
#include "input/nearest.h"
#include "input/printable.h"
#include "settings/setting_keys.h"
#include "settings/setting_value.h"
#include "settings/setting_words.h"
#include "settings/settings_check.h"
#include "settings/settings_file.h"

#include <fmt/ostream.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <system_error>
#include <vector>

namespace noctara {

namespace {

using Row = std::array<std::string, 4>;

void printTable(const std::vector<Row>& rows, std::ostream& out) {
    std::array<std::size_t, 3> widths{};
    for (const auto& row : rows)
        for (std::size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    for (const auto& [key, value, standard, meaning] : rows)
        fmt::print(out, "{:{}}  {:{}}  {:{}}  {}\n", key, widths[0], value, widths[1], standard,
                   widths[2], meaning);
}

void makeIfMissing(const std::filesystem::path& file, MissingFile missing) {
    std::error_code ignored;
    if (std::filesystem::exists(file, ignored))
        return;
    if (missing == MissingFile::refused)
        throw BadInput(printable(file.string()) +
                       ": no such file; --create makes one with the defaults");
    makeSettingsFile(file);
}

/// Prints what is odd now and was not before.
void printNewOddities(const Dictionary& before, const Dictionary& after, std::ostream& out) {
    const auto old = checkSettings(before, nullptr);
    for (const auto& oddity : checkSettings(after, nullptr))
        if (std::find(old.begin(), old.end(), oddity) == old.end())
            out << "Odd: " << oddity.text << '\n';
}

int change(const std::filesystem::path& file, const std::string& key, const PropertyList& value,
           MissingFile missing, std::ostream& out) {
    makeIfMissing(file, missing);
    requireChangeableFile(file);
    const Dictionary before = readSettingsFile(file);
    const PropertyList* const old = before.find(key);
    if (old && *old == value) {
        fmt::print(out, "{} is {} already.\n", printable(key), valueOfKeyInWords(key, value));
        return 0;
    }
    changeSettingsFile(file, key, value);
    fmt::print(out, "{} is {} now; it was {}.\n", printable(key), valueOfKeyInWords(key, value),
               old ? valueOfKeyInWords(key, *old) : "missing");
    Dictionary after = before;
    after.set(key, value);
    printNewOddities(before, after, out);
    return 0;
}

/// The user may give the key instead.
std::string keyOf(std::string_view identifier) {
    return std::string(applicationKeyPrefix)
        .append(identifierInKey(identifier).value_or(identifier));
}

} // namespace

int showSettings(const std::filesystem::path& file, std::ostream& out) {
    const Dictionary settings = readSettingsFile(file);
    std::vector<Row> known{{"key", "value", "default", "meaning"}};
    for (const auto& key : settingKeys()) {
        const PropertyList* const value = settings.find(key.name);
        known.push_back({std::string(key.name),
                         value ? valueOfKeyInWords(key.name, *value) : "missing",
                         settingInWords(key, key.standard), std::string(key.meaning)});
    }
    printTable(known, out);

    std::vector<Row> others;
    for (const auto& [key, value] : settings) {
        if (identifierInKey(key))
            others.push_back({printable(key), valueOfKeyInWords(key, value), "off",
                              "launched when the phone goes quiet, quit when it comes back"});
        else if (!findSettingKey(key))
            others.push_back({inQuotes(key), valueOfKeyInWords(key, value), "-", "no setting"});
    }
    if (!others.empty())
        out << '\n';
    printTable(others, out);

    const auto odd = checkSettings(settings, nullptr);
    if (!odd.empty())
        out << '\n';
    for (const auto& oddity : odd)
        out << "Odd: " << oddity.text << '\n';
    return 0;
}

int getSetting(const std::filesystem::path& file, const std::string& key, std::ostream& out) {
    const Dictionary settings = readSettingsFile(file);
    if (const PropertyList* const value = settings.find(key)) {
        out << valueOfKeyInWords(key, *value) << '\n';
        return 0;
    }
    checkSettingKey("get", key);
    const SettingKey* const known = findSettingKey(key);
    throw BadInput(fmt::format("{}: has no {}; {}", printable(file.string()),
                               known ? std::string(known->name) : inQuotes(key),
                               known ? missingInWords(*known) : "the application is not launched"));
}

int setSetting(const std::filesystem::path& file, const std::string& key, const std::string& text,
               MissingFile missing, std::ostream& out) {
    const PropertyList value = parseSettingValue("set", key, text);
    refuseOutOfRange("set", key, value);
    return change(file, key, value, missing, out);
}

int checkSettingsFile(const std::filesystem::path& file, std::ostream& out) {
    const auto odd = checkSettings(readSettingsFile(file), nullptr);
    if (odd.empty())
        out << "Nothing is odd.\n";
    for (const auto& oddity : odd)
        out << oddity.text << '\n';
    return odd.empty() ? 0 : foundWrong;
}

int listApplications(const std::filesystem::path& file, std::ostream& out) {
    for (const auto& identifier : applicationsToLaunch(readSettingsFile(file)))
        out << printable(identifier) << '\n';
    return 0;
}

int addApplication(const std::filesystem::path& file, const std::string& identifier,
                   MissingFile missing, std::ostream& out) {
    const std::string key = keyOf(identifier);
    return change(file, key, parseSettingValue("launch add", key, "on"), missing, out);
}

int removeApplication(const std::filesystem::path& file, const std::string& identifier,
                      std::ostream& out) {
    const std::string key = keyOf(identifier);
    requireChangeableFile(file);
    const Dictionary settings = readSettingsFile(file);
    if (!settings.find(key)) {
        std::vector<std::string_view> present;
        for (const auto& entry : settings)
            if (const auto other = identifierInKey(entry.key))
                present.push_back(*other);
        const auto meant = nearest(*identifierInKey(key), present);
        throw BadInput(fmt::format("{}: has no {}; {}", printable(file.string()), inQuotes(key),
                                   meant ? fmt::format("did you mean {}?", inQuotes(*meant))
                                         : "launch list prints what can be removed"));
    }
    changeSettingsFile(file, key, std::nullopt);
    fmt::print(out, "{} is removed.\n", printable(key));
    return 0;
}

} // namespace noctara
