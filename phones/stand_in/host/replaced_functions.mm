/// Functions of the C library and of the Objective-C runtime, as this process has them: an
/// executable's symbols come before those of any library, so that the injected library, and
/// Foundation under it, meet these. Time is the phone's for everybody; what the library alone asks
/// the system is answered by the phone for the library alone, and told to its observers.
#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/injected_phone.h"

#include <cmath>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <map>
#include <sys/time.h>
#include <sys/utsname.h>
#include <unistd.h>

using noctara::injectedPhone;
using noctara::OnPhone;

/// Makes the function one that the process's libraries find.
#define REPLACED extern "C" [[gnu::visibility("default")]]

/// A call that leaves no frame behind, so that the function called sees the caller of this one.
/// Those of the dynamic loader look for the object that calls them.
#define AS_THE_CALLER [[clang::musttail]] return

#define CALLED_BY_THE_LIBRARY noctara::injectedLibrary::contains(__builtin_return_address(0))

using FindSymbol = void*(void*, const char*) noexcept;

/// The loader's `dlsym`, which cannot be looked up by itself.
static FindSymbol* realFindSymbol() noexcept {
    static FindSymbol* found = nullptr;
    for (const char* version : {"GLIBC_2.34", "GLIBC_2.2.5", "GLIBC_2.17"})
        if (!found)
            found = reinterpret_cast<FindSymbol*>(dlvsym(RTLD_NEXT, "dlsym", version));
    return found;
}

/// The function that the one of this name hides.
template <typename Function>
static Function* hidden(const char* name) noexcept {
    return reinterpret_cast<Function*>(realFindSymbol()(RTLD_NEXT, name));
}

// Time.

REPLACED time_t time(time_t* result) noexcept {
    static auto* const real = hidden<time_t(time_t*)>("time");
    if (!injectedPhone)
        return real(result);
    if (CALLED_BY_THE_LIBRARY)
        injectedPhone->monitorLooksAtClock();
    const double now = std::floor(injectedPhone->wallClock().secondsSince1970);
    const auto seconds = static_cast<time_t>(now);
    if (result)
        *result = seconds;
    return seconds;
}

REPLACED int gettimeofday(timeval* result, void* zone) noexcept {
    static auto* const real = hidden<int(timeval*, void*)>("gettimeofday");
    if (!injectedPhone)
        return real(result, zone);
    const double now = injectedPhone->wallClock().secondsSince1970;
    const double whole = std::floor(now);
    *result = {static_cast<time_t>(whole), static_cast<suseconds_t>((now - whole) * 1e6)};
    return 0;
}

REPLACED unsigned sleep(unsigned seconds) {
    static auto* const real = hidden<unsigned(unsigned)>("sleep");
    if (!injectedPhone || !CALLED_BY_THE_LIBRARY)
        return real(seconds);
    injectedPhone->monitorSleeps(seconds);
    return 0;
}

// The device.

REPLACED int uname(utsname* result) noexcept {
    static auto* const real = hidden<int(utsname*)>("uname");
    if (!injectedPhone || !CALLED_BY_THE_LIBRARY)
        return real(result);
    *result = {};
    const std::string machine = OnPhone(*injectedPhone)->device.machine();
    std::strncpy(result->machine, machine.c_str(), sizeof result->machine - 1);
    return 0;
}

// Libraries that the library loads by itself. Those of the phone lie in a folder beside this
// executable.

/// The phone's library for each handle.
static std::map<void*, noctara::LibraryRef> openLibraries;

using OpenLibrary = void*(const char*, int) noexcept;

static OpenLibrary* realOpenLibrary() noexcept {
    static auto* const found = hidden<OpenLibrary>("dlopen");
    return found;
}

static void* openOnPhone(const char* path, int mode, OpenLibrary* open) {
    const OnPhone phone(*injectedPhone);
    const noctara::LibraryRef library = phone->device.open(path);
    if (!library)
        return nullptr;
    const auto file = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "system" /
                      std::filesystem::path(path).relative_path();
    void* const handle = open(file.c_str(), mode);
    if (handle)
        openLibraries[handle] = library;
    return handle;
}

static void* findOnPhone(void* library, const char* name) {
    const OnPhone phone(*injectedPhone);
    return phone->device.find(openLibraries[library], name) ? realFindSymbol()(library, name)
                                                            : nullptr;
}

// The functions that end in a tail call have names of their own here: those of the headers promise
// not to throw, and keeping such a promise takes a frame.

REPLACED void* openForTheProcess(const char* path, int mode) asm("dlopen");
void* openForTheProcess(const char* path, int mode) {
    OpenLibrary* const real = realOpenLibrary();
    if (injectedPhone && CALLED_BY_THE_LIBRARY)
        return openOnPhone(path, mode, real);
    AS_THE_CALLER real(path, mode);
}

REPLACED void* findForTheProcess(void* library, const char* name) asm("dlsym");
void* findForTheProcess(void* library, const char* name) {
    FindSymbol* const real = realFindSymbol();
    if (injectedPhone && CALLED_BY_THE_LIBRARY)
        return findOnPhone(library, name);
    AS_THE_CALLER real(library, name);
}

REPLACED int dlclose(void* library) noexcept {
    static auto* const real = hidden<int(void*) noexcept>("dlclose");
    if (injectedPhone && CALLED_BY_THE_LIBRARY) {
        const OnPhone phone(*injectedPhone);
        phone->device.close(openLibraries[library]);
        openLibraries.erase(library);
    }
    return real(library);
}

// The Objective-C runtime and Foundation.

REPLACED Class objc_getClass(const char* name) {
    static auto* const real = hidden<Class(const char*)>("objc_getClass");
    const Class found = real(name);
    if (!injectedPhone || !CALLED_BY_THE_LIBRARY)
        return found;
    // The compiler too has the classes that it knows looked up by this function.
    const OnPhone phone(*injectedPhone);
    if (!found || phone->process.hasClass(name))
        phone->recorder.answer("objc_getClass", {name}, found != nil);
    return found;
}

REPLACED void NSLog(NSString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    if (injectedPhone && CALLED_BY_THE_LIBRARY) {
        NSString* text = [[NSString alloc] initWithFormat:format arguments:arguments];
        OnPhone(*injectedPhone)->process.write(noctara::textOf(text));
        [text release];
    } else {
        NSLogv(format, arguments);
    }
    va_end(arguments);
}
