#include "phones/emulated/mach_o.h"

#include "phones/emulated/code_signature.h"

#include <algorithm>
#include <optional>

namespace noctara::emulated {

namespace {

// The numbers are those of <mach-o/loader.h>.
constexpr std::uint32_t magic64 = 0xfeedfacf;
constexpr std::uint32_t cpuArm64 = 0x0100000c;
constexpr std::uint32_t typeDylib = 6;
constexpr std::uint32_t dylibIdCommand = 0xd;
constexpr std::uint32_t loadDylib = 0xc;
constexpr std::uint32_t loadWeakDylib = 0x80000018;
constexpr std::uint32_t segment64 = 0x19;
constexpr std::uint32_t symbolTable = 0x2;
constexpr std::uint32_t codeSignature = 0x1d;
constexpr std::uint32_t dyldInfo = 0x22;
constexpr std::uint32_t dyldInfoOnly = 0x80000022;
constexpr std::uint32_t versionMinIphone = 0x25;
constexpr std::uint32_t buildVersion = 0x32;
constexpr std::uint32_t platformIos = 2;
constexpr std::uint32_t chainedFixups = 0x80000034;

constexpr std::uint32_t protectionWrite = 2;
constexpr std::uint32_t protectionExecute = 4;

/// Bytes of the file, read from front to back. Every read is checked.
class Reader {
public:
    Reader(std::span<const std::byte> allBytes, const char* itsName) :
        bytes(allBytes), name(itsName) {}

    template <typename Value>
    Value read() {
        Value value;
        std::memcpy(&value, take(sizeof value).data(), sizeof value);
        return value;
    }

    std::span<const std::byte> take(std::uint64_t size) {
        if (size > bytes.size() - position)
            throw BadLibrary(std::string("the ") + name + " ends too early");
        const auto taken = bytes.subspan(position, size);
        position += size;
        return taken;
    }

    std::string text() {
        std::string text;
        for (char next; (next = read<char>()) != '\0';)
            text += next;
        return text;
    }

    std::string fixedText(std::size_t size) {
        const auto taken = take(size);
        const std::string text(reinterpret_cast<const char*>(taken.data()), taken.size());
        return text.substr(0, text.find('\0'));
    }

    std::uint64_t unsignedNumber() {
        std::uint64_t value = 0;
        for (unsigned shift = 0;; shift += 7) {
            const auto byte = read<std::uint8_t>();
            if (shift > 63)
                throw BadLibrary(std::string("a number in the ") + name + " is too long");
            value |= static_cast<std::uint64_t>(byte & 0x7f) << shift;
            if (!(byte & 0x80))
                return value;
        }
    }

    std::int64_t signedNumber() {
        std::uint64_t value = 0;
        for (unsigned shift = 0;;) {
            const auto byte = read<std::uint8_t>();
            if (shift > 63)
                throw BadLibrary(std::string("a number in the ") + name + " is too long");
            value |= static_cast<std::uint64_t>(byte & 0x7f) << shift;
            shift += 7;
            if (!(byte & 0x80)) {
                if ((byte & 0x40) && shift < 64)
                    value |= ~std::uint64_t{0} << shift;
                return static_cast<std::int64_t>(value);
            }
        }
    }

    bool atEnd() const { return position == bytes.size(); }
    void goTo(std::uint64_t offset) {
        if (offset > bytes.size())
            throw BadLibrary(std::string("the ") + name + " ends too early");
        position = offset;
    }

private:
    std::span<const std::byte> bytes;
    const char* name;
    std::size_t position = 0;
};

class MachOReader {
public:
    explicit MachOReader(std::span<const std::byte> bytes) : file(bytes) {}

