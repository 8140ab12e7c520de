#include "tests/phones/springboard/ios/mach_o.h"

#include "input/temporary_folder.h"
#include "tests/programs.h"

#include <bit>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace noctara {

namespace {

/// A tool's name of a library: its file name up to the first dot.
std::string shortName(const std::string& installName) {
    const auto name = std::filesystem::path(installName).filename().string();
    return name.substr(0, name.find('.'));
}

/// The number in four bytes, the first of which is the highest.
std::uint32_t number(const std::string& bytes, std::size_t at) {
    if (at + 4 > bytes.size())
        throw std::runtime_error("the file ends too early");
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8U | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

} // namespace

std::vector<std::string> MachO::linesOf(const std::string& tool) const {
    const auto printed = run(tool + " '" + file.string() + "' 2>&1");
    if (printed.exitCode != 0)
        throw std::runtime_error(tool + ": " + printed.output);
    std::istringstream in(printed.output);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::string MachO::bytes() const {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string MachO::read(const std::string& option) const {
    std::string text;
    for (const auto& line : linesOf("llvm-readobj-14 " + option))
        text += line + '\n';
    return text;
}

std::vector<std::string> MachO::loadCommands(const std::string& name) const {
    std::vector<std::string> found;
    bool wanted = false;
    for (const auto& line : linesOf("llvm-objdump-14 --macho --private-headers")) {
        std::istringstream words(line);
        std::string key, value;
        words >> key >> value;
        if (key == "Load") {
            wanted = false;
        } else if (key == "cmd") {
            wanted = value == name;
            if (wanted)
                found.emplace_back();
        } else if (wanted) {
            found.back() += key + ' ' + value + '\n';
        }
    }
    return found;
}

std::set<std::string> MachO::exports() const {
    std::set<std::string> names;
    for (const auto& line : linesOf("llvm-objdump-14 --macho --exports-trie"))
        if (line.starts_with("0x"))
            names.insert(line.substr(line.rfind(' ') + 1));
    return names;
}

Imports MachO::imports() const {
    std::map<std::string, std::string> libraries;
    for (const auto& line : linesOf("llvm-objdump-14 --macho --dylibs-used"))
        if (line.starts_with('\t')) {
            const auto installName = line.substr(1, line.find(" (") - 1);
            libraries[shortName(installName)] = installName;
        }

    Imports found;
    static const std::regex bound(
        R"(__\w+ +__\w+ +0x\w+ +(?:pointer +-?\d+ +)?(\S+) +(\S+)( \(weak_import\))?)");
    std::smatch match;
    for (const auto& line : linesOf("llvm-objdump-14 --macho --bind --lazy-bind --weak-bind"))
        if (std::regex_match(line, match, bound)) {
            const Import import{libraries.at(match[1]), match[3].matched};
            const auto& [symbol, first] = *found.try_emplace(match[2], import).first;
            if (first.library != import.library)
                throw std::runtime_error(symbol + " is bound to two libraries");
        }

    static const std::regex undefined(R"( *\(undefined\) (weak )?external (\S+) \(from (\S+)\))");
    for (const auto& line : linesOf("llvm-nm-14 -m"))
        if (std::regex_match(line, match, undefined)) {
            const Import& import = found.at(match[2]);
            if (import != Import{libraries.at(match[3]), match[1].matched})
                throw std::runtime_error(match[2].str() + " differs from the symbol table");
        }
    return found;
}

std::vector<std::size_t> MachO::pagesThatDifferFromTheSignature() const {
    const auto commands = loadCommands("LC_CODE_SIGNATURE");
    std::smatch offset;
    if (commands.size() != 1 ||
        !std::regex_search(commands.front(), offset, std::regex("dataoff ([0-9]+)")))
        throw std::runtime_error("there is no signature");
    const auto content = bytes();
    const auto signature = std::stoul(offset[1]);

    // The signature contains one code directory: hashes of SHA-256, and pages of 4096 bytes.
    constexpr std::uint32_t embeddedSignature = 0xFADE0CC0, codeDirectory = 0xFADE0C02;
    const auto directory = signature + number(content, signature + 16);
    const auto hashes = directory + number(content, directory + 16);
    const auto count = number(content, directory + 28);
    const auto signedSize = number(content, directory + 32);
    constexpr std::size_t page = 4096, hashSize = 32;
    if (number(content, signature) != embeddedSignature ||
        number(content, directory) != codeDirectory || signedSize != signature ||
        number(content, directory + 36) != (hashSize << 24U | 2U << 16U | 12U) ||
        count != (signedSize + page - 1) / page)
        throw std::runtime_error("the signature is of another kind");

    const TemporaryFolder folder;
    for (std::size_t i = 0; i < count; ++i)
        std::ofstream(folder.path / std::to_string(1000000 + i), std::ios::binary)
            << content.substr(i * page, std::min(page, signedSize - i * page));
    std::istringstream sums(run("cd '" + folder.path.string() + "' && sha256sum *").output);
    std::vector<std::size_t> different;
    std::string line;
    for (std::size_t i = 0; i < count; ++i) {
        std::string hash;
        for (std::size_t at = 0; at < hashSize; at += 4) {
            char hex[9];
            std::snprintf(hex, sizeof hex, "%08x", number(content, hashes + i * hashSize + at));
            hash += hex;
        }
        if (!std::getline(sums, line) || !line.starts_with(hash))
            different.push_back(i);
    }
    return different;
}

} // namespace noctara
