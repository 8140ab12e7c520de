/// Where the simulated phone keeps its property-list files: in memory, or as real files.
#pragma once

#include "platform/files.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace noctara {

/// The path with the phone's link followed: "/var" is "/private/var".
std::string resolvedPath(const std::string& path);

/// Files by their resolved path on the phone.
class FileStore {
public:
    virtual ~FileStore() = default;

    virtual bool exists(const std::string& path) const = 0;

    virtual ParsedPropertyList read(const std::string& path) const = 0;

    /// False when the file could not be written; it is then as it was.
    virtual bool write(const std::string& path, const Dictionary& dictionary) = 0;

    virtual void remove(const std::string& path) = 0;

    /// Makes the file one that cannot be read.
    virtual void damage(const std::string& path) = 0;
};

std::unique_ptr<FileStore> makeMemoryFileStore();

/// Real files below `root`, read and written through a property-list library. Folders are made as
/// files need them.
std::unique_ptr<FileStore> makeDirectoryFileStore(const std::filesystem::path& root);

} // namespace noctara
