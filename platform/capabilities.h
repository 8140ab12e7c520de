/// Libraries loaded at run time, and the capability functions of the system.
#pragma once

#include "platform/property_list.h"

#include <optional>
#include <string>

namespace noctara {

/// An open library, and a function found in one. Null when missing.
using LibraryRef = void*;
using FunctionRef = void*;

class DynamicLibraries {
public:
    virtual ~DynamicLibraries() = default;

    /// Loads the library at `path` with lazy binding (`dlopen` with mode 1). Null on failure.
    virtual LibraryRef open(const char* path) = 0;

    /// The function of that name (`dlsym`). Null if the library is null or has no such function.
    virtual FunctionRef find(LibraryRef library, const char* name) = 0;

    /// `dlclose`; a null library is ignored.
    virtual void close(LibraryRef library) = 0;
};

class CapabilityFunctions {
public:
    virtual ~CapabilityFunctions() = default;

    /// `GSSystemHasCapability` as the host links it: non-zero when the device has the capability.
    virtual int linkedGSSystemHasCapability(const std::string& name) = 0;

    /// These call a function that `DynamicLibraries::find` returned for the name after "call". For
    /// a null function the result is 0 or absent.
    virtual int callGSSystemHasCapability(FunctionRef function, const std::string& name) = 0;
    virtual std::optional<PropertyList> callGSSystemCopyCapability(FunctionRef function,
                                                                   const std::string& name) = 0;

    /// The answer is in the lowest bit.
    virtual int callMGGetBoolAnswer(FunctionRef function, const std::string& name) = 0;
};

} // namespace noctara