    MachO read() {
        Reader header(file, "header");
        if (file.size() < 32 || header.read<std::uint32_t>() != magic64)
            throw BadLibrary("it is no 64-bit Mach-O file");
        if (header.read<std::uint32_t>() != cpuArm64 || header.read<std::uint32_t>() != 0)
            throw BadLibrary("it is not for arm64");
        if (header.read<std::uint32_t>() != typeDylib)
            throw BadLibrary("it is no dynamic library");
        const auto commands = header.read<std::uint32_t>();
        const auto commandBytes = header.read<std::uint32_t>();
        header.goTo(32);
        Reader list(header.take(commandBytes), "list of load commands");
        for (std::uint32_t i = 0; i < commands; ++i) {
            const auto type = list.read<std::uint32_t>();
            const auto size = list.read<std::uint32_t>();
            if (size < 8)
                throw BadLibrary("a load command has no size");
            readCommand(type, list.take(size - 8));
        }
        checkWhole();
        readFixups();
        return std::move(result);
    }

private:
    std::span<const std::byte> part(std::uint64_t offset, std::uint64_t size,
                                    const char* name) const {
        if (offset > file.size() || size > file.size() - offset)
            throw BadLibrary(std::string("the ") + name + " lies outside the file");
        return file.subspan(offset, size);
    }

    void readCommand(std::uint32_t type, std::span<const std::byte> content) {
        Reader command(content, "load command");
        switch (type) {
        case segment64:
            return readSegment(command);
        case dylibIdCommand:
            result.installName = libraryName(content);
            return;
        case loadDylib:
        case loadWeakDylib:
            result.libraries.push_back({libraryName(content), type == loadWeakDylib});
            return;
        case dyldInfo:
        case dyldInfoOnly:
            for (auto* table : {&rebases, &binds, &weakBinds, &lazyBinds, &exportTrie}) {
                const auto offset = command.read<std::uint32_t>();
                *table = part(offset, command.read<std::uint32_t>(), "table of fixups");
            }
            return;
        case symbolTable:
            return readSymbols(command);
        case codeSignature: {
            const auto offset = command.read<std::uint32_t>();
            signature = part(offset, command.read<std::uint32_t>(), "signature");
            return;
        }
        case versionMinIphone:
            isForPhones = true;
            return;
        case buildVersion:
            isForPhones = command.read<std::uint32_t>() == platformIos;
            return;
        case chainedFixups:
            throw BadLibrary("it has chained fixups, which systems before 13.4 do not know");
        default:
            return;
        }
    }

    static std::string libraryName(std::span<const std::byte> content) {
        Reader command(content, "name of a library");
        const auto offset = command.read<std::uint32_t>();
        command.goTo(offset >= 8 ? offset - 8 : 0);
        return command.text();
    }

    void readSegment(Reader& command) {
        MachO::Segment segment{};
        segment.name = command.fixedText(16);
        segment.address = command.read<std::uint64_t>();
        segment.size = command.read<std::uint64_t>();
        segment.offset = command.read<std::uint64_t>();
        segment.sizeInFile = command.read<std::uint64_t>();
        command.read<std::uint32_t>();
        const auto protection = command.read<std::uint32_t>();
        segment.isWritable = protection & protectionWrite;
        segment.isExecutable = protection & protectionExecute;
        constexpr std::uint64_t mostBytes = std::uint64_t{64} << 20;
        if (segment.sizeInFile > segment.size || segment.size > mostBytes ||
            segment.address > mostBytes || segment.address % 0x4000 != 0)
            throw BadLibrary("segment " + segment.name + " has an impossible place or size");
        if (segment.isWritable && segment.isExecutable)
            throw BadLibrary("segment " + segment.name + " is writable and executable");
        part(segment.offset, segment.sizeInFile, "content of a segment");
        const auto sections = command.read<std::uint32_t>();
        command.read<std::uint32_t>();
        for (std::uint32_t i = 0; i < sections; ++i) {
            const std::string name = command.fixedText(16);
            const std::string inSegment = command.fixedText(16);
            const auto address = command.read<std::uint64_t>();
            const auto size = command.read<std::uint64_t>();
            command.take(32);
            if (address < segment.address || address - segment.address > segment.size ||
                size > segment.size - (address - segment.address))
                throw BadLibrary("section " + name + " lies outside its segment");
            result.sections[inSegment + ',' + name] = {address, size};
        }
        result.segments.push_back(segment);
    }

