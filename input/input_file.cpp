#include "input/input_file.h"

#include "input/printable.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

namespace noctara {

namespace {

[[noreturn]] void fail(int error) {
    throw UnreadableFile(error == ENOENT ? "no such file"
                                         : std::generic_category().message(error ? error : EIO));
}

int openDescriptor(const std::filesystem::path& file) {
    std::error_code ignored;
    if (!isStandardInput(file) && std::filesystem::is_directory(file, ignored))
        throw UnreadableFile("a folder, not a file");
    const int descriptor = isStandardInput(file) ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                                 : ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        fail(errno);
    return descriptor;
}

} // namespace

bool isStandardInput(const std::filesystem::path& file) {
    return file == "-";
}

std::string shownName(const std::filesystem::path& file) {
    if (isStandardInput(file))
        return "standard input";
    return file.empty() ? "\"\"" : printable(file.string());
}

void InputFile::Closing::operator()(gzFile_s* open) const {
    ::gzclose(open);
}

void InputFile::Closing::operator()(std::FILE* open) const {
    std::fclose(open);
}

InputFile::InputFile(const std::filesystem::path& file, std::size_t most, Passes passes) :
    mostMebibytes(most) {
    const int descriptor = openDescriptor(file);
    const bool isPipe = ::lseek(descriptor, 0, SEEK_CUR) < 0;
    source.reset(::gzdopen(descriptor, "rb"));
    if (!source) {
        ::close(descriptor);
        fail(ENOMEM);
    }
    constexpr unsigned bufferSize = 1 << 17;
    ::gzbuffer(source.get(), bufferSize);
    if (isPipe && passes == Passes::several) {
        copy.reset(std::tmpfile());
        if (!copy)
            throw UnreadableFile("no temporary file can be created for it: " +
                                 std::generic_category().message(errno));
    }
}

std::size_t InputFile::readDecompressed(char* buffer, std::size_t size) {
    constexpr std::size_t longestRead = std::numeric_limits<int>::max();
    errno = 0;
    const int count =
        ::gzread(source.get(), buffer, static_cast<unsigned>(std::min(size, longestRead)));
    int error = Z_OK;
    ::gzerror(source.get(), &error);
    if (error == Z_ERRNO)
        fail(errno);
    if (count < 0 || (error != Z_OK && error != Z_STREAM_END))
        throw UnreadableFile(error == Z_BUF_ERROR ? "the gzip data ends too early"
                                                  : "the gzip data is damaged");
    return static_cast<std::size_t>(count);
}

std::size_t InputFile::read(char* buffer, std::size_t size) {
    if (readsCopy) {
        const std::size_t count = std::fread(buffer, 1, size, copy.get());
        if (std::ferror(copy.get()))
            fail(errno);
        return count;
    }
    const std::size_t count = readDecompressed(buffer, size);
    total += count;
    if (total > mostMebibytes << 20)
        throw UnreadableFile("larger than " + std::to_string(mostMebibytes) + " MiB");
    if (copy && std::fwrite(buffer, 1, count, copy.get()) != count)
        fail(errno);
    return count;
}

void InputFile::rewind() {
    readsCopy = copy != nullptr;
    total = 0;
    if (readsCopy)
        std::rewind(copy.get());
    else if (::gzrewind(source.get()) != 0)
        fail(errno);
}

} // namespace noctara
