/// The process that the library is loaded into: its identity, its classes, and the method-hooking
/// loader that can replace one method of a class.
#pragma once

#include <string>

namespace noctara {

/// An object of the host, as the host's own methods are called with. Owned by the host.
using ObjectRef = void*;

/// A method's selector. Owned by the host.
using SelectorRef = const void*;

/// A class of the host; null for a class that it does not have.
using ClassRef = void*;

/// A method's implementation: a function of (receiver, selector, arguments...), to be cast to its
/// full type before it is called.
using Implementation = void (*)();

class HostProcess {
public:
    virtual ~HostProcess() = default;

    /// The main bundle's identifier; empty when there is none.
    virtual std::string bundleIdentifier() = 0;

    /// Looks a class up by name (`objc_getClass`). Null when the process has no such class.
    virtual ClassRef findClass(const char* name) = 0;

    /// Replaces the implementation of `selector` in `hooked` and stores the one it had in
    /// `previous` (`MSHookMessageEx`). With a null class, or a selector that the class does not
    /// have, nothing happens and `previous` is untouched.
    virtual void hookMessage(ClassRef hooked, const char* selector, Implementation replacement,
                             Implementation& previous) = 0;
};

} // namespace noctara
