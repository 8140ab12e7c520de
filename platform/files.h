/// Property-list files. Each call reads or writes a whole file. Any thread.
#pragma once

#include "platform/property_list.h"

#include <memory>
#include <optional>
#include <string>

namespace noctara {

class Files {
public:
    virtual ~Files() = default;

    /// Whether anything is at `path` (`fileExistsAtPath:`).
    virtual bool exists(const std::string& path) = 0;

    /// The file's top-level dictionary (`initWithContentsOfFile:`), from the XML or the binary
    /// form. Absent if the file is missing, cannot be read or is not a dictionary.
    virtual std::optional<Dictionary> readDictionary(const std::string& path) = 0;

    /// Writes XML to a temporary file and renames it to `path` (`writeToFile:atomically:`). False
    /// on failure; the old file is then unchanged.
    virtual bool writeDictionary(const std::string& path, const Dictionary& dictionary) = 0;

    /// Reads and parses the whole file (`propertyListFromData:`), from the XML or the binary form.
    /// On failure, returns null and sets `error` to the parser's message. The list does not change
    /// while the caller holds it. A phone may reuse its memory afterwards.
    virtual std::shared_ptr<const PropertyList> parse(const std::string& path,
                                                      std::string& error) = 0;
};

} // namespace noctara
