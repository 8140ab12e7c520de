#include "output/output_file.h"

#include "input/bad_input.h"

#include <cerrno>
#include <cstdlib>
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
    const auto status = fs::status(file, ignored);
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
    fs::permissions(aside, fs::exists(status) ? status.permissions() : newFilePermissions(),
                    ignored);
    bytes.open(aside, std::ios::binary | std::ios::trunc);
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
    fs::rename(aside, target, error);
    if (error)
        return false;
    aside.clear();
    return true;
}

} // namespace noctara
