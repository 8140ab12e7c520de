/// Reads a dynamic library in Apple's Mach-O format, as far as a phone's loader needs it. Only a
/// library for arm64 without chained fixups is accepted.
#pragma once

#include "phones/emulated/memory.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace noctara::emulated {

/// A library that a phone's loader would refuse. The text says why.
class BadLibrary : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// How the loader of a phone loads a library.
struct Loading {
    std::filesystem::path library;
    Address slide; ///< A multiple of 16 KiB.
    /// What the system lacks: symbols, such as "_CTRegistrationGetCellularDataIsEnabled", classes
    /// by their names, and libraries by their install names. Throws BadLibrary for a name that the
    /// emulated phone does not have anyway.
    std::set<std::string> without;
};

/// Addresses are those of the file, to which the loader adds the slide.
struct MachO {
    struct Segment {
        std::string name;
        Address address;
        std::uint64_t size;
        std::uint64_t offset; ///< In the file.
        std::uint64_t sizeInFile;
        bool isWritable;
        bool isExecutable;
    };

    struct Section {
        Address address;
        std::uint64_t size;
    };

    struct LinkedLibrary {
        std::string installName;
        bool isWeak; ///< May be missing.
    };

    struct Bind {
        Address at;
        std::string library; ///< Its install name. Empty: this library itself.
        std::string symbol;
        std::int64_t addend;
        bool isWeak; ///< Null if the symbol is missing.
    };

    std::string installName;
    std::vector<Segment> segments;
    std::map<std::string, Section> sections; ///< By "segment,section".
    std::vector<LinkedLibrary> libraries;
    std::vector<Address> rebases;
    std::vector<Bind> binds;
    std::map<std::string, Address> exports;
    std::map<Address, std::string> symbols; ///< Of functions and data in the library.

    /// Empty if there is no such section.
    Section section(const std::string& name) const;
};

/// Throws BadLibrary.
MachO readMachO(std::span<const std::byte> file);

} // namespace noctara::emulated
