#include "phones/emulated/mach_o.h"

#include "phones/emulated/byte_reader.h"
#include "phones/emulated/code_signature.h"
#include "phones/emulated/fixups.h"

#include <utility>

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

class MachOReader {
public:
    explicit MachOReader(std::span<const std::byte> bytes) : file(bytes) {}

    MachO read() {
        ByteReader header(file, "header");
        if (file.size() < 32 || header.read<std::uint32_t>() != magic64)
            throw BadLibrary("it is no 64-bit Mach-O file");
        if (header.read<std::uint32_t>() != cpuArm64 || header.read<std::uint32_t>() != 0)
            throw BadLibrary("it is not for arm64");
        if (header.read<std::uint32_t>() != typeDylib)
            throw BadLibrary("it is no dynamic library");
        const auto commands = header.read<std::uint32_t>();
        const auto commandBytes = header.read<std::uint32_t>();
        header.goTo(32);
        ByteReader list(header.take(commandBytes), "list of load commands");
        for (std::uint32_t i = 0; i < commands; ++i) {
            const auto type = list.read<std::uint32_t>();
            const auto size = list.read<std::uint32_t>();
            if (size < 8)
                throw BadLibrary("a load command has no size");
            readCommand(type, list.take(size - 8));
        }
        checkWhole();
        readFixups(tables, result);
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
        ByteReader command(content, "load command");
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
            for (auto* table : {&tables.rebases, &tables.binds, &tables.weakBinds,
                                &tables.lazyBinds, &tables.exports}) {
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
        ByteReader command(content, "name of a library");
        const auto offset = command.read<std::uint32_t>();
        command.goTo(offset >= 8 ? offset - 8 : 0);
        return command.text();
    }

    void readSegment(ByteReader& command) {
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
        if (!result.segments.empty() &&
            segment.address < result.segments.back().address + result.segments.back().size)
            throw BadLibrary("segment " + segment.name + " overlaps the one before it");
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

    void readSymbols(ByteReader& command) {
        const auto offset = command.read<std::uint32_t>();
        const auto count = command.read<std::uint32_t>();
        const auto textOffset = command.read<std::uint32_t>();
        const auto textSize = command.read<std::uint32_t>();
        const auto texts = part(textOffset, textSize, "table of symbols");
        ByteReader entries(part(offset, std::uint64_t{count} * 16, "table of symbols"),
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
            ByteReader name(texts, "table of symbols");
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

    const std::span<const std::byte> file;
    MachO result;
    bool isForPhones = false;
    std::span<const std::byte> signature;
    FixupTables tables;
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
