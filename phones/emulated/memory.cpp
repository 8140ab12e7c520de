#include "phones/emulated/memory.h"

#include <cerrno>
#include <cstdio>
#include <sys/mman.h>
#include <system_error>
#include <utility>

namespace noctara::emulated {

std::string inHex(Address address) {
    char text[24];
    std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(address));
    return text;
}

Memory::~Memory() {
    for (const Region& region : all)
        munmap(region.bytes, region.size);
}

void Memory::map(Address start, std::size_t size, Access access, Owns owns) {
    void* const bytes = mmap(nullptr, size, PROT_READ | PROT_WRITE,
                             MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (bytes == MAP_FAILED)
        throw std::system_error(errno, std::generic_category(), "memory of the emulated process");
    all.push_back({start, size, access, static_cast<std::byte*>(bytes), std::move(owns)});
}

const Memory::Region* Memory::find(Address address, std::size_t size) const {
    for (const Region& region : all)
        if (address >= region.start && address - region.start < region.size &&
            size <= region.size - (address - region.start))
            return &region;
    return nullptr;
}

std::byte* Memory::at(Address address, std::size_t size) const {
    const Region* const region = find(address, size);
    if (!region)
        throw Fault(std::to_string(size) + " bytes at " + inHex(address) +
                    " are passed, which are not mapped");
    if (region->owns && !region->owns(address, size))
        throw Fault(std::to_string(size) + " bytes at " + inHex(address) +
                    " are passed, which the library does not own");
    return region->bytes + (address - region->start);
}

std::byte* Memory::writable(Address address, std::size_t size) const {
    std::byte* const bytes = at(address, size);
    if (find(address, size)->access != Access::readAndWrite)
        throw Fault(std::to_string(size) + " bytes at " + inHex(address) +
                    " are passed to be written, which are read-only");
    return bytes;
}

std::string Memory::text(Address address) const {
    std::string text;
    for (char next; (next = read<char>(address)) != '\0'; ++address)
        text += next;
    return text;
}

std::string Memory::bytes(Address address, std::size_t size) const {
    return {reinterpret_cast<const char*>(at(address, size)), size};
}

} // namespace noctara::emulated
