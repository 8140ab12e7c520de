/// A folder for a test's files.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace noctara {

/// Gone with the object. In memory where the system has such a place, as a phone with real files
/// syncs thousands of them in a night.
class TemporaryFolder {
public:
    TemporaryFolder() {
        const std::filesystem::path memory = "/dev/shm";
        const auto place =
            std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
        std::string pattern = (place / "noctara-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error("no temporary folder");
        path = pattern;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path path;
};

} // namespace noctara
