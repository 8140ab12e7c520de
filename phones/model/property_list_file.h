/// Reads and writes property lists. XML is read with pugixml. Binary lists are read with libplist.
/// Lists are written with libplist, as XML.
///
/// The reader accepts up to 1 MiB, 64 levels of nesting and 4096 keys in one dictionary.
///
/// - Dictionaries keep the order of the file. If a key occurs twice, the last value takes the
///   position of the first.
/// - Integers keep their low 64 bits, so one above the largest std::int64_t becomes negative.
/// - A PropertyList does not hold the sign of -0.0, and not that an integer is unsigned. Such a
///   number also keeps a node of libplist, which the writer uses.
/// - Dates keep the fraction of a second to the microsecond. Only the binary form has fractions.
/// - A UID becomes a dictionary with the one key `CF$UID`, as in Apple's XML.
/// - A set becomes an array.
/// - Text after `</plist>` is ignored.
#pragma once

#include "platform/property_list.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace noctara {

struct ParsedPropertyList {
    std::optional<PropertyList> value;
    std::string error; ///< What is wrong, if there is no value.
};

ParsedPropertyList parsePropertyList(std::string_view bytes);

ParsedPropertyList readPropertyListFile(const std::filesystem::path& file);

/// Reads a file that the user names, also from a pipe. "-" is standard input, and gzip data is
/// decompressed.
ParsedPropertyList readPropertyListInput(const std::filesystem::path& file);

/// XML that parsePropertyList reads as an equal value, with three exceptions. Dates are rounded
/// down to whole seconds and clamped to the years 1 to 9999; one at NaN becomes the earliest. A
/// real that is NaN does not equal itself. Text ends at its first NUL. A number that was read here
/// is written as it was read, including the sign of -0.0 and all 64 bits of an unsigned integer.
/// The value must hold UTF-8 text.
std::string propertyListXml(const PropertyList& value);

/// Whether a written file survives a loss of power.
enum class Durability {
    synced,   ///< The new file is on the disk before it replaces the old one.
    buffered, ///< The system writes it to the disk later.
};

/// Writes XML to a temporary file in the same folder and renames it to `file`. Keeps the mode of an
/// existing file. Replaces a symbolic link, not its target. False on failure, for example if the
/// folder is missing or readPropertyListFile would refuse the result. The old file is then
/// unchanged and no temporary file is left.
bool writePropertyListFile(const std::filesystem::path& file, const Dictionary& dictionary,
                           Durability durability = Durability::synced);

} // namespace noctara
