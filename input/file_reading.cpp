#include "input/file_reading.h"

#include "input/input_file.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <system_error>

#include <sys/stat.h>

namespace noctara {

std::string readFile(const std::filesystem::path& file, std::size_t mostMebibytes, Pipes pipes) {
    const std::size_t mostBytes = mostMebibytes << 20;
    const auto refuseSize = [&] {
        throw UnreadableFile("larger than " + std::to_string(mostMebibytes) + " MiB");
    };
    struct stat status {};
    if (::stat(file.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode))
            throw UnreadableFile("a folder, not a file");
        if (S_ISFIFO(status.st_mode) && pipes == Pipes::refused)
            throw UnreadableFile("not a regular file");
        // The monitor reads the list of wake-ups every few seconds: a huge file is refused unread.
        if (S_ISREG(status.st_mode) && static_cast<std::uintmax_t>(status.st_size) > mostBytes)
            refuseSize();
    }
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    std::string bytes;
    std::array<char, 1 << 14> part;
    while (bytes.size() <= mostBytes &&
           (stream.read(part.data(), part.size()), stream.gcount() > 0))
        bytes.append(part.data(), static_cast<std::size_t>(stream.gcount()));
    if (!stream.is_open() || stream.bad())
        throw UnreadableFile(errno == ENOENT
                                 ? "no such file"
                                 : std::generic_category().message(errno ? errno : EIO));
    if (bytes.size() > mostBytes)
        refuseSize();
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
