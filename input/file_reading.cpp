#include "input/file_reading.h"

#include "input/input_file.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace noctara {

std::string readFile(const std::filesystem::path& file, std::size_t mostMebibytes) {
    const std::size_t mostBytes = mostMebibytes << 20;
    const auto refuseSize = [&] {
        throw UnreadableFile("larger than " + std::to_string(mostMebibytes) + " MiB");
    };
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored))
        throw UnreadableFile("a folder, not a file");
    // The monitor reads the list of wake-ups every few seconds: a huge file is refused unread.
    if (std::filesystem::is_regular_file(file, ignored) &&
        std::filesystem::file_size(file, ignored) > mostBytes && !ignored)
        refuseSize();
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
