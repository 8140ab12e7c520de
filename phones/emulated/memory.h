/// The memory of the emulated process. Every processor of the process sees the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace noctara::emulated {

/// An address in the emulated process.
using Address = std::uint64_t;

/// The library did something that a phone would not survive, or that the platform's rules forbid.
/// The text says what.
class Fault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::string inHex(Address address);

class Memory {
public:
    enum class Access { read, readAndWrite, readAndExecute };

    /// Whether the library owns these bytes of a region.
    using Owns = std::function<bool(Address start, std::size_t size)>;

    struct Region {
        Address start;
        std::size_t size;
        Access access;
        std::byte* bytes; ///< On this machine.
        Owns owns;        ///< Empty: all of them.
    };

    Memory() = default;
    ~Memory();
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;

    /// Maps zero bytes. `start` and `size` are multiples of the size of a page.
    void map(Address start, std::size_t size, Access access, Owns owns = {});

    const std::vector<Region>& regions() const { return all; }

    /// Whether the bytes are mapped, in one region.
    bool isMapped(Address address, std::size_t size) const { return find(address, size); }

    /// The bytes on this machine. Throws Fault if not all of them are mapped and owned.
    std::byte* at(Address address, std::size_t size) const;

    /// The same, of bytes that the process may write. Throws Fault if they are read-only.
    std::byte* writable(Address address, std::size_t size) const;

    template <typename Value>
    Value read(Address address) const {
        Value value;
        std::memcpy(&value, at(address, sizeof value), sizeof value);
        return value;
    }

    template <typename Value>
    void write(Address address, const Value& value) const {
        std::memcpy(writable(address, sizeof value), &value, sizeof value);
    }

    /// A null-terminated string.
    std::string text(Address address) const;
    std::string bytes(Address address, std::size_t size) const;

private:
    const Region* find(Address address, std::size_t size) const;

    std::vector<Region> all;
};

} // namespace noctara::emulated
