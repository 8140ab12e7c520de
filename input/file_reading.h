/// Reads whole files.
#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace noctara {

/// The text says why a file cannot be read, without the name of the file: "no such file".
class UnreadableFile : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Whether a named pipe is read. Opening one waits for a program that writes to it.
enum class Pipes { read, refused };

/// The bytes of a file, or of a pipe up to its end. Throws UnreadableFile if it cannot be read, is
/// a folder or holds more than `mostMebibytes` MiB.
std::string readFile(const std::filesystem::path& file, std::size_t mostMebibytes,
                     Pipes pipes = Pipes::read);

/// The same for a file that the user names: "-" is standard input, and data in the gzip format is
/// decompressed. The limit counts decompressed bytes.
std::string readInput(const std::filesystem::path& file, std::size_t mostMebibytes);

} // namespace noctara
