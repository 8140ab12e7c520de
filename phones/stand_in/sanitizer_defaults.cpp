/// What the sanitizers have to know of Foundation and the Objective-C runtime, which are not built
/// for them. Part of every program that loads the two, when it is built for a sanitizer.
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>

#define FOR_THE_SANITIZER extern "C" __attribute__((visibility("default"), used))

extern "C" const char* __tsan_default_suppressions();

/// Whole stacks, for the suppressions to know by whom something was made: a fast unwinding ends in
/// the first function that keeps no frame pointer. The exit code is ThreadSanitizer's; the usual
/// one, 1, is that of a night on which something was wrong.
FOR_THE_SANITIZER const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0:exitcode=66";
}

FOR_THE_SANITIZER const char* __lsan_default_options() {
    return "print_suppressions=0";
}

/// The runtime's tables of classes and methods, and what Foundation's classes make for good when
/// the runtime initialises them. Messages do not pass through the runtime's frames, so what is
/// leaked in their course is still told.
FOR_THE_SANITIZER const char* __lsan_default_suppressions() {
    return "leak:libobjc.so\n";
}

/// While classes are loaded and initialised, on the main thread, the runtime's lock and
/// Foundation's own are taken in either order.
FOR_THE_SANITIZER const char* __tsan_default_suppressions() {
    return "deadlock:libgnustep-base.so\n"
           "deadlock:libobjc.so\n";
}
