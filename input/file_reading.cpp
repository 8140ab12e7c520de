#include "input/file_reading.h"

#include "input/file_descriptor.h"
#include "input/input_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctara {

namespace {

[[noreturn]] void fail(int error) {
    throw UnreadableFile(error == ENOENT ? "no such file" : std::generic_category().message(error));
}

/// Returns the number of bytes that were read. At the end of the file it is 0.
std::size_t readPart(int file, char* buffer, std::size_t size) {
    while (true) {
        const ssize_t count = ::read(file, buffer, size);
        if (count >= 0)
            return static_cast<std::size_t>(count);
        if (errno != EINTR)
            fail(errno);
    }
}

} // namespace

std::string readFile(const std::filesystem::path& file, std::size_t mostMebibytes, Pipes pipes) {
    const std::size_t mostBytes = mostMebibytes << 20;
    const auto refuseSize = [&] {
        throw UnreadableFile("larger than " + std::to_string(mostMebibytes) + " MiB");
    };
    struct stat status {};
    if (::stat(file.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode))
            throw UnreadableFile("a folder, not a file");
        // Opening and closing a pipe would make its writer fail.
        if (S_ISFIFO(status.st_mode) && pipes == Pipes::refused)
            throw UnreadableFile("not a regular file");
        // The monitor reads the list of wake-ups every few seconds: a huge file is refused unread.
        if (S_ISREG(status.st_mode) && static_cast<std::uintmax_t>(status.st_size) > mostBytes)
            refuseSize();
    }
    const FileDescriptor source(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!source.isOpen())
        fail(errno);
    // The buffer has room for more than the file. One read takes the file, and the next one reports
    // its end.
    constexpr std::size_t part = 1 << 12;
    std::string bytes(static_cast<std::size_t>(status.st_size) + part, '\0');
    std::size_t size = 0;
    while (const std::size_t count = readPart(source.get(), &bytes[size], bytes.size() - size)) {
        size += count;
        if (size > mostBytes)
            refuseSize();
        bytes.resize(std::max(bytes.size(), size + part));
    }
    bytes.resize(size);
    return bytes;
}

std::string readInput(const std::filesystem::path& file, std::size_t mostMebibytes) {
    InputFile input(file, mostMebibytes, InputFile::Passes::one);
    std::string bytes;
    std::array<char, 1 << 14> part;
    while (const std::size_t count = input.read(part.data(), part.size()))
        bytes.append(part.data(), count);
    return bytes;
}

} // namespace noctara
