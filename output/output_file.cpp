#include "output/output_file.h"

#include "input/bad_input.h"

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

} // namespace

OutputFile::OutputFile(const std::string& option, fs::path place,
                       const std::vector<fs::path>& inputs) :
    file(std::move(place)) {
    if (file == standardOutput)
        return;
    std::error_code ignored;
    for (const auto& input : inputs)
        if (fs::equivalent(file, input, ignored))
            throw BadInput(option + ": " + inQuotes(file.string()) +
                           " is an input of this command; give another file");
    const auto refuse = [&] {
        throw BadInput(option + ": " + inQuotes(file.string()) +
                       " cannot be written; give a file in an existing folder");
    };
    const auto status = fs::status(file, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        bytes.open(file, std::ios::binary | std::ios::app);
        if (!bytes)
            refuse();
        return;
    }
    if (fs::exists(status) && access(file.c_str(), W_OK) != 0)
        refuse();
    // A link stays a link: the file that it points to is replaced.
    const fs::path target = fs::exists(status) ? fs::canonical(file) : file;
    std::string name = (target.parent_path() / ("." + target.filename().string() + "-XXXXXX"));
    const int descriptor = target.filename().empty() ? -1 : mkstemp(name.data());
    if (descriptor < 0)
        refuse();
    close(descriptor);
    aside = name;
    fs::permissions(aside, fs::exists(status) ? status.permissions() : newFilePermissions(),
                    ignored);
    bytes.open(aside, std::ios::binary | std::ios::trunc);
}

std::ostream& OutputFile::stream() {
    return file == standardOutput ? std::cout : bytes;
}

OutputFile::~OutputFile() {
    std::error_code ignored;
    if (!aside.empty())
        fs::remove(aside, ignored);
}

bool OutputFile::keep() {
    if (file == standardOutput)
        return static_cast<bool>(std::cout.flush());
    bytes.close();
    if (bytes.fail())
        return false;
    if (aside.empty())
        return true;
    std::error_code error;
    fs::rename(aside, fs::exists(file) ? fs::canonical(file) : file, error);
    if (error)
        return false;
    aside.clear();
    return true;
}

} // namespace noctara
