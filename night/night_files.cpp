#include "night/night_files.h"

#include "input/bad_input.h"

#include <cstdlib>
#include <fmt/format.h>
#include <unistd.h>

namespace noctara {

namespace fs = std::filesystem;

TraceFile::TraceFile(const fs::path& place, const std::vector<fs::path>& inputs) : file(place) {
    std::error_code ignored;
    for (const auto& input : inputs)
        if (fs::equivalent(file, input, ignored))
            throw BadInput(fmt::format("--trace: {} is an input of this night; give another file",
                                       file.string()));
    existed = fs::exists(file, ignored);
    lines.open(file, std::ios::app);
    if (!lines)
        throw BadInput(
            fmt::format("--trace: {} cannot be written; give a file in an existing folder",
                        inQuotes(file.string())));
}

TraceFile::~TraceFile() {
    std::error_code ignored;
    if (!begun && !existed)
        fs::remove(file, ignored);
}

std::ostream& TraceFile::begin() {
    begun = true;
    lines.close();
    lines.open(file, std::ios::trunc);
    return lines;
}

bool TraceFile::finish() {
    lines.close();
    return !lines.fail();
}

void prepareRoot(const fs::path& root) {
    std::error_code error;
    if (!root.empty())
        fs::create_directories(root, error);
    std::string probe = (root / ".noctara-XXXXXX").string();
    const int descriptor =
        root.empty() || !fs::is_directory(root, error) ? -1 : mkstemp(probe.data());
    if (descriptor < 0)
        throw BadInput(
            fmt::format("--root: {} is not a writable folder; give one that is writable or "
                        "can be created",
                        inQuotes(root.string())));
    close(descriptor);
    fs::remove(probe, error);
}

} // namespace noctara
