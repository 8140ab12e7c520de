/// Functions of the C library and of the Objective-C runtime that the phone answers for the
/// injected library. The dynamic loader looks in the executable first, so it finds these functions
/// before those of the libraries. Calls by other code are passed on.
#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/injected_phone.h"

#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <map>
#include <sys/utsname.h>
#include <unistd.h>

using noctara::injectedPhone;
using noctara::OnPhone;

/// Exports a function, so that the libraries of the process find it.
#define REPLACED extern "C" [[gnu::visibility("default")]]

/// The function of this name in a library, which the function of the executable hides.
template <typename Function>
static Function* hidden(const char* name) noexcept {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

REPLACED time_t time(time_t* result) noexcept {
    static auto* const real = hidden<decltype(time)>("time");
    if (!CALLED_BY_THE_LIBRARY)
        return real(result);
    const time_t seconds = injectedPhone->readTime();
    if (result)
        *result = seconds;
    return seconds;
}

REPLACED unsigned sleep(unsigned seconds) {
    static auto* const real = hidden<decltype(sleep)>("sleep");
    if (!CALLED_BY_THE_LIBRARY)
        return real(seconds);
    injectedPhone->monitorSleeps(seconds);
    return 0;
}

REPLACED int uname(utsname* result) noexcept {
    static auto* const real = hidden<decltype(uname)>("uname");
    if (!CALLED_BY_THE_LIBRARY)
        return real(result);
    *result = {};
    const std::string machine = OnPhone(*injectedPhone)->device.machine();
    std::strncpy(result->machine, machine.c_str(), sizeof result->machine - 1);
    return 0;
}

/// The library of the phone's model, for each handle that was returned.
static std::map<void*, noctara::LibraryRef> openLibraries;

REPLACED void* dlopen(const char* path, int mode) noexcept {
    static auto* const real = hidden<decltype(dlopen)>("dlopen");
    if (!CALLED_BY_THE_LIBRARY)
        return real(path, mode);
    const OnPhone phone(*injectedPhone);
    const noctara::LibraryRef library = phone->device.open(path);
    if (!library)
        return nullptr;
    // The phone's libraries are in a folder beside the executable.
    const auto file = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "system" /
                      std::filesystem::path(path).relative_path();
    void* const handle = real(file.c_str(), mode);
    if (handle)
        openLibraries[handle] = library;
    return handle;
}

static void* findOnPhone(void* library, const char* name) {
    const OnPhone phone(*injectedPhone);
    return phone->device.find(openLibraries[library], name) ? dlsym(library, name) : nullptr;
}

// With RTLD_NEXT, dlsym searches the libraries that come after its caller, which it finds by its
// return address. The tail call makes that the address in the original caller. Clang compiles such
// a call only in a function that may throw; the header's declaration of dlsym may not, so the
// function has another name in this file.
REPLACED void* findForTheProcess(void* library, const char* name) asm("dlsym");
void* findForTheProcess(void* library, const char* name) {
    // dlsym cannot look itself up; dlvsym needs the version that the C library gives it. A
    // sanitizer's runtime calls dlsym before the guard of a dynamic initialisation works there.
    static decltype(&dlsym) real = nullptr;
    if (!real)
        real = reinterpret_cast<decltype(&dlsym)>(dlvsym(RTLD_NEXT, "dlsym", "GLIBC_2.34"));
    if (CALLED_BY_THE_LIBRARY)
        return findOnPhone(library, name);
    [[clang::musttail]] return real(library, name);
}

REPLACED int dlclose(void* library) noexcept {
    static auto* const real = hidden<decltype(dlclose)>("dlclose");
    if (CALLED_BY_THE_LIBRARY) {
        const OnPhone phone(*injectedPhone);
        phone->device.close(openLibraries[library]);
        openLibraries.erase(library);
    }
    return real(library);
}

REPLACED Class objc_getClass(const char* name) {
    static auto* const real = hidden<decltype(objc_getClass)>("objc_getClass");
    const Class found = real(name);
    if (!CALLED_BY_THE_LIBRARY)
        return found;
    // The compiler also emits calls of this function, for classes that the code names. Only
    // SpringBoard's classes are looked up by name.
    const OnPhone phone(*injectedPhone);
    if (phone->process.hasClass(name))
        phone->recorder.answer(noctara::Operation::objc_getClass, {name}, found != nil);
    return found;
}

REPLACED void NSLog(NSString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    if (CALLED_BY_THE_LIBRARY) {
        NSString* text = [[NSString alloc] initWithFormat:format arguments:arguments];
        OnPhone(*injectedPhone)->process.write(noctara::textOf(text));
        [text release];
    } else {
        NSLogv(format, arguments);
    }
    va_end(arguments);
}
