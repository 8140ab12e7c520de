/// Reads and writes property lists with libplist.
#include "phones/model/property_list_file.h"

#include "input/file_descriptor.h"
#include "input/file_reading.h"
#include "phones/model/property_list_date.h"
#include "phones/model/property_list_guard.h"
#include "platform/utf8.h"

#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include <fcntl.h>
#include <plist/plist.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctara {

namespace {

constexpr std::size_t maximumBytes = std::size_t{1} << 20;

/// A limit, because Dictionary searches its keys linearly.
constexpr std::uint32_t maximumKeys = 4096;

struct Freeing {
    void operator()(void* memory) const { std::free(memory); }
};

struct NodeFreeing {
    void operator()(void* node) const { plist_free(node); }
};

/// A libplist node that no other node owns.
using Node = std::unique_ptr<void, NodeFreeing>;

/// The node that a number was read from.
struct NodeOfNumber final : PhoneObject {
    explicit NodeOfNumber(plist_t number) : node(plist_copy(number)) {}

    Node node;
};

PropertyList numberOf(plist_t node, PropertyList value) {
    return {std::move(value), std::make_shared<NodeOfNumber>(node)};
}

double realOf(plist_t node) {
    double real = 0;
    plist_get_real_val(node, &real);
    return real;
}

std::string checkedText(std::string text) {
    if (!isUtf8(text))
        throw UnreadablePropertyList("text that is not UTF-8");
    return text;
}

std::string xmlOf(plist_t node) {
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(node, &xml, &length);
    const std::unique_ptr<char, Freeing> owned(xml);
    return xml ? std::string(xml, length) : std::string();
}

Node nodeOfXml(std::string_view xml) {
    plist_t node = nullptr;
    plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &node);
    return Node(node);
}

/// libplist returns dates in 32 bits, from 1932 to 2069, and the fraction without its sign. Its XML
/// has the seconds of all dates, rounded towards 2001.
Date dateOf(plist_t node) {
    const std::string xml = xmlOf(node);
    constexpr std::string_view tag = "<date>";
    const std::size_t begin = xml.find(tag) + tag.size();
    const auto seconds =
        secondsOfDateText(std::string_view(xml).substr(begin, xml.find("</date>", begin) - begin));
    if (!seconds)
        throw UnreadablePropertyList("an invalid date");
    std::int32_t wholeSeconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &wholeSeconds, &microseconds);
    const double fraction = microseconds / 1e6;
    constexpr std::int64_t startOf2001 = 978307200;
    return {static_cast<double>(*seconds) + (*seconds < startOf2001 ? -fraction : fraction)};
}

PropertyList valueOf(plist_t node);

Array arrayOf(plist_t node) {
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    const std::unique_ptr<void, Freeing> owned(iterator);
    Array array;
    plist_t item = nullptr;
    while (plist_array_next_item(node, iterator, &item), item)
        array.push_back(valueOf(item));
    return array;
}

Dictionary dictionaryOf(plist_t node) {
    const std::uint32_t size = plist_dict_get_size(node);
    if (size > maximumKeys)
        throw UnreadablePropertyList("more than " + std::to_string(maximumKeys) +
                                     " keys in one dictionary");
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    const std::unique_ptr<void, Freeing> owned(iterator);
    Dictionary dictionary;
    dictionary.reserve(size);
    while (true) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator, &key, &item);
        const std::unique_ptr<char, Freeing> ownedKey(key);
        if (!item || !key)
            return dictionary;
        dictionary.set(checkedText(key), valueOf(item));
    }
}

PropertyList valueOf(plist_t node) {
    std::uint64_t length = 0;
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t truth = 0;
        plist_get_bool_val(node, &truth);
        return truth != 0;
    }
    case PLIST_UINT: {
        std::uint64_t integer = 0;
        plist_get_uint_val(node, &integer);
        const auto value = static_cast<std::int64_t>(integer);
        // Beyond 63 bits, libplist alone knows whether it is a negative number.
        return value < 0 ? numberOf(node, value) : value;
    }
    case PLIST_REAL:
        return numberOf(node, realOf(node));
    case PLIST_STRING: {
        const char* text = plist_get_string_ptr(node, &length);
        return checkedText(std::string(text, static_cast<std::size_t>(length)));
    }
    case PLIST_DATA: {
        const char* data = plist_get_data_ptr(node, &length);
        return Data(data, data + length);
    }
    case PLIST_UID: {
        std::uint64_t uid = 0;
        plist_get_uid_val(node, &uid);
        return Dictionary{{"CF$UID", static_cast<std::int64_t>(uid)}};
    }
    case PLIST_DATE:
        return dateOf(node);
    case PLIST_ARRAY:
        return arrayOf(node);
    case PLIST_DICT:
        return dictionaryOf(node);
    default:
        throw UnreadablePropertyList("not a property list");
    }
}

Node nodeOf(const PropertyList& value);

Node nodeOf(bool truth) {
    return Node(plist_new_bool(truth ? 1 : 0));
}

Node nodeOf(std::int64_t integer) {
    return Node(plist_new_uint(static_cast<std::uint64_t>(integer)));
}

Node nodeOf(double real) {
    return Node(plist_new_real(real));
}

Node nodeOf(const std::string& text) {
    return Node(plist_new_string(text.c_str()));
}

/// Goes through XML, because libplist's function for new dates takes only 32 bits.
Node nodeOf(const Date& date) {
    // If one argument is NaN, fmax returns the other.
    const double seconds =
        std::fmin(std::fmax(date.secondsSince1970, double{earliestPropertyListDate}),
                  double{latestPropertyListDate});
    return nodeOfXml("<plist><date>" + dateText(static_cast<std::int64_t>(std::floor(seconds))) +
                     "</date></plist>");
}

Node nodeOf(const Data& data) {
    return Node(plist_new_data(reinterpret_cast<const char*>(data.data()), data.size()));
}

Node nodeOf(const Array& array) {
    Node node(plist_new_array());
    for (const PropertyList& item : array)
        plist_array_append_item(node.get(), nodeOf(item).release());
    return node;
}

Node nodeOf(const Dictionary& dictionary) {
    Node node(plist_new_dict());
    for (const auto& [key, value] : dictionary)
        plist_dict_set_item(node.get(), key.c_str(), nodeOf(value).release());
    return node;
}

Node nodeOf(const PropertyList& value) {
    if (const auto* number = value.madeOf<NodeOfNumber>())
        return Node(plist_copy(number->node.get()));
    return std::visit([](const auto& content) { return nodeOf(content); }, value.variant());
}

/// Collects, for each real that is zero, whether it is -0.0, in the order of the XML.
void collectZeros(const PropertyList& value, std::vector<bool>& areNegative) {
    if (const auto* real = value.as<double>(); real && *real == 0) {
        const auto* number = value.madeOf<NodeOfNumber>();
        areNegative.push_back(number && std::signbit(realOf(number->node.get())));
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
        Node node;
        if (bytes.starts_with("bplist00")) {
            checkBinaryPropertyList(bytes);
            plist_t parsed = nullptr;
            plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
            node.reset(parsed);
        } else {
            node = nodeOfXml(checkedXmlPropertyList(bytes));
        }
        if (!node)
            throw UnreadablePropertyList("not a property list");
        return {valueOf(node.get()), {}};
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
    std::string xml = xmlOf(nodeOf(value).get());
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