    void readSymbols(Reader& command) {
        const auto offset = command.read<std::uint32_t>();
        const auto count = command.read<std::uint32_t>();
        const auto textOffset = command.read<std::uint32_t>();
        const auto textSize = command.read<std::uint32_t>();
        const auto texts = part(textOffset, textSize, "table of symbols");
        Reader entries(part(offset, std::uint64_t{count} * 16, "table of symbols"),
                       "table of symbols");
        for (std::uint32_t i = 0; i < count; ++i) {
            const auto text = entries.read<std::uint32_t>();
            const auto type = entries.read<std::uint8_t>();
            entries.read<std::uint8_t>();
            entries.read<std::uint16_t>();
            const auto value = entries.read<std::uint64_t>();
            constexpr unsigned debugging = 0xe0;
            constexpr unsigned typeMask = 0x0e;
            constexpr unsigned definedInSection = 0x0e;
            if ((type & debugging) || (type & typeMask) != definedInSection)
                continue;
            Reader name(texts, "table of symbols");
            name.goTo(text);
            result.symbols.try_emplace(value, name.text());
        }
    }

    void checkWhole() const {
        if (!isForPhones)
            throw BadLibrary("it is not for iOS");
        if (result.installName.empty())
            throw BadLibrary("it has no install name");
        if (result.segments.empty() || result.segments[0].name != "__TEXT" ||
            result.segments[0].address != 0 || result.segments[0].offset != 0)
            throw BadLibrary("its first segment is not __TEXT");
        if (signature.empty())
            throw BadLibrary("it is not signed");
        checkCodeSignature(file, signature);
    }

    void readFixups() {
        readRebases();
        readBinds(binds, false);
        readBinds(lazyBinds, true);
        if (!weakBinds.empty() && static_cast<std::uint8_t>(weakBinds[0]) != 0)
            throw BadLibrary("it has weak definitions, which the emulated loader does not merge");
        readExports(0, "", 0);
    }

    Address addressIn(std::uint64_t segment, std::uint64_t offset) const {
        if (segment >= result.segments.size() || !result.segments[segment].isWritable ||
            offset > result.segments[segment].size - 8)
            throw BadLibrary("a fixup lies outside the writable segments");
        return result.segments[segment].address + offset;
    }

    void readRebases() {
        Reader opcodes(rebases, "table of rebases");
        std::uint64_t segment = 0;
        std::uint64_t offset = 0;
        const auto rebase = [&](std::uint64_t times, std::uint64_t skip) {
            for (std::uint64_t i = 0; i < times; ++i) {
                result.rebases.push_back(addressIn(segment, offset));
                offset += 8 + skip;
            }
        };
        while (!opcodes.atEnd()) {
            const auto byte = opcodes.read<std::uint8_t>();
            const std::uint64_t immediate = byte & 0x0f;
            switch (byte & 0xf0) {
            case 0x00:
                return;
            case 0x10:
                if (immediate != 1)
                    throw BadLibrary("a rebase is not of a pointer");
                break;
            case 0x20:
                segment = immediate;
                offset = opcodes.unsignedNumber();
                break;
            case 0x30:
                offset += opcodes.unsignedNumber();
                break;
            case 0x40:
                offset += immediate * 8;
                break;
            case 0x50:
                rebase(immediate, 0);
                break;
            case 0x60:
                rebase(opcodes.unsignedNumber(), 0);
                break;
            case 0x70:
                rebase(1, opcodes.unsignedNumber());
                break;
            case 0x80: {
                const auto times = opcodes.unsignedNumber();
                rebase(times, opcodes.unsignedNumber());
                break;
            }
            default:
                throw BadLibrary("the table of rebases has an unknown operation");
            }
        }
    }

