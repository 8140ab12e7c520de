/// The process that the library is loaded into: its bundle, its classes, and the hooking library
/// that can replace a method of a class.
#pragma once

#include <string>

namespace noctara {

/// An Objective-C object of the host. Owned by the host.
using ObjectRef = void*;

/// A method's selector. Owned by the host.
using SelectorRef = const void*;

/// A class of the host. Null if the host has no such class.
using ClassRef = void*;

/// A method's implementation: a function of (receiver, selector, arguments...). Cast it to its full
/// type before calling it.
using Implementation = void (*)();

class HostProcess {
public:
    virtual ~HostProcess() = default;

    /// The main bundle's identifier. Empty if there is none.
    virtual std::string bundleIdentifier() = 0;

    /// Looks a class up by name (`objc_getClass`). Null if the process has no such class.
    virtual ClassRef findClass(const char* name) = 0;

    /// Replaces the implementation of `selector` in `hooked` and stores the old one in `previous`
    /// (`MSHookMessageEx`). Does nothing, and leaves `previous` unchanged, if the class is null or
    /// has no such method.
    virtual void hookMessage(ClassRef hooked, const char* selector, Implementation replacement,
                             Implementation& previous) = 0;
};

} // namespace noctara
