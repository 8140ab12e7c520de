/// The files of the simulated phone: what is stored, the files that the system itself keeps up to
/// date, and the faults of the disk.
#pragma once

#include "phones/model/file_store.h"
#include "phones/model/recorder.h"
#include "platform/files.h"

#include <functional>
#include <map>

namespace noctara {

enum class DiskState { ok, full, readOnly };

class FilesModel final : public Files {
public:
    FilesModel(std::unique_ptr<FileStore> files, const Recorder& calls);

    bool exists(const std::string& path) override;
    std::optional<Dictionary> readDictionary(const std::string& path) override;
    bool writeDictionary(const std::string& path, const Dictionary& dictionary) override;
    ParsedPropertyList parse(const std::string& path) override;

    // What goes on beside the monitor is no call of its.

    /// Makes a file one of the system's own: whenever it is read, `update` first brings the content
    /// up to date.
    void keepUpToDate(const std::string& path, std::function<void(Dictionary&)> update);

    /// Has the system write this file, if it is one of its own, whatever the disk is like: for
    /// whoever reads it from the store without asking here. Reading here writes nothing.
    void bringUpToDate(const std::string& path);

    /// Has the system write its own files, if the disk takes them, for other programs to see.
    void writeSystemFiles();

    bool isThere(const std::string& path) const;

    /// A file as it is now.
    ParsedPropertyList content(const std::string& path);

    /// Another program writes, removes or ruins a file. Writing fails as the monitor's would.
    bool writeByOthers(const std::string& path, const Dictionary& dictionary);
    void remove(const std::string& path) { store->remove(resolvedPath(path)); }
    void damage(const std::string& path) { store->damage(resolvedPath(path)); }

    DiskState disk = DiskState::ok;

private:
    std::unique_ptr<FileStore> store;
    const Recorder& recorder;
    std::map<std::string, std::function<void(Dictionary&)>> systemFiles;
};

} // namespace noctara
