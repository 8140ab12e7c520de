#include "platform/capabilities.h"

#include "phones/springboard/private_functions.h"
#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

#include <dlfcn.h>

namespace noctara {

namespace {

/// `RTLD_LAZY`.
constexpr int lazyBinding = 1;

class SpringBoardLibraries final : public DynamicLibraries {
public:
    LibraryRef open(const char* path) override { return dlopen(path, lazyBinding); }

    FunctionRef find(LibraryRef library, const char* name) override {
        // With a null handle, dlsym would search every library of the process.
        return library ? dlsym(library, name) : nullptr;
    }

    void close(LibraryRef library) override {
        if (library)
            dlclose(library);
    }
};

class SpringBoardCapabilities final : public CapabilityFunctions {
public:
    int linkedGSSystemHasCapability(const std::string& name) override {
        @autoreleasepool {
            return callIfPresent(GSSystemHasCapability, (CFStringRef)stringOf(name));
        }
    }

    int callGSSystemHasCapability(FunctionRef function, const std::string& name) override {
        @autoreleasepool {
            return callIfPresent(reinterpret_cast<decltype(&GSSystemHasCapability)>(function),
                                 (CFStringRef)stringOf(name));
        }
    }

    std::optional<PropertyList> callGSSystemCopyCapability(FunctionRef function,
                                                           const std::string& name) override {
        @autoreleasepool {
            const CFTypeRef copy =
                callIfPresent(reinterpret_cast<decltype(&GSSystemCopyCapability)>(function),
                              (CFStringRef)stringOf(name));
            if (!copy)
                return std::nullopt;
            const PropertyList value = valueOf((id)copy);
            CFRelease(copy);
            return value;
        }
    }

    int callMGGetBoolAnswer(FunctionRef function, const std::string& name) override {
        @autoreleasepool {
            return callIfPresent(reinterpret_cast<int (*)(CFStringRef)>(function),
                                 (CFStringRef)stringOf(name));
        }
    }
};

} // namespace

DynamicLibraries& springBoardLibraries() {
    static auto& libraries = *new SpringBoardLibraries;
    return libraries;
}

CapabilityFunctions& springBoardCapabilities() {
    static auto& capabilities = *new SpringBoardCapabilities;
    return capabilities;
}

} // namespace noctara
