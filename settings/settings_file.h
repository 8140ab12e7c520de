/// Reads and changes a settings file on this machine.
#pragma once

#include "platform/property_list.h"

#include <filesystem>
#include <optional>
#include <string>

namespace noctara {

/// The settings of a file in XML or binary form. Throws BadInput if the file cannot be read or its
/// top level is not a dictionary.
Dictionary readSettingsFile(const std::filesystem::path& file);

/// Throws BadInput for a pipe or a device. It could be read, perhaps after a wait, but not changed.
void requireChangeableFile(const std::filesystem::path& file);

/// Changes the value of one key, or removes the key if `value` is absent. The file keeps its form,
/// its other values, its permissions and its owner; if it is a link, it stays one. Throws BadInput,
/// and leaves the file as it was, if it cannot be changed so.
void changeSettingsFile(const std::filesystem::path& file, const std::string& key,
                        const std::optional<PropertyList>& value);

/// Makes a file, in XML form, with the default of each setting. Throws BadInput if there is
/// something already, or if the file cannot be written.
void makeSettingsFile(const std::filesystem::path& file);

} // namespace noctara
