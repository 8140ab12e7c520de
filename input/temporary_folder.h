/// A temporary folder.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace noctara {

/// Creates a folder and deletes it in the destructor. The folder is below TMPDIR if that is set.
/// Otherwise it is in /dev/shm if possible, because a phone with real files writes thousands of
/// them in a night.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::string& name = "noctara") {
        const std::filesystem::path memory = "/dev/shm";
        const bool inMemory = !std::getenv("TMPDIR") && access(memory.c_str(), W_OK) == 0;
        const auto place = inMemory ? memory : std::filesystem::temp_directory_path();
        std::string pattern = (place / (name + "-XXXXXX")).string();
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error(pattern +
                                     ": cannot be created; set TMPDIR to a folder with free space");
        path = pattern;
    }

    ~TemporaryFolder() {
        std::error_code ignored;
        if (!isKept)
            std::filesystem::remove_all(path, ignored);
    }

    /// Keeps the folder when the object is destroyed.
    void keep() { isKept = true; }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path path;

private:
    bool isKept = false;
};

} // namespace noctara
