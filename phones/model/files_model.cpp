#include "phones/model/files_model.h"

#include <utility>

namespace noctara {

FilesModel::FilesModel(std::unique_ptr<FileStore> files, const Recorder& calls) :
    store(std::move(files)), recorder(calls) {}

bool FilesModel::exists(const std::string& path) {
    return recorder.answer(Operation::fileExistsAtPath, {path}, isThere(path));
}

std::optional<Dictionary> FilesModel::readDictionary(const std::string& path) {
    auto file = content(path);
    auto* dictionary = file.value ? file.value->as<Dictionary>() : nullptr;
    recorder.answered(Operation::initWithContentsOfFile, {path},
                      dictionary ? CallValue(dictionary) : CallValue());
    return dictionary ? std::optional(std::move(*dictionary)) : std::nullopt;
}

bool FilesModel::writeDictionary(const std::string& path, const Dictionary& dictionary) {
    return recorder.answer(Operation::writeToFileAtomically, {path, &dictionary},
                           writeByOthers(path, dictionary));
}

ParsedPropertyList FilesModel::parse(const std::string& path) {
    auto file = content(path);
    recorder.answered(Operation::propertyListFromData, {path},
                      file.value ? CallValue(&*file.value) : CallValue());
    return file;
}

void FilesModel::keepUpToDate(const std::string& path, std::function<void(Dictionary&)> update) {
    systemFiles[resolvedPath(path)] = std::move(update);
}

void FilesModel::bringUpToDate(const std::string& path) {
    if (!systemFiles.contains(resolvedPath(path)))
        return;
    const auto file = content(path);
    if (const auto* dictionary = file.value ? file.value->as<Dictionary>() : nullptr)
        store->write(resolvedPath(path), *dictionary);
}

void FilesModel::writeSystemFiles() {
    if (disk != DiskState::ok || !store->isVisible())
        return;
    for (const auto& [path, update] : systemFiles)
        bringUpToDate(path);
}

ParsedPropertyList FilesModel::content(const std::string& path) {
    if (path.starts_with(linkedFolder))
        return content(resolvedPath(path));
    const auto systemFile = systemFiles.find(path);
    const bool isSystemFile = systemFile != systemFiles.end();
    ParsedPropertyList file = isSystemFile && !store->exists(path)
                                  ? ParsedPropertyList{Dictionary(), {}}
                                  : store->read(path);
    if (isSystemFile && file.value)
        if (auto* dictionary = file.value->as<Dictionary>())
            systemFile->second(*dictionary);
    return file;
}

bool FilesModel::writeByOthers(const std::string& path, const Dictionary& dictionary) {
    return disk == DiskState::ok && store->write(resolvedPath(path), dictionary);
}

bool FilesModel::isThere(const std::string& path) const {
    const std::string resolved = resolvedPath(path);
    return systemFiles.contains(resolved) || store->exists(resolved);
}

} // namespace noctara
