#include "night/night_files.h"

#include "input/bad_input.h"

#include <cstdlib>
#include <fmt/format.h>
#include <unistd.h>

namespace noctara {

namespace fs = std::filesystem;

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
