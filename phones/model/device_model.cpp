#include "phones/model/device_model.h"

#include <algorithm>
#include <array>
#include <utility>

namespace noctara {

namespace {

/// A library that can be loaded, and its functions.
struct Library {
    std::string_view path;
    std::array<std::string_view, 2> functions;
};

constexpr Library gestalt{"/usr/lib/libMobileGestalt.dylib", {"MGGetBoolAnswer", ""}};
constexpr Library graphicsServices{
    "/System/Library/PrivateFrameworks/GraphicsServices.framework/GraphicsServices",
    {"GSSystemHasCapability", "GSSystemCopyCapability"}};

/// The machine names and marketing names of the devices that ran these systems.
constexpr std::array<std::pair<std::string_view, const char*>, 14> marketingNames{{
    {"iPhone1,1", "iPhone"},
    {"iPhone1,2", "iPhone 3G"},
    {"iPhone2,1", "iPhone 3GS"},
    {"iPhone3,1", "iPhone 4"},
    {"iPhone3,3", "iPhone 4"},
    {"iPhone4,1", "iPhone 4S"},
    {"iPhone5,1", "iPhone 5"},
    {"iPhone5,2", "iPhone 5"},
    {"iPod4,1", "iPod touch"},
    {"iPod5,1", "iPod touch"},
    {"iPad1,1", "iPad"},
    {"iPad2,1", "iPad 2"},
    {"iPad3,1", "iPad"},
    {"iPad2,5", "iPad mini"},
}};

} // namespace

DeviceModel::DeviceModel(const Scenario& scenario, const Recorder& calls) :
    hasGestalt(scenario.phone.gestalt), recorder(calls), phone(scenario.phone) {}

std::string DeviceModel::machine() {
    recorder.answered(Operation::uname, {}, phone.machine);
    return phone.machine;
}

std::int32_t DeviceModel::userInterfaceIdiom() {
    return recorder.answer(Operation::userInterfaceIdiom, phone.idiom);
}

double DeviceModel::coreFoundationVersionNumber() {
    return recorder.answer(Operation::kCFCoreFoundationVersionNumber, phone.corefoundation);
}

LibraryRef DeviceModel::open(const char* path) {
    const Library* found = nullptr;
    if (hasGestalt && path == gestalt.path)
        found = &gestalt;
    if (hasGraphicsServices && path == graphicsServices.path)
        found = &graphicsServices;
    if (recorder.answer(Operation::dlopen, {path}, found != nullptr))
        ++openLibraries;
    return const_cast<Library*>(found);
}

FunctionRef DeviceModel::find(LibraryRef library, const char* name) {
    const std::string_view* found = nullptr;
    if (library)
        for (const auto& function : static_cast<const Library*>(library)->functions)
            if (function == name)
                found = &function;
    recorder.answered(Operation::dlsym, {name}, found != nullptr);
    return const_cast<std::string_view*>(found);
}

void DeviceModel::close(LibraryRef library) {
    if (!library)
        return;
    recorder.call(Operation::dlclose);
    --openLibraries;
}

int DeviceModel::linkedGSSystemHasCapability(const std::string& name) {
    return recorder.answer(Operation::GSSystemHasCapability, {name}, hasCapability(name));
}

int DeviceModel::callGSSystemHasCapability(FunctionRef function, const std::string& name) {
    return function ? linkedGSSystemHasCapability(name) : 0;
}

std::optional<PropertyList> DeviceModel::callGSSystemCopyCapability(FunctionRef function,
                                                                    const std::string& name) {
    if (!function)
        return std::nullopt;
    PropertyList value = hasCapability(name);
    if (name == "marketing-name") {
        const auto* known =
            std::find_if(marketingNames.begin(), marketingNames.end(),
                         [&](const auto& entry) { return entry.first == phone.machine; });
        value = known == marketingNames.end() ? PropertyList(phone.machine) : known->second;
    }
    recorder.answered(Operation::GSSystemCopyCapability, {name}, &value);
    return value;
}

int DeviceModel::callMGGetBoolAnswer(FunctionRef function, const std::string& name) {
    return function && recorder.answer(Operation::MGGetBoolAnswer, {name}, hasCapability(name));
}

bool DeviceModel::hasCapability(const std::string& name) const {
    return std::find(phone.capabilities.begin(), phone.capabilities.end(), name) !=
           phone.capabilities.end();
}

} // namespace noctara
