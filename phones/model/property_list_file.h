/// Property lists as bytes and as files, by way of libplist.
///
/// Read are the XML and the binary form, up to 1 MiB, 64 levels of nesting and 4096 keys in one
/// dictionary. Dictionaries keep the order of the file; of a key that comes twice the last value
/// counts, in the place of the first. Integers keep their low 64 bits, so that one above the
/// largest std::int64_t reads as negative. Numbers carry what they were read from, for the writer.
/// A date keeps the fraction of a second that only the binary form can hold, to the microsecond. A
/// UID reads as Apple's XML writes it, a dictionary with the one key `CF$UID`; a set reads as an
/// array. What follows `</plist>` is ignored.
#pragma once

#include "platform/files.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace noctara {

ParsedPropertyList parsePropertyList(std::string_view bytes);

ParsedPropertyList readPropertyListFile(const std::filesystem::path& file);

/// XML that parsePropertyList reads as an equal value, except that dates go down to whole seconds
/// and stay within the years 1 to 9999 (not-a-number becomes the earliest). A number that was read
/// here is written as it was read, the sign of -0.0 and all 64 bits of an unsigned integer
/// included. Text is UTF-8; it ends at its first NUL.
std::string propertyListXml(const PropertyList& value);

/// Whether a file outlives a loss of power.
enum class Durability {
    synced,   ///< It is on the disk before it takes the place of the old one.
    buffered, ///< The system writes it to the disk in its own time.
};

/// Writes XML to a temporary file in the same folder and renames it to `file`. Keeps the mode of an
/// existing file; takes the place of a symbolic link. False when that failed or when
/// readPropertyListFile would refuse the result: then the old file is as it was and no temporary
/// file is left. A missing folder is a failure.
bool writePropertyListFile(const std::filesystem::path& file, const Dictionary& dictionary,
                           Durability durability = Durability::synced);

} // namespace noctara
