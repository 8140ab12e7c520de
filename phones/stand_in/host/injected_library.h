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

/// Whether the loader's filter file (a property list: "Filter", in it "Bundles", an array of bundle
/// identifiers) lets a library into a process of this bundle. A filter that names no bundles lets
/// it into every process. Throws CannotInject.
bool matches(const std::filesystem::path& filter, const std::string& bundle);

/// Loads the library. Throws CannotInject.
void inject(const std::filesystem::path& library);

/// Whether code at this address is the library's.
bool contains(const void* address);

/// The library's monitor; null when there is none.
NoctaraThread* monitor();

} // namespace injectedLibrary

} // namespace noctara
