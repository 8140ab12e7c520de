#include "phones/model/files_model.h"

#include <algorithm>
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

std::shared_ptr<const PropertyList> FilesModel::parse(const std::string& path, std::string& error) {
    std::shared_ptr<const PropertyList> list;
    auto* const systemFile = findSystemFile(path);
    if (systemFile && !store->exists(path)) {
        list = parsedAgain(*systemFile);
    } else if (auto file = content(path); file.value) {
        list = std::make_shared<const PropertyList>(std::move(*file.value));
    } else {
        error = file.error;
    }
    recorder.answered(Operation::propertyListFromData, {path},
                      list ? CallValue(list.get()) : CallValue());
    return list;
}

/// The content of a system file that is not in the store. The monitor reads one in every cycle, so
/// the last result is updated if nobody holds it any more.
std::shared_ptr<const PropertyList> FilesModel::parsedAgain(SystemFile& file) {
    if (file.parsed.use_count() != 1)
        file.parsed = std::make_shared<PropertyList>(Dictionary());
    file.update(*file.parsed->as<Dictionary>());
    return file.parsed;
}

void FilesModel::keepUpToDate(const std::string& path, std::function<void(Dictionary&)> update) {
    const std::string resolved = resolvedPath(path);
    std::erase_if(systemFiles, [&](const auto& file) { return file.path == resolved; });
    systemFiles.push_back({resolved, std::move(update), nullptr});
}

void FilesModel::bringUpToDate(const std::string& path) {
    if (!findSystemFile(resolvedPath(path)))
        return;
    const auto file = content(path);
    if (const auto* dictionary = file.value ? file.value->as<Dictionary>() : nullptr)
        store->write(resolvedPath(path), *dictionary);
}

void FilesModel::writeSystemFiles() {
    if (disk != DiskState::ok || !store->isVisible())
        return;
    for (const auto& file : systemFiles)
        bringUpToDate(file.path);
}

ParsedPropertyList FilesModel::content(const std::string& path) {
    if (path.starts_with(linkedFolder))
        return content(resolvedPath(path));
    const auto* const systemFile = findSystemFile(path);
    ParsedPropertyList file = systemFile && !store->exists(path)
                                  ? ParsedPropertyList{Dictionary(), {}}
                                  : store->read(path);
    if (systemFile && file.value)
        if (auto* dictionary = file.value->as<Dictionary>())
            systemFile->update(*dictionary);
    return file;
}

bool FilesModel::writeByOthers(const std::string& path, const Dictionary& dictionary) {
    return disk == DiskState::ok && store->write(resolvedPath(path), dictionary);
}

bool FilesModel::isThere(const std::string& path) {
    const std::string resolved = resolvedPath(path);
    return findSystemFile(resolved) || store->exists(resolved);
}

FilesModel::SystemFile* FilesModel::findSystemFile(std::string_view path) {
    const auto found = std::find_if(systemFiles.begin(), systemFiles.end(),
                                    [&](const auto& file) { return file.path == path; });
    return found == systemFiles.end() ? nullptr : &*found;
}

} // namespace noctara
