#include "phones/stand_in/host/injected_library.h"

#include "phones/model/property_list_file.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <dlfcn.h>
#include <link.h>

namespace noctara::injectedLibrary {

namespace fs = std::filesystem;

namespace {

fs::path libraryFile;
NoctaraThread** instance = nullptr; ///< Null before the library has been loaded.

/// Where the library's code lies; 0 before it has been met. The end is written last.
std::atomic<std::uintptr_t> codeBegin = 0;
std::atomic<std::uintptr_t> codeEnd = 0;

/// Finds the segments of the object that was loaded at `base`.
void findCode(const void* base) {
    dl_iterate_phdr(
        [](dl_phdr_info* object, std::size_t, void* wanted) {
            const auto* header = object->dlpi_phdr;
            std::uintptr_t end = 0;
            for (int i = 0; i < object->dlpi_phnum; ++i)
                if (header[i].p_type == PT_LOAD)
                    end = object->dlpi_addr + header[i].p_vaddr + header[i].p_memsz;
            if (object->dlpi_addr != reinterpret_cast<std::uintptr_t>(wanted))
                return 0;
            codeBegin = object->dlpi_addr;
            codeEnd = end;
            return 1;
        },
        const_cast<void*>(base));
}

} // namespace

bool matches(const fs::path& filter, const std::string& bundle) {
    const auto file = readPropertyListFile(filter);
    const auto* dictionary = file.value ? file.value->as<Dictionary>() : nullptr;
    if (!dictionary)
        throw CannotInject(filter.string() +
                           ": no property list; a loader's filter (Filter, Bundles) would do");
    const auto* conditions = dictionary->find("Filter");
    const auto* named = conditions ? conditions->as<Dictionary>() : nullptr;
    const auto* bundles = named ? named->find("Bundles") : nullptr;
    const auto* list = bundles ? bundles->as<Array>() : nullptr;
    return !list || std::find(list->begin(), list->end(), PropertyList(bundle)) != list->end();
}

void inject(const fs::path& library) {
    libraryFile = library;
    void* const loaded = dlopen(library.c_str(), RTLD_NOW);
    if (!loaded)
        throw CannotInject(std::string(dlerror()) + "; a build of Noctara.so would do");
    instance = static_cast<NoctaraThread**>(dlsym(loaded, "NoctaraInstance"));
}

bool contains(const void* address) {
    const auto place = reinterpret_cast<std::uintptr_t>(address);
    if (const auto end = codeEnd.load())
        return place >= codeBegin && place < end;
    // The library already runs while it is being loaded.
    Dl_info found;
    std::error_code ignored;
    if (libraryFile.empty() || dladdr(address, &found) == 0 ||
        !fs::equivalent(found.dli_fname, libraryFile, ignored))
        return false;
    findCode(found.dli_fbase);
    return true;
}

NoctaraThread* monitor() {
    return instance ? *instance : nullptr;
}

} // namespace noctara::injectedLibrary
