/// The library that is injected into this process, and the loader that does it.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace noctara {

class NoctaraThread;

namespace injectedLibrary {

/// What is wrong with a library or its filter; the text names the file.
class CannotInject : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What the method-hooking loader does when a process starts: reads the filter, and loads the
/// library if the filter lets it into a process of this bundle identifier. The result says whether
/// it did. Throws CannotInject.
bool inject(const std::filesystem::path& library, const std::filesystem::path& filter,
            const std::string& bundle);

/// Whether code at this address is the library's.
bool contains(const void* address);

/// The library's monitor; null when there is none.
NoctaraThread* monitor();

} // namespace injectedLibrary

} // namespace noctara
