/// Options and suppressions of the sanitizers, for Foundation and the Objective-C runtime, which
/// are not built for sanitizers. Linked into every program that loads them.
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>

#define FOR_THE_SANITIZER extern "C" __attribute__((visibility("default"), used))

extern "C" const char* __tsan_default_suppressions();

/// The suppressions need whole stacks, and the fast unwinder stops at the first function without a
/// frame pointer. The exit code is that of ThreadSanitizer, because 1 is the code of a night on
/// which something was wrong.
FOR_THE_SANITIZER const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0:exitcode=66";
}

FOR_THE_SANITIZER const char* __lsan_default_options() {
    return "print_suppressions=0";
}

/// The runtime never frees its tables of classes and methods, nor what Foundation's classes create
/// when they are initialised. Leaks during a message are still reported, because a message has no
/// frame of the runtime on the stack.
FOR_THE_SANITIZER const char* __lsan_default_suppressions() {
    return "leak:libobjc.so\n";
}

/// The runtime and Foundation take their locks in either order while the main thread loads and
/// initialises classes.
FOR_THE_SANITIZER const char* __tsan_default_suppressions() {
    return "deadlock:libgnustep-base.so\n"
           "deadlock:libobjc.so\n";
}
