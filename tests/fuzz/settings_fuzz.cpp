/// Settings files that `noctara settings` shows and changes. Behind the last line with three
/// hyphens are the edits: KEY=VALUE in each line, or KEY alone to remove an application.
#include "command/settings_command.h"
#include "input/temporary_folder.h"
#include "phones/model/property_list_file.h"
#include "settings/setting_keys.h"
#include "settings/setting_value.h"
#include "tests/fuzz/rules.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace noctara {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view beforeEdits = "\n---\n";

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool isBinary(std::string_view bytes) {
    return bytes.starts_with("bplist00");
}

Dictionary dictionaryIn(const std::string& bytes) {
    const auto list = parsePropertyList(bytes);
    const auto* dictionary = list.value ? list.value->as<Dictionary>() : nullptr;
    require(dictionary != nullptr, "the settings file is a dictionary", list.error);
    return *dictionary;
}

struct Edit {
    std::string key;
    std::optional<std::string> value; ///< Absent: the application is removed.
};

Edit editIn(std::string_view line) {
    const auto equals = line.find('=');
    if (equals == line.npos)
        return {std::string(line), std::nullopt};
    return {std::string(line.substr(0, equals)), std::string(line.substr(equals + 1))};
}

void show(const fs::path& file) {
    std::ostringstream out;
    refusal([&] { showSettings(file, out); });
    refusal([&] { checkSettingsFile(file, out); });
    refusal([&] { listApplications(file, out); });
    requirePlainLines(out.str());
}

/// The dictionaries are not compared: one with a real that is NaN does not equal itself.
void requireChangeNotNeeded(const std::string& content, const Edit& edit) {
    require(edit.value.has_value(), "a removed application changes the file", content);
    const Dictionary settings = dictionaryIn(content);
    const PropertyList* const found = settings.find(edit.key);
    require(found && *found == parseSettingValue("set", edit.key, *edit.value),
            "a file stays as it was only if it has the value", content);
}

void requireChanged(const std::string& before, const std::string& after, const Edit& edit) {
    require(isBinary(before) == isBinary(after), "the form stays", after);
    Dictionary expected = dictionaryIn(before);
    std::string key = edit.key;
    if (edit.value)
        expected.set(key, parseSettingValue("set", key, *edit.value));
    else
        require(expected.remove(std::string(applicationKeyPrefix)
                                    .append(identifierInKey(edit.key).value_or(edit.key))),
                "only what is there can be removed", key);
    require(dictionaryIn(after) == expected, "nothing but the key changes", after);
}

void apply(const fs::path& file, const Edit& edit) {
    const std::string before = contentOf(file);
    std::ostringstream out;
    const auto refused = refusal([&] {
        if (edit.value)
            setSetting(file, edit.key, *edit.value, MissingFile::refused, out);
        else
            removeApplication(file, edit.key, out);
    });
    requirePlainLines(out.str());
    require(std::distance(fs::directory_iterator(file.parent_path()), {}) == 1,
            "no file is left aside");
    const std::string after = contentOf(file);
    if (refused)
        require(after == before, "a refused edit leaves the file as it was", *refused);
    else if (after == before)
        requireChangeNotNeeded(after, edit);
    else
        requireChanged(before, after, edit);
}

} // namespace
} // namespace noctara

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace noctara;
    namespace fs = std::filesystem;
    static const TemporaryFolder folder("fuzz-settings");
    static const fs::path file = folder.path / "settings.plist";
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto end = std::min(input.rfind(beforeEdits), input.size());
    std::ofstream(file, std::ios::binary) << input.substr(0, end);
    show(file);
    std::string_view edits = input.substr(std::min(end + beforeEdits.size(), input.size()));
    constexpr int mostEdits = 8;
    for (int i = 0; i < mostEdits && !edits.empty(); ++i) {
        const std::string_view line = edits.substr(0, edits.find('\n'));
        apply(file, editIn(line));
        edits.remove_prefix(std::min(edits.size(), line.size() + 1));
    }
    show(file);
    return 0;
}
