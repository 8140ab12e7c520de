/// Bytes of a Mach-O file, read from front to back.
#pragma once

#include "phones/emulated/mach_o.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

namespace noctara::emulated {

/// Every read is checked: one beyond the end throws BadLibrary.
class ByteReader {
public:
    ByteReader(std::span<const std::byte> allBytes, const char* itsName) :
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

} // namespace noctara::emulated
