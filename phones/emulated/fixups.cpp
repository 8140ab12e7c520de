#include "phones/emulated/fixups.h"

#include "phones/emulated/byte_reader.h"

namespace noctara::emulated {

namespace {

/// Far more than a library of this size has. It ends the reading of a damaged table.
constexpr std::size_t mostFixups = 1 << 20;

class FixupReader {
public:
    FixupReader(const FixupTables& itsTables, MachO& itsResult) :
        tables(itsTables), result(itsResult) {}

    void read() {
        readRebases();
        readBinds(tables.binds, Kind::ordinary);
        readBinds(tables.weakBinds, Kind::weak);
        readBinds(tables.lazyBinds, Kind::lazy);
        readExports(0, "", 0);
    }

private:
    enum class Kind { ordinary, weak, lazy };

    template <typename Fixup>
    static void add(std::vector<Fixup>& fixups, Fixup fixup) {
        if (fixups.size() == mostFixups)
            throw BadLibrary("there are too many fixups");
        fixups.push_back(std::move(fixup));
    }

    Address addressIn(std::uint64_t segment, std::uint64_t offset) const {
        if (segment >= result.segments.size() || !result.segments[segment].isWritable ||
            result.segments[segment].size < 8 || offset > result.segments[segment].size - 8)
            throw BadLibrary("a fixup lies outside the writable segments");
        return result.segments[segment].address + offset;
    }

    void readRebases() {
        ByteReader opcodes(tables.rebases, "table of rebases");
        std::uint64_t segment = 0;
        std::uint64_t offset = 0;
        const auto rebase = [&](std::uint64_t times, std::uint64_t skip) {
            for (std::uint64_t i = 0; i < times; ++i) {
                add(result.rebases, addressIn(segment, offset));
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

    void readBinds(std::span<const std::byte> table, Kind kind) {
        ByteReader opcodes(table, "table of imports");
        std::uint64_t segment = 0;
        std::uint64_t offset = 0;
        std::uint64_t ordinal = 0;
        std::string symbol;
        bool isWeak = false;
        std::int64_t addend = 0;
        const auto bind = [&](std::uint64_t skip) {
            const Address at = addressIn(segment, offset);
            // The table of weak imports names no library. The ordinary table has bound them to the
            // first library that has them, which is the definition that all libraries share.
            if (kind != Kind::weak)
                add(result.binds, {at, libraryAt(ordinal), symbol, addend, isWeak});
            offset += 8 + skip;
        };
        while (!opcodes.atEnd()) {
            const auto byte = opcodes.read<std::uint8_t>();
            const std::uint64_t immediate = byte & 0x0f;
            switch (byte & 0xf0) {
            case 0x00:
                // Each lazy import ends with this byte.
                if (kind != Kind::lazy)
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
        if (tables.exports.empty())
            return;
        if (depth > 128 || ++nodes > mostFixups)
            throw BadLibrary("the table of exports has a loop");
        ByteReader trie(tables.exports, "table of exports");
        trie.goTo(node);
        const auto size = trie.unsignedNumber();
        if (size > 0) {
            ByteReader entry(trie.take(size), "table of exports");
            if (entry.unsignedNumber() != 0)
                throw BadLibrary("the export " + prefix + " is of an unknown kind");
            result.exports[prefix] = entry.unsignedNumber();
        }
        for (auto children = trie.read<std::uint8_t>(); children > 0; --children) {
            const std::string rest = trie.text();
            readExports(trie.unsignedNumber(), prefix + rest, depth + 1);
        }
    }

    const FixupTables& tables;
    MachO& result;
    std::size_t nodes = 0; ///< Of the table of exports.
};

} // namespace

void readFixups(const FixupTables& tables, MachO& result) {
    FixupReader(tables, result).read();
}

} // namespace noctara::emulated
