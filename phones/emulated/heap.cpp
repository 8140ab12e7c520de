#include "phones/emulated/heap.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace noctara::emulated {

Heap::Heap(Memory& processMemory) :
    memory(processMemory),
    owned(static_cast<std::uint8_t*>(std::calloc(size / unit, 1)), std::free) {
    if (!owned)
        throw std::bad_alloc();
    memory.map(start, size, Memory::Access::readAndWrite,
               [this](Address address, std::size_t length) { return owns(address, length); });
}

Address Heap::allocate(std::size_t length, Address place) {
    const std::size_t units = std::max<std::size_t>((length + unit - 1) / unit, 1);
    Address address;
    if (auto& free = reusable[units]; !free.empty()) {
        address = free.back();
        free.pop_back();
    } else {
        if (units * unit > end - next - gap)
            throw Fault("the heap is full");
        address = next;
        next += units * unit + gap;
    }
    used.emplace(address, Block{length, place});
    setOwned(address, length, true);
    std::memset(memory.at(address, length), 0, length);
    return address;
}

void Heap::free(Address address) {
    if (address == 0)
        return;
    const auto block = used.find(address);
    if (block == used.end())
        throw Fault("a free of " + inHex(address) + ", which is no block of the heap");
    const std::size_t length = block->second.size;
    used.erase(block);
    std::memset(memory.at(address, length), 0xdb, length);
    setOwned(address, length, false);
    quarantine.emplace_back(address, length);
    quarantined += length;
    for (; quarantined > mostQuarantined; quarantine.pop_front()) {
        const auto [oldest, oldestLength] = quarantine.front();
        quarantined -= oldestLength;
        reusable[std::max<std::size_t>((oldestLength + unit - 1) / unit, 1)].push_back(oldest);
    }
}

bool Heap::owns(Address address, std::size_t length) const {
    if (address < start || length > end - address)
        return false;
    for (Address at = address; at < address + length;) {
        const std::size_t inUnit = at % unit;
        const std::size_t wanted = std::min<std::size_t>(unit - inUnit, address + length - at);
        if (inUnit + wanted > owned[(at - start) / unit])
            return false;
        at += wanted;
    }
    return true;
}

const std::pair<const Address, Heap::Block>* Heap::find(Address address) const {
    auto block = used.upper_bound(address);
    if (block == used.begin())
        return nullptr;
    --block;
    return address - block->first < std::max<std::size_t>(block->second.size, 1) ? &*block
                                                                                 : nullptr;
}

void Heap::setOwned(Address address, std::size_t length, bool isOwned) {
    for (std::size_t done = 0; done < length; done += unit)
        owned[(address + done - start) / unit] =
            isOwned ? static_cast<std::uint8_t>(std::min(unit, length - done)) : 0;
}

} // namespace noctara::emulated
