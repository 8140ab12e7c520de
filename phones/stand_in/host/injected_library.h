/// The loader, and the library that it has injected into this process.
#pragma once

#include "input/bad_input.h"

#include <filesystem>
#include <string>

/// Whether the library called the function that contains this macro. The function must not be
/// inlined.
#define CALLED_BY_THE_LIBRARY noctara::injectedLibrary::contains(__builtin_return_address(0))

namespace noctara::injectedLibrary {

/// A library or its filter cannot be used. The text says why and names the file.
class CannotInject : public BadInput {
public:
    using BadInput::BadInput;
};

/// Whether the loader's filter file lets a library into a process of this bundle. The file is a
/// property list with the dictionary "Filter", which has "Bundles", an array of bundle identifiers.
/// A filter without bundles lets the library into every process. Throws CannotInject.
bool matches(const std::filesystem::path& filter, const std::string& bundle);

/// Loads the library. A process can have only one. Throws CannotInject.
void inject(const std::filesystem::path& library);

/// Whether the library's code is at this address. Any thread.
bool contains(const void* address);

/// Sends `stop` to the library's monitor, if there is one. Any thread.
void stopMonitor();

} // namespace noctara::injectedLibrary
