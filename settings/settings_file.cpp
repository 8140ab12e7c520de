#include "settings/settings_file.h"

#include "input/bad_input.h"
#include "input/file_reading.h"
#include "input/input_file.h"
#include "output/output_file.h"
#include "phones/model/property_list_edit.h"
#include "phones/model/property_list_file.h"
#include "settings/setting_keys.h"

#include <fmt/format.h>

#include <fstream>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace noctara {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void refuse(const fs::path& file, std::string_view why) {
    throw BadInput(fmt::format("{}: {}", shownName(file), why));
}

bool isRegularFile(const fs::path& file) {
    std::error_code ignored;
    return fs::is_regular_file(file, ignored);
}

/// The form of property lists that has neither XML nor a binary header begins with a bracket. So
/// does JSON.
bool hasOldTextForm(const fs::path& file) {
    if (!isRegularFile(file))
        return false;
    char first = 0;
    std::ifstream(file) >> first;
    return first == '{' || first == '(';
}

bool isCompressed(const fs::path& file) {
    char magic[2] = {};
    std::ifstream(file, std::ios::binary).read(magic, sizeof magic);
    return std::string_view(magic, sizeof magic) == "\x1F\x8B";
}

/// Refuses what a changed copy cannot replace.
void checkReplaceable(const fs::path& file) {
    std::error_code ignored;
    if (fs::exists(file, ignored) && !isRegularFile(file))
        refuse(file, "not a regular file; give the name of a settings file");
    if (isCompressed(file))
        refuse(file, "compressed; unpack it first, or give another file");
    struct stat status {};
    if (::stat(file.c_str(), &status) == 0 && geteuid() != 0 && status.st_uid != geteuid())
        refuse(file, "belongs to another user; run this as its owner, or change a copy");
}

void write(const fs::path& file, std::string_view bytes) {
    OutputFile output("settings", file, {});
    output.stream() << bytes;
    if (!output.keep())
        throw std::runtime_error(shownName(file) + " could not be written; it is as it was before");
}

} // namespace

Dictionary readSettingsFile(const fs::path& file) {
    const auto parsed = readPropertyListInput(file);
    if (!parsed.value && hasOldTextForm(file))
        refuse(file, "the old text form of property lists, or JSON; convert it to XML first, for "
                     "example with: plutil -convert xml1");
    if (!parsed.value)
        refuse(file, parsed.error + "; give an XML or binary property list");
    const auto* dictionary = parsed.value->as<Dictionary>();
    if (!dictionary)
        refuse(file, "the top level is not a dictionary; a settings file maps keys such as Enabled "
                     "to values");
    return *dictionary;
}

void requireChangeableFile(const fs::path& file) {
    std::error_code ignored;
    const auto status = fs::status(file, ignored);
    if (fs::exists(status) && !fs::is_directory(status) && !fs::is_regular_file(status))
        refuse(file, "not a regular file; give the name of a settings file");
}

void changeSettingsFile(const fs::path& file, const std::string& key,
                        const std::optional<PropertyList>& value) {
    if (isStandardInput(file))
        refuse(file, "cannot be changed; give the name of a settings file");
    // A pipe would have to be read to the end first.
    checkReplaceable(file);
    readSettingsFile(file);
    const auto changed = changedPropertyList(readFile(file, 1), key, value);
    if (!changed)
        refuse(file, "has a value that cannot be written again as it is; change another file");
    write(file, *changed);
}

void makeSettingsFile(const fs::path& file) {
    std::error_code ignored;
    if (fs::exists(file, ignored))
        refuse(file, "is there already; give another file");
    if (fs::is_symlink(file, ignored))
        refuse(file, "a link to a file that does not exist; give that file");
    write(file, propertyListXml(defaultSettings()));
}

} // namespace noctara
