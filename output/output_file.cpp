#include "output/output_file.h"

#include "input/bad_input.h"
#include "input/file_descriptor.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace noctara {

namespace fs = std::filesystem;

namespace {

/// The permissions that a new file gets here.
fs::perms newFilePermissions() {
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<fs::perms>(0666 & ~mask);
}

/// The file that a chain of links leads to. It need not exist.
fs::path withoutLinks(fs::path file) {
    constexpr int mostLinks = 40;
    std::error_code error;
    for (int i = 0; i < mostLinks && fs::is_symlink(file, error); ++i)
        file = file.parent_path() / fs::read_symlink(file, error);
    return file;
}

/// /dev/fd/63 is a link to a pipe or to an open file, which must not be replaced.
bool isInDeviceFolder(const fs::path& file) {
    const auto path = fs::absolute(file).lexically_normal().string();
    return path.starts_with("/dev/fd/") || path.starts_with("/proc/") || path == "/dev/stderr";
}

/// Gives a file the owner and the group of another. Only root can give it to another user.
void keepOwner(const fs::path& file, const fs::path& other) {
    struct stat status {};
    if (::stat(other.c_str(), &status) != 0)
        return;
    [[maybe_unused]] const int refused = ::chown(file.c_str(), status.st_uid, status.st_gid);
}

/// Writes the bytes of a file to the disk.
bool sync(const fs::path& file) {
    FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    return descriptor.isOpen() && ::fsync(descriptor.get()) == 0 && descriptor.close();
}

} // namespace

bool OutputFile::isStandardOutput(const fs::path& place) {
    return place == "-" || place == "/dev/stdout" || place == "/dev/fd/1" ||
           place == "/proc/self/fd/1";
}

OutputFile::OutputFile(const std::string& option, fs::path place,
                       const std::vector<fs::path>& inputs) :
    file(std::move(place)) {
    if (isStandardOutput(file))
        return;
    std::error_code ignored;
    for (const auto& input : inputs)
        if (fs::equivalent(file, input, ignored))
            throw BadInput(option + ": " + inQuotes(file.string()) +
                           " is an input of this command; give another file");
    const auto refuse = [&](int error) {
        throw BadInput(option + ": " + inQuotes(file.string()) + " cannot be written (" +
                       std::generic_category().message(error) +
                       "); give a file in a folder that can be written");
    };
    std::error_code error;
    const auto status = fs::status(file, error);
    if (!fs::status_known(status))
        refuse(error.value());
    if (fs::is_directory(status))
        refuse(EISDIR);
    if (fs::exists(status) && (!fs::is_regular_file(status) || isInDeviceFolder(file))) {
        bytes.open(file, std::ios::binary | std::ios::app);
        if (!bytes)
            refuse(errno);
        return;
    }
    if (fs::exists(status) && access(file.c_str(), W_OK) != 0)
        refuse(errno);
    target = withoutLinks(file);
    if (target.filename().empty())
        refuse(EISDIR);
    std::string name = (target.parent_path() / ("." + target.filename().string() + "-XXXXXX"));
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0)
        refuse(errno);
    close(descriptor);
    aside = name;
    if (fs::exists(status))
        keepOwner(aside, target);
    fs::permissions(aside, fs::exists(status) ? status.permissions() : newFilePermissions(), error);
    if (!error)
        bytes.open(aside, std::ios::binary | std::ios::trunc);
    if (!bytes.is_open()) {
        const int reason = error ? error.value() : errno;
        fs::remove(aside, ignored);
        refuse(reason);
    }
}

OutputFile::~OutputFile() {
    std::error_code ignored;
    if (!aside.empty())
        fs::remove(aside, ignored);
}

std::ostream& OutputFile::stream() {
    return isStandardOutput(file) ? std::cout : bytes;
}

bool OutputFile::keep() {
    if (isStandardOutput(file))
        return static_cast<bool>(std::cout.flush());
    bytes.close();
    if (bytes.fail())
        return false;
    if (aside.empty())
        return true;
    std::error_code error;
    // After a loss of power the old file or the new one must be there, not an empty one.
    if (fs::exists(target, error) && !sync(aside))
        return false;
    fs::rename(aside, target, error);
    if (error)
        return false;
    aside.clear();
    return true;
}

} // namespace noctara
