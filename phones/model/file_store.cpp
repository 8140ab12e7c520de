#include "phones/model/file_store.h"

#include <fstream>
#include <unordered_map>

namespace noctara {

std::string resolvedPath(const std::string& path) {
    return path.starts_with(linkedFolder) ? "/private" + path : path;
}

namespace {

class MemoryFileStore final : public FileStore {
public:
    bool isVisible() const override { return false; }

    bool exists(const std::string& path) const override { return files.contains(path); }

    ParsedPropertyList read(const std::string& path) const override {
        const auto file = files.find(path);
        if (file == files.end())
            return {{}, "no such file"};
        if (!file->second)
            return {{}, "ends too early"};
        return {*file->second, {}};
    }

    bool write(const std::string& path, const Dictionary& dictionary) override {
        files[path] = dictionary;
        return true;
    }

    void remove(const std::string& path) override { files.erase(path); }

    void damage(const std::string& path) override { files[path] = std::nullopt; }

private:
    /// A file without a value is damaged.
    std::unordered_map<std::string, std::optional<Dictionary>> files;
};

class DirectoryFileStore final : public FileStore {
public:
    explicit DirectoryFileStore(const std::filesystem::path& folder) :
        root(folder.empty() ? "." : folder) {}

    bool isVisible() const override { return true; }

    bool exists(const std::string& path) const override {
        std::error_code ignored;
        return std::filesystem::exists(place(path), ignored);
    }

    ParsedPropertyList read(const std::string& path) const override {
        return readPropertyListFile(place(path));
    }

    bool write(const std::string& path, const Dictionary& dictionary) override {
        makeFolderOf(path);
        return writePropertyListFile(place(path), dictionary, Durability::buffered);
    }

    void remove(const std::string& path) override {
        std::error_code ignored;
        std::filesystem::remove(place(path), ignored);
    }

    void damage(const std::string& path) override {
        makeFolderOf(path);
        // Renaming a new file replaces a symbolic link instead of damaging its target.
        const auto cutOff = place(path + ".damaged");
        std::ofstream(cutOff) << "<?xml version=\"1.0\"?>\n<plist><dict><key>";
        std::error_code ignored;
        std::filesystem::rename(cutOff, place(path), ignored);
    }

private:
    std::filesystem::path place(const std::string& path) const { return root.native() + path; }

    void makeFolderOf(const std::string& path) const {
        std::error_code ignored;
        std::filesystem::create_directories(place(path).parent_path(), ignored);
    }

    std::filesystem::path root;
};

} // namespace

std::unique_ptr<FileStore> makeMemoryFileStore() {
    return std::make_unique<MemoryFileStore>();
}

std::unique_ptr<FileStore> makeDirectoryFileStore(const std::filesystem::path& root) {
    return std::make_unique<DirectoryFileStore>(root);
}

} // namespace noctara
