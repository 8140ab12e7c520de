/// The fixture of the settings tests: a monitor and its settings file, in memory or on a disk.
#pragma once

#include "input/temporary_folder.h"
#include "phones/model/file_store.h"
#include "tests/a_night.h"

#include <filesystem>
#include <optional>
#include <string>

namespace noctara {

enum class Storage { memory, disk };

/// The monitor exists, but has not loaded the settings.
class SettingsStage : public AMonitor {
protected:
    NoctaraThread& makeOn(Storage storage, const std::optional<Dictionary>& content) {
        own.reset();
        scenario.settings = content;
        switchOn(store(storage));
        own = std::make_unique<NoctaraThread>(phone().platform());
        calls.clear();
        return *own;
    }

    std::unique_ptr<FileStore> store(Storage storage) const {
        return storage == Storage::disk ? makeDirectoryFileStore(folder.path)
                                        : makeMemoryFileStore();
    }

    /// The current file on the phone; absent if it is not a dictionary.
    std::optional<Dictionary> file() {
        const auto content = phone().files.content(settingsFilePath);
        const auto* dictionary = content.value ? content.value->as<Dictionary>() : nullptr;
        return dictionary ? std::optional(*dictionary) : std::nullopt;
    }

    std::filesystem::path placeOnDisk() const {
        return folder.path / std::filesystem::path(settingsFilePath).relative_path();
    }

    /// The settings screen announces the current file.
    void announce() { change({}); }

    /// `settings` without some keys.
    Dictionary without(std::initializer_list<const char*> keys) const {
        Dictionary rest = settings;
        for (const char* key : keys)
            rest.remove(key);
        return rest;
    }

    /// `settings` with some values replaced or added.
    Dictionary with(const Dictionary& changed) const {
        Dictionary all = settings;
        for (const auto& [key, value] : changed)
            all.set(key, value);
        return all;
    }

private:
    TemporaryFolder folder;
};

/// The same on both kinds of storage.
class ASettingsFile : public SettingsStage, public testing::WithParamInterface<Storage> {
protected:
    NoctaraThread& holding(const std::optional<Dictionary>& content) {
        return makeOn(GetParam(), content);
    }
};

inline std::string storageName(const testing::TestParamInfo<Storage>& storage) {
    return storage.param == Storage::disk ? "on_disk" : "in_memory";
}

inline const std::string settingsFileCreated =
    "Noctara file /private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist created";
inline const std::string settingsFileNotCreated =
    "Noctara file /private/var/mobile/Library/Preferences/com.quorbit.Noctara.plist COULD NOT be "
    "created";

} // namespace noctara
