#include "phones/stand_in/host/injected_library.h"

#include "phones/model/property_list_file.h"
#include "phones/springboard/noctara_thread.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <dlfcn.h>
#include <link.h>

namespace noctara::injectedLibrary {

namespace fs = std::filesystem;

namespace {

std::atomic<const char*> fileOfLibrary = nullptr; ///< Its full path. Null before it is loaded.
::NoctaraThread** instance = nullptr;             ///< Null before it is loaded.

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
    // The library calls the phone while it is being loaded.
    static const auto& file = *new std::string(fs::absolute(library));
    fileOfLibrary = file.c_str();
    void* const loaded = dlopen(file.c_str(), RTLD_NOW);
    if (!loaded)
        throw CannotInject(std::string(dlerror()) + "; a build of Noctara.so would do");
    instance = static_cast<::NoctaraThread**>(dlsym(loaded, "NoctaraInstance"));
}

bool contains(const void* address) {
    const char* const file = fileOfLibrary;
    dl_find_object found;
    return file && _dl_find_object(const_cast<void*>(address), &found) == 0 &&
           std::strcmp(found.dlfo_link_map->l_name, file) == 0;
}

void stopMonitor() {
    if (instance)
        [*instance stop];
}

} // namespace noctara::injectedLibrary
