/// `plain-process LIBRARY`: loads the library outside a phone, and prints what this changes in the
/// process.
#include <dlfcn.h>
#include <filesystem>
#include <iostream>
#include <iterator>

namespace {

long count(const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder),
                         std::filesystem::directory_iterator());
}

} // namespace

int main(int, char** arguments) {
    const long threads = count("/proc/self/task");
    const long files = count("/proc/self/fd");
    void* const library = dlopen(arguments[1], RTLD_NOW);
    if (!library) {
        std::cerr << dlerror() << '\n';
        return 1;
    }
    const auto* const instance = static_cast<void**>(dlsym(library, "NoctaraInstance"));
    std::cout << "threads " << count("/proc/self/task") - threads << ", files "
              << count("/proc/self/fd") - files << ", monitor "
              << (instance && *instance ? "there" : "none") << '\n';
}
