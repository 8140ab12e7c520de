/// Property-list files, read and written whole.
#pragma once

#include "platform/property_list.h"

#include <optional>
#include <string>

namespace noctara {

/// What parsing a property list gave: a value, or the parser's description of what is wrong.
struct ParsedPropertyList {
    std::optional<PropertyList> value;
    std::string error; ///< Empty exactly when there is a value.
};

class Files {
public:
    virtual ~Files() = default;

    /// Whether anything is at `path` (`fileExistsAtPath:`).
    virtual bool exists(const std::string& path) = 0;

    /// The file's top-level dictionary (`initWithContentsOfFile:`), from the XML or the binary
    /// form. Absent when the file is missing, cannot be read, or is not a dictionary.
    virtual std::optional<Dictionary> readDictionary(const std::string& path) = 0;

    /// Writes XML to a temporary file that then takes the place of the one at `path`
    /// (`writeToFile:atomically:`). False when that failed; the old file is then as it was.
    virtual bool writeDictionary(const std::string& path, const Dictionary& dictionary) = 0;

    /// Reads and parses the whole file (`propertyListFromData:`), from the XML or the binary form.
    virtual ParsedPropertyList parse(const std::string& path) = 0;
};

} // namespace noctara
