/// The heap of the emulated process. It knows which bytes the library owns.
#pragma once

#include "phones/emulated/memory.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

namespace noctara::emulated {

class Heap {
public:
    /// Maps its region.
    explicit Heap(Memory& memory);

    struct Block {
        std::size_t size;
        Address place; ///< The instruction after the call that allocated it.
    };

    /// Zero bytes, aligned to 16.
    Address allocate(std::size_t size, Address place);

    /// Throws Fault for an address that is not the start of a block. Null is ignored. Freed bytes
    /// stay unused for a long time, so that a late access is noticed.
    void free(Address address);

    /// Whether all the bytes belong to one block that is not freed.
    bool owns(Address address, std::size_t size) const;
    bool contains(Address address) const { return address >= start && address < end; }

    /// The block with this address in it; null if there is none.
    const std::pair<const Address, Block>* find(Address address) const;

    const std::map<Address, Block>& blocks() const { return used; }

    static constexpr Address start = 0x3'0000'0000;
    static constexpr std::size_t size = std::size_t{512} << 20;
    static constexpr Address end = start + size;

private:
    static constexpr std::size_t unit = 16;
    /// Between two blocks.
    static constexpr std::size_t gap = 16;
    /// Bytes that are freed but not used again.
    static constexpr std::size_t mostQuarantined = std::size_t{64} << 20;

    void setOwned(Address address, std::size_t length, bool owned);

    Memory& memory;
    Address next = start;
    std::map<Address, Block> used;
    /// For each unit, how many of its first bytes are owned. A phone uses little of it, and zero
    /// pages from the system cost nothing.
    std::unique_ptr<std::uint8_t[], void (*)(void*)> owned;
    std::deque<std::pair<Address, std::size_t>> quarantine;
    std::size_t quarantined = 0;
    std::unordered_map<std::size_t, std::vector<Address>> reusable; ///< By size in units.
};

} // namespace noctara::emulated
