/// Reads a file that the user names, in parts.
#pragma once

#include "input/file_reading.h"

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

struct gzFile_s;

namespace noctara {

/// "-" stands for standard input.
bool isStandardInput(const std::filesystem::path& file);

/// The name of the file for messages, with escaped control characters; "standard
/// input" for "-".
std::string shownName(const std::filesystem::path& file);

/// A file, a pipe, or standard input. Data in the gzip format is decompressed.
class InputFile {
public:
    /// Whether the file is read once or again. A pipe that is read again is copied to a temporary
    /// file without a name.
    enum class Passes { one, several };

    /// `mostMebibytes` counts decompressed bytes. Throws UnreadableFile if the file cannot be
    /// opened.
    InputFile(const std::filesystem::path& file, std::size_t mostMebibytes, Passes passes);

    /// Fills the buffer, less at the end of the file, and returns the number of bytes. Throws
    /// UnreadableFile if the file cannot be read, is damaged or is too large.
    std::size_t read(char* buffer, std::size_t size);

    /// Begins again at the start. Only for several passes, and only at the end of the file.
    void rewind();

private:
    struct Closing {
        void operator()(gzFile_s* open) const;
        void operator()(std::FILE* open) const;
    };

    std::size_t readDecompressed(char* buffer, std::size_t size);

    const std::size_t mostMebibytes;
    std::size_t total = 0;
    std::unique_ptr<gzFile_s, Closing> source;
    std::unique_ptr<std::FILE, Closing> copy;
    bool readsCopy = false;
};

} // namespace noctara