    const std::string& libraryAt(std::uint64_t ordinal) const {
        static const std::string itself;
        if (ordinal == 0)
            return itself;
        if (ordinal > result.libraries.size())
            throw BadLibrary("a symbol is bound to a library that is not linked");
        return result.libraries[ordinal - 1].installName;
    }

    void readBinds(std::span<const std::byte> table, bool isLazy) {
        Reader opcodes(table, "table of imports");
        std::uint64_t segment = 0;
        std::uint64_t offset = 0;
        std::uint64_t ordinal = 0;
        std::string symbol;
        bool isWeak = false;
        std::int64_t addend = 0;
        const auto bind = [&](std::uint64_t skip) {
            result.binds.push_back(
                {addressIn(segment, offset), libraryAt(ordinal), symbol, addend, isWeak});
            offset += 8 + skip;
        };
        while (!opcodes.atEnd()) {
            const auto byte = opcodes.read<std::uint8_t>();
            const std::uint64_t immediate = byte & 0x0f;
            switch (byte & 0xf0) {
            case 0x00:
                // Each lazy import ends with this byte.
                if (!isLazy)
                    return;
                break;
            case 0x10:
                ordinal = immediate;
                break;
            case 0x20:
                ordinal = opcodes.unsignedNumber();
                break;
            case 0x40:
                isWeak = immediate & 1;
                symbol = opcodes.text();
                break;
            case 0x50:
                if (immediate != 1)
                    throw BadLibrary("an import is not bound as a pointer");
                break;
            case 0x60:
                addend = opcodes.signedNumber();
                break;
            case 0x70:
                segment = immediate;
                offset = opcodes.unsignedNumber();
                break;
            case 0x80:
                offset += opcodes.unsignedNumber();
                break;
            case 0x90:
                bind(0);
                break;
            case 0xa0:
                bind(opcodes.unsignedNumber());
                break;
            case 0xb0:
                bind(immediate * 8);
                break;
            case 0xc0: {
                const auto times = opcodes.unsignedNumber();
                const auto skip = opcodes.unsignedNumber();
                for (std::uint64_t i = 0; i < times; ++i)
                    bind(skip);
                break;
            }
            default:
                throw BadLibrary("the table of imports has an unknown operation");
            }
        }
    }

    void readExports(std::uint64_t node, const std::string& prefix, unsigned depth) {
        if (exportTrie.empty())
            return;
        if (depth > 128)
            throw BadLibrary("the table of exports has a loop");
        Reader trie(exportTrie, "table of exports");
        trie.goTo(node);
        const auto size = trie.unsignedNumber();
        if (size > 0) {
            Reader entry(trie.take(size), "table of exports");
            if (entry.unsignedNumber() != 0)
                throw BadLibrary("the export " + prefix + " is of an unknown kind");
            result.exports[prefix] = entry.unsignedNumber();
        }
        for (auto children = trie.read<std::uint8_t>(); children > 0; --children) {
            const std::string rest = trie.text();
            readExports(trie.unsignedNumber(), prefix + rest, depth + 1);
        }
    }

    const std::span<const std::byte> file;
    MachO result;
    bool isForPhones = false;
    std::span<const std::byte> signature;
    std::span<const std::byte> rebases;
    std::span<const std::byte> binds;
    std::span<const std::byte> weakBinds;
    std::span<const std::byte> lazyBinds;
    std::span<const std::byte> exportTrie;
};

} // namespace

MachO::Section MachO::section(const std::string& name) const {
    const auto found = sections.find(name);
    return found == sections.end() ? Section{} : found->second;
}

MachO readMachO(std::span<const std::byte> file) {
    return MachOReader(file).read();
}

} // namespace noctara::emulated
