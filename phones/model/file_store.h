/// Stores the property-list files of the simulated phone, in memory or as real files.
#pragma once

#include "phones/model/property_list_file.h"
#include "platform/property_list.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace noctara {

/// A symbolic link on the phone, to the same folder below /private.
inline constexpr std::string_view linkedFolder = "/var/";

/// The path with that link resolved.
std::string resolvedPath(const std::string& path);

/// Files by their path on the phone. Callers pass resolved paths.
class FileStore {
public:
    virtual ~FileStore() = default;

    /// Whether other programs can read the files.
    virtual bool isVisible() const = 0;

    virtual bool exists(const std::string& path) const = 0;

    virtual ParsedPropertyList read(const std::string& path) const = 0;

    /// False if the file could not be written. It is then unchanged.
    virtual bool write(const std::string& path, const Dictionary& dictionary) = 0;

    virtual void remove(const std::string& path) = 0;

    /// Replaces the file with one that cannot be read.
    virtual void damage(const std::string& path) = 0;
};

std::unique_ptr<FileStore> makeMemoryFileStore();

/// Real files below `root`, in the XML form. Creates missing folders when it writes a file.
std::unique_ptr<FileStore> makeDirectoryFileStore(const std::filesystem::path& root);

} // namespace noctara
