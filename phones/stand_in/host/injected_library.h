/// The library that is injected into this process, and the loader that does it.
#pragma once

#include "input/bad_input.h"

#include <filesystem>
#include <string>

/// Whether the library called the function that this stands in, which must not be inlined.
#define CALLED_BY_THE_LIBRARY noctara::injectedLibrary::contains(__builtin_return_address(0))

namespace noctara::injectedLibrary {

/// What is wrong with a library or its filter; the text names the file.
class CannotInject : public BadInput {
public:
    using BadInput::BadInput;
};

/// Whether the loader's filter file (a property list: "Filter", in it "Bundles", an array of bundle
/// identifiers) lets a library into a process of this bundle. A filter that names no bundles lets
/// it into every process. Throws CannotInject.
bool matches(const std::filesystem::path& filter, const std::string& bundle);

/// Loads the library; one to a process. Throws CannotInject.
void inject(const std::filesystem::path& library);

/// Whether the library's code is at this address. Any thread.
bool contains(const void* address);

/// Sends `stop` to the library's monitor, if there is one. Any thread.
void stopMonitor();

} // namespace noctara::injectedLibrary
