/// The files of the simulated phone: the stored files, the files that the system itself updates,
/// and the faults of the disk.
#pragma once

#include "phones/model/event.h"
#include "phones/model/file_store.h"
#include "phones/model/recorder.h"
#include "platform/files.h"

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace noctara {

class FilesModel final : public Files {
public:
    FilesModel(std::unique_ptr<FileStore> files, const Recorder& calls);

    bool exists(const std::string& path) override;
    std::optional<Dictionary> readDictionary(const std::string& path) override;
    bool writeDictionary(const std::string& path, const Dictionary& dictionary) override;
    std::shared_ptr<const PropertyList> parse(const std::string& path, std::string& error) override;

    // The functions below are for the rest of the phone. They are not recorded, because only the
    // monitor's own calls are.

    /// Makes a file a system file. Each read passes its stored content through `update` first.
    void keepUpToDate(const std::string& path, std::function<void(Dictionary&)> update);

    /// Writes the current content of a system file to the store, even if the disk is full or
    /// read-only. Does nothing for another file. It is for programs that read the store directly;
    /// the read functions here do not write.
    void bringUpToDate(const std::string& path);

    /// Writes all system files to the store if other programs can read them there, unless the disk
    /// is full or read-only.
    void writeSystemFiles();

    bool isThere(const std::string& path);

    /// The current content of a file.
    ParsedPropertyList content(const std::string& path);

    /// Another program writes, removes or damages a file. Writing fails under the same conditions
    /// as the monitor's writes.
    bool writeByOthers(const std::string& path, const Dictionary& dictionary);
    void remove(const std::string& path) { store->remove(resolvedPath(path)); }
    void damage(const std::string& path) { store->damage(resolvedPath(path)); }

    DiskState disk = DiskState::ok;

private:
    struct SystemFile {
        std::string path;
        std::function<void(Dictionary&)> update;
        std::shared_ptr<PropertyList> parsed; ///< The result of the last call of `parse`.
    };

    /// Null if the system does not update the file. The path is resolved.
    SystemFile* findSystemFile(std::string_view path);
    std::shared_ptr<const PropertyList> parsedAgain(SystemFile& file);

    std::unique_ptr<FileStore> store;
    const Recorder& recorder;
    std::vector<SystemFile> systemFiles; ///< Few, so that a linear search is the fastest.
};

} // namespace noctara
