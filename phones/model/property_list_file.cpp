#include "phones/model/property_list_file.h"

#include "input/file_descriptor.h"
#include "input/file_reading.h"
#include "phones/model/libplist_nodes.h"
#include "phones/model/property_list_guard.h"
#include "phones/model/xml_property_list.h"

#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctara {

namespace {

constexpr std::size_t maximumBytes = std::size_t{1} << 20;

/// Collects, for each real that is zero, whether it is -0.0, in the order of the XML.
void collectZeros(const PropertyList& value, std::vector<bool>& areNegative) {
    if (const auto* real = value.as<double>(); real && *real == 0) {
        const auto* number = value.madeOf<NodeOfNumber>();
        areNegative.push_back(number && std::signbit(realOfNode(number->node.get())));
    } else if (const auto* array = value.as<Array>()) {
        for (const PropertyList& item : *array)
            collectZeros(item, areNegative);
    } else if (const auto* dictionary = value.as<Dictionary>()) {
        for (const auto& entry : *dictionary)
            collectZeros(entry.value, areNegative);
    }
}

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return false;
    }
    return true;
}

/// A new file. The destructor removes it unless it has replaced another file.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& folder) : file(create(folder)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (exists)
            ::unlink(path.c_str());
    }

    bool fill(std::string_view bytes, std::optional<mode_t> mode, Durability durability) {
        return file.isOpen() && (!mode || ::fchmod(file.get(), *mode) == 0) &&
               writeAll(file.get(), bytes) &&
               (durability == Durability::buffered || ::fsync(file.get()) == 0) && file.close();
    }

    bool takePlaceOf(const std::filesystem::path& target) {
        exists = ::rename(path.c_str(), target.c_str()) != 0;
        return !exists;
    }

private:
    int create(const std::filesystem::path& folder) {
        static std::atomic<unsigned> serial = 0;
        do {
            path = folder /
                   (".noctara-" + std::to_string(::getpid()) + "-" + std::to_string(serial++));
            const int created = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            exists = created >= 0;
            if (exists)
                return created;
        } while (errno == EEXIST);
        return -1;
    }

    std::filesystem::path path;
    bool exists = false;
    FileDescriptor file;
};

} // namespace

ParsedPropertyList parsePropertyList(std::string_view bytes) {
    try {
        if (bytes.empty())
            throw UnreadablePropertyList("empty");
        if (bytes.size() > maximumBytes)
            throw UnreadablePropertyList("larger than 1 MiB");
        if (!bytes.starts_with("bplist00"))
            return {readXmlPropertyList(bytes), {}};
        checkBinaryPropertyList(bytes);
        const Node node = nodeOfBinary(bytes);
        if (!node)
            throw UnreadablePropertyList("not a property list");
        return {valueOfNode(node.get()), {}};
    } catch (const UnreadablePropertyList& error) {
        return {std::nullopt, error.what()};
    }
}

ParsedPropertyList readPropertyListFile(const std::filesystem::path& file) {
    try {
        return parsePropertyList(readFile(file, maximumBytes >> 20, Pipes::refused));
    } catch (const UnreadableFile& error) {
        return {std::nullopt, error.what()};
    }
}

ParsedPropertyList readPropertyListInput(const std::filesystem::path& file) {
    try {
        return parsePropertyList(readInput(file, maximumBytes >> 20));
    } catch (const UnreadableFile& error) {
        return {std::nullopt, error.what()};
    }
}

std::string propertyListXml(const PropertyList& value) {
    std::string xml = xmlOfNode(nodeOfValue(value).get());
    // libplist writes -0.0 without its sign. Text cannot contain the tag, because "<" is escaped in
    // it.
    std::vector<bool> areNegative;
    collectZeros(value, areNegative);
    std::size_t at = 0;
    for (const bool isNegative : areNegative) {
        at = xml.find("<real>0.0</real>", at) + std::string_view("<real>").size();
        if (isNegative)
            xml.insert(at, "-");
    }
    return xml;
}

bool writePropertyListFile(const std::filesystem::path& file, const Dictionary& dictionary,
                           Durability durability) {
    const std::string xml = propertyListXml(dictionary);
    if (!parsePropertyList(xml).value)
        return false;
    std::optional<mode_t> mode;
    struct stat status {};
    if (::stat(file.c_str(), &status) == 0)
        mode = status.st_mode & 07777;
    else if (errno != ENOENT)
        return false;
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    TemporaryFile temporary(folder);
    if (!temporary.fill(xml, mode, durability) || !temporary.takePlaceOf(file))
        return false;
    if (durability == Durability::buffered)
        return true;
    // An error here is ignored: the file has been replaced even if the folder cannot be synced.
    const FileDescriptor entries(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (entries.isOpen())
        ::fsync(entries.get());
    return true;
}

} // namespace noctara
